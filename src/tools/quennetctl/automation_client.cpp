#include "automation_client.h"

#include "command_line.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTextStream>
#include <QTimer>
#include <QUrl>
#include <climits>

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr auto service = "app.quennet.Quennet"_L1;
constexpr auto path = "/app/quennet/Quennet"_L1;
constexpr auto automation = "app.quennet.Quennet.Automation"_L1;
constexpr auto session = "app.quennet.Quennet.Session"_L1;
constexpr auto properties = "org.freedesktop.DBus.Properties"_L1;
constexpr auto errorPrefix = "app.quennet.Quennet.Error."_L1;

// Calls that wait for a download or the shop end when Quennet says so, not after D-Bus's 25 s.
constexpr int noTimeout = INT_MAX;
// How long a call waits for Quennet's library to load after "Still starting".
constexpr int startingWait = 60'000;

// Each wallpaper of an a(sss) list, as a line of tab-separated fields.
QStringList wallpaperLines(const QVariant &value)
{
    QStringList lines;
    const auto list = value.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString id;
        QString name;
        QString packName;
        list.beginStructure();
        list >> id >> name >> packName;
        list.endStructure();
        lines.append(AutomationClient::printable(id) + u'\t' + AutomationClient::printable(name)
                     + u'\t' + AutomationClient::printable(packName));
    }
    list.endArray();
    return lines;
}
} // namespace

AutomationClient::AutomationClient(QDBusConnection bus, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
{
}

QDBusMessage AutomationClient::call(const QString &interface, const QString &method,
                                    const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    const bool waits = method == "SetWallpaper"_L1 || method == "ShuffleWallpaper"_L1
        || method == "Refresh"_L1 || method == "SignOut"_L1;
    return m_bus.call(message, QDBus::Block, waits ? noTimeout : -1);
}

QDBusMessage AutomationClient::callWhenReady(const QString &method, const QVariantList &arguments)
{
    QDBusMessage reply = call(automation, method, arguments);
    if (reply.errorName() != errorPrefix + "NotReady"_L1 || !watchSession())
        return reply;
    const QDeadlineTimer deadline(startingWait);
    while (m_session.value(u"LibraryState"_s) == "loading"_L1
           && m_session.value(u"State"_s) != "gone"_L1 && !deadline.hasExpired()) {
        if (!waitForSessionChange(int(deadline.remainingTime())))
            break;
    }
    return call(automation, method, arguments);
}

bool AutomationClient::watchSession()
{
    if (!m_watching) {
        m_watching = m_bus.connect(service, path, properties, u"PropertiesChanged"_s, this,
                                   SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
        auto *watcher = new QDBusServiceWatcher(service, m_bus,
                                                QDBusServiceWatcher::WatchForUnregistration, this);
        connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
            m_session.insert(u"State"_s, u"gone"_s);
            Q_EMIT sessionChanged();
        });
    }
    const QDBusMessage reply = call(properties, u"GetAll"_s, { QString(session) });
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return false;
    m_session = qdbus_cast<QVariantMap>(reply.arguments().first());
    return m_watching;
}

void AutomationClient::propertiesChanged(const QString &interface, const QVariantMap &changed,
                                         const QStringList & /*invalidated*/)
{
    if (interface != session)
        return;
    m_session.insert(changed);
    Q_EMIT sessionChanged();
}

bool AutomationClient::waitForSessionChange(int milliseconds)
{
    QEventLoop loop;
    QTimer timeout;
    timeout.setSingleShot(true);
    connect(&timeout, &QTimer::timeout, &loop, [&loop] { loop.exit(1); });
    connect(this, &AutomationClient::sessionChanged, &loop, [&loop] { loop.exit(0); });
    if (milliseconds >= 0)
        timeout.start(milliseconds);
    return loop.exec() == 0;
}

int AutomationClient::report(const QDBusMessage &reply, QTextStream &err)
{
    if (reply.type() != QDBusMessage::ErrorMessage)
        return 0;
    if (!reply.errorName().startsWith(errorPrefix)) {
        err << tr("Couldn't reach Quennet: %1").arg(printable(reply.errorMessage())) << Qt::endl;
        return failed;
    }
    err << printable(reply.errorMessage()) << Qt::endl;
    return reply.errorName() == errorPrefix + "InvalidArgument"_L1 ? usageError : failed;
}

