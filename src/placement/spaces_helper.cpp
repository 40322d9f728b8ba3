#include "spaces_helper.h"

#include "application_folder.h"
#include "cancel_token.h"
#include "clock.h"
#include "defaults.h"
#include "helper_process.h"
#include "logging.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
// Long enough for the session to let go of the old helper before the new one is registered.
constexpr auto reregisterWait = 10s;
} // namespace

SpacesHelper::SpacesHelper(Services services, QObject *parent)
    : QObject(parent)
    , m_services(std::move(services))
    , m_entry(QLatin1StringView(bundleIdentifier) + u".helper.desktop"_s,
              m_services.autostartFolder)
    , m_token(std::make_shared<CancelToken>())
{
    readStatus();
}

SpacesHelper::~SpacesHelper()
{
    m_token->cancel();
}

void SpacesHelper::readStatus()
{
    Status status = Status::NotRegistered;
    switch (m_entry.state()) {
    case AutostartEntry::State::Absent:
        break;
    case AutostartEntry::State::Disabled:
        status = Status::RequiresApproval;
        break;
    case AutostartEntry::State::Present: {
        const QFileInfo program(m_entry.program());
        status = program.isFile() && program.isExecutable() ? Status::Enabled : Status::NotFound;
        break;
    }
    }
    if (status == m_status)
        return;
    m_status = status;
    Q_EMIT statusChanged();
}

void SpacesHelper::setWanted(bool on)
{
    if (on != m_isWanted) {
        m_isWanted = on;
        Q_EMIT isWantedChanged();
    }
    if (on) {
        registerHelper();
        if (m_status == Status::Enabled && !m_services.process->start(m_services.program))
            qCWarning(lcSpaces) << "Couldn't start the helper" << m_services.program;
    } else {
        unregisterHelper();
        m_services.process->end();
    }
}

void SpacesHelper::registerHelper()
{
    const QString error =
        m_entry.write({ .title = tr("Quennet workspace helper"),
                        .comment = tr("Keeps the wallpaper you set in Quennet on every workspace"),
                        .program = m_services.program });
    if (!error.isEmpty()) {
        qCCritical(lcSpaces, "Login item not changed: %s", qUtf8Printable(error));
    } else if (!m_services.defaults->setHelperStartedByBuild(m_services.build)) {
        // The next launch then takes the helper for an older build's and starts it again.
        qCWarning(lcSpaces) << "Couldn't save which build registered the helper";
    }
    readStatus();
}

void SpacesHelper::unregisterHelper()
{
    if (const QString error = m_entry.remove(); !error.isEmpty())
        qCCritical(lcSpaces, "Login item not changed: %s", qUtf8Printable(error));
    readStatus();
}

QCoro::Task<> SpacesHelper::checkRunning()
{
    return checkRunning(this, m_token, m_services.clock);
}

QCoro::Task<> SpacesHelper::checkRunning(QPointer<SpacesHelper> self,
                                         std::shared_ptr<CancelToken> token,
                                         std::shared_ptr<Clock> clock)
{
    if (self->m_hasCheckedRunning)
        co_return;
    self->m_hasCheckedRunning = true;
    const auto startedBy = self->m_services.defaults->helperStartedByBuild();
    if (self->m_entry.state() == AutostartEntry::State::Absent
        || startedBy == self->m_services.build)
        co_return;
    qCInfo(lcSpaces) << "The helper is of build" << startedBy.value_or(u"(unknown)"_s)
                     << "; this is" << self->m_services.build;
    co_await self->m_services.process->end();
    if (!self)
        co_return;
    self->unregisterHelper();
    const bool waited = co_await clock->sleep(token, reregisterWait);
    if (!waited || !self)
        co_return;
    self->registerHelper();
    if (self->m_status == Status::Enabled)
        self->m_services.process->start(self->m_services.program);
}

QCoro::Task<> SpacesHelper::start(bool wanted)
{
    const QPointer<SpacesHelper> self(this);
    try {
        co_await checkRunning();
    } catch (const std::exception &error) {
        qCWarning(lcSpaces) << "The helper check failed:" << error.what();
    }
    if (self)
        setWanted(wanted);
}

void SpacesHelper::wallpaperSet(const QStringList &displayIds)
{
    if (m_isWanted)
        m_services.process->placementsChanged(displayIds);
}
