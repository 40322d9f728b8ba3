#include "x11_backend.h"

#include "logging.h"
#include "x11_root_window.h"

#include <QCoroProcess>
#include <QJsonObject>
#include <QProcess>
#include <QScopeGuard>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto fingerprintsKey = u"fingerprints"_s;
} // namespace

X11Backend::X11Backend(const QString &stateFile, QObject *parent)
    : DesktopBackend(parent)
    , m_root(new X11RootWindow(this))
    , m_shown(stateFile)
{
    followQtScreens();
    connect(m_root, &X11RootWindow::rootPixmapChanged, this, [this] {
        checkBackground();
        Q_EMIT picturesChanged();
    });
    checkBackground();
}

X11Backend::~X11Backend() = default;

bool X11Backend::isAvailable()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY")
        && !QStandardPaths::findExecutable(u"xwallpaper"_s).isEmpty();
}

QString X11Backend::name() const
{
    return u"X11"_s;
}

DesktopBackend::Capabilities X11Backend::capabilities() const
{
    return Capability::PerDisplay;
}

std::optional<QString> X11Backend::picture(const DesktopScreen &screen) const
{
    return m_shown.picture(screen.connector);
}

QCoro::Task<> X11Backend::setPicture(DesktopPicture picture, QList<DesktopScreen> screens)
{
    QStringList arguments;
    for (const DesktopScreen &screen : std::as_const(screens))
        arguments << u"--output"_s << screen.connector << u"--zoom"_s << picture.stillPath();
    if (arguments.isEmpty())
        co_return;
    qCDebug(lcX11) << "xwallpaper" << arguments;

    ++m_setting;
    const auto done = qScopeGuard([this] { --m_setting; });
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    auto running = qCoro(process);
    if (!co_await running.start(u"xwallpaper"_s, arguments))
        throw DesktopError(u"xwallpaper could not be started."_s);
    if (!co_await running.waitForFinished(std::chrono::seconds(30)))
        process.kill();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        const QString said = QString::fromLocal8Bit(process.readAll()).trimmed();
        throw DesktopError(said.isEmpty() ? u"xwallpaper could not set the picture."_s : said);
    }
    for (const DesktopScreen &screen : std::as_const(screens))
        m_shown.setPicture(screen.connector, picture.stillPath());
    remember(this->screens());
}

void X11Backend::remember(const QList<DesktopScreen> &screens)
{
    QJsonObject fingerprints;
    for (const DesktopScreen &screen : screens)
        fingerprints.insert(screen.connector,
                            QString::fromLatin1(m_root->fingerprint(screen.geometry).toBase64()));
    m_shown.setExtra(fingerprintsKey, fingerprints);
    m_shown.save();
}

void X11Backend::checkBackground()
{
    if (m_setting > 0)
        return;
    // Pixmap ids alone say nothing: X hands the next setter the same id again.
    const QJsonObject fingerprints = m_shown.extra(fingerprintsKey).toObject();
    bool forgot = false;
    for (const DesktopScreen &screen : screens()) {
        if (!m_shown.picture(screen.connector))
            continue;
        const QByteArray now = m_root->fingerprint(screen.geometry);
        const QByteArray then =
            QByteArray::fromBase64(fingerprints.value(screen.connector).toString().toLatin1());
        if (now.isEmpty() || now != then) {
            qCDebug(lcX11) << "Something else drew on" << screen.connector;
            m_shown.forget(screen.connector);
            forgot = true;
        }
    }
    if (forgot)
        remember(screens());
}