int AutomationClient::run(const Command &command, QTextStream &out, QTextStream &err)
{
    if (!m_bus.isConnected()) {
        err << tr("There's no session bus to reach Quennet on.") << Qt::endl;
        return failed;
    }
    using Action = Command::Action;
    QDBusMessage reply;
    switch (command.action) {
    case Action::Shuffle:
        return report(callWhenReady(u"ShuffleWallpaper"_s), err);
    case Action::Set:
        return report(callWhenReady(u"SetWallpaper"_s, { command.wallpaper, command.edition }),
                      err);
    case Action::Get:
        reply = callWhenReady(u"GetWallpaper"_s);
        if (reply.type() == QDBusMessage::ReplyMessage) {
            QStringList fields;
            for (const QVariant &field : reply.arguments())
                fields.append(printable(field.toString()));
            out << fields.join(u'\t') << Qt::endl;
        }
        return report(reply, err);
    case Action::Favourite:
        return report(callWhenReady(u"FavouriteWallpaper"_s), err);
    case Action::ShuffleSettings:
        return report(
            call(automation, u"SetShuffle"_s, { command.isOn, command.interval, command.source }),
            err);
    case Action::FocusFilter:
        return report(callWhenReady(u"SetFocusFilter"_s, { command.wallpaper, command.edition }),
                      err);
    case Action::Find:
        reply = callWhenReady(u"FindWallpapers"_s, { command.text });
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
            for (const QString &line : wallpaperLines(reply.arguments().first()))
                out << line << '\n';
            out.flush();
        }
        return report(reply, err);
    case Action::SignIn:
        return signIn(out, err);
    case Action::SignOut:
        return report(call(session, u"SignOut"_s), err);
    case Action::Refresh:
        return report(call(session, u"Refresh"_s), err);
    case Action::Status:
        return status(out, err);
    }
    return failed;
}

int AutomationClient::signIn(QTextStream &out, QTextStream &err)
{
    if (!watchSession())
        return report(call(properties, u"GetAll"_s, { QString(session) }), err);
    if (const int status = report(call(session, u"SignIn"_s), err))
        return status;
    // The state as it is after the call: any change from here on arrives as a signal.
    watchSession();
    bool shownCode = false;
    for (;;) {
        const QString state = m_session.value(u"State"_s).toString();
        if (state == "waiting"_L1 && !shownCode) {
            const QString page = printablePage(m_session.value(u"VerificationURI"_s).toString());
            if (page.isEmpty())
                out << tr("Approve this computer on the shop's website in your browser.") << '\n';
            else
                out << tr("Approve this computer in your browser: %1").arg(page) << '\n';
            out << tr("Code: %1").arg(printable(m_session.value(u"UserCode"_s).toString())) << '\n'
                << tr("Check the code there matches this one. Waiting for approval…") << Qt::endl;
            shownCode = true;
        } else if (state == "signedIn"_L1) {
            // The library of the new session, so that the next command finds the user's packs.
            if (const int status = report(call(session, u"Refresh"_s), err))
                return status;
            out << tr("Signed in.") << Qt::endl;
            return 0;
        } else if (state == "failed"_L1) {
            err << printable(m_session.value(u"Message"_s).toString()) << Qt::endl;
            return failed;
        } else if (state == "signedOut"_L1) {
            err << tr("Sign-in was cancelled.") << Qt::endl;
            return failed;
        } else if (state == "gone"_L1) {
            err << tr("Quennet quit before the sign-in ended.") << Qt::endl;
            return failed;
        }
        if (!waitForSessionChange(-1))
            return failed;
    }
}

int AutomationClient::status(QTextStream &out, QTextStream &err)
{
    const QDBusMessage reply = call(properties, u"GetAll"_s, { QString(session) });
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return report(reply, err);
    const auto values = qdbus_cast<QVariantMap>(reply.arguments().first());
    const QString state = values.value(u"State"_s).toString();
    out << "State: " << state << '\n';
    if (state == "waiting"_L1) {
        out << "Code: " << printable(values.value(u"UserCode"_s).toString()) << '\n';
        const QString page = printablePage(values.value(u"VerificationURI"_s).toString());
        if (!page.isEmpty())
            out << "Page: " << page << '\n';
    } else if (state == "failed"_L1) {
        out << "Message: " << printable(values.value(u"Message"_s).toString()) << '\n';
    }
    out << "Library: " << values.value(u"LibraryState"_s).toString() << Qt::endl;
    return 0;
}

QString AutomationClient::printable(QStringView text)
{
    QString kept;
    kept.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c == u'\x1b' && i + 1 < text.size()) {
            char16_t kind = text[++i].unicode();
            // Intermediate bytes come before the one that says what the sequence is.
            while (kind >= 0x20 && kind <= 0x2f && i + 1 < text.size())
                kind = text[++i].unicode();
            if (kind == u'[') {
                // A control sequence ends at its first byte in @ to ~.
                while (i + 1 < text.size() && !(text[i + 1] >= u'@' && text[i + 1] <= u'~'))
                    ++i;
                ++i;
            } else if (kind == u']' || kind == u'P' || kind == u'X' || kind == u'^'
                       || kind == u'_') {
                // A string sequence (a title, a link) runs to BEL or to ESC backslash.
                while (i + 1 < text.size() && text[i + 1] != u'\a' && text[i + 1] != u'\x1b')
                    ++i;
                if (i + 1 < text.size() && text[i + 1] == u'\a')
                    ++i;
            }
            continue;
        }
        if (c < 0x20 || (c >= 0x7f && c <= 0x9f))
            continue;
        kept.append(QChar(c));
    }
    return kept;
}

QString AutomationClient::printablePage(const QString &page)
{
    const QUrl url(page, QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != "https"_L1 || url.host().isEmpty())
        return {};
    return printable(url.toString(QUrl::FullyEncoded));
}
