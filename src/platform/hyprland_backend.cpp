#include "hyprland_backend.h"

#include "local_socket_request.h"
#include "logging.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QPointer>

using namespace Qt::Literals::StringLiterals;

namespace {
QList<DesktopScreen> monitors(const QByteArray &answer)
{
    QList<DesktopScreen> result;
    for (const QJsonValue value : QJsonDocument::fromJson(answer).array()) {
        const QJsonObject monitor = value.toObject();
        if (monitor.value("disabled"_L1).toBool())
            continue;
        DesktopScreen screen {
            .connector = monitor.value("name"_L1).toString(),
            .manufacturer = monitor.value("make"_L1).toString(),
            .model = monitor.value("model"_L1).toString(),
            .serial = monitor.value("serial"_L1).toString(),
            .geometry = QRect(monitor.value("x"_L1).toInt(), monitor.value("y"_L1).toInt(),
                              monitor.value("width"_L1).toInt(), monitor.value("height"_L1).toInt())
        };
        // The focused monitor comes first, as a primary screen would.
        if (monitor.value("focused"_L1).toBool())
            result.prepend(screen);
        else
            result.append(screen);
    }
    return result;
}

} // namespace

HyprlandBackend::HyprlandBackend(QString folder, const QString &stateFile, QObject *parent)
    : DesktopBackend(parent)
    , m_folder(std::move(folder))
    , m_shown(stateFile)
    , m_events(new QLocalSocket(this))
{
    connect(m_events, &QLocalSocket::readyRead, this, &HyprlandBackend::readEvents);
    m_events->connectToServer(m_folder + u"/.socket2.sock"_s);
    followQtScreens([this] { readMonitors(); });
    readMonitors();
}

HyprlandBackend::~HyprlandBackend() = default;

QString HyprlandBackend::instanceFolder()
{
    const QString signature = qEnvironmentVariable("HYPRLAND_INSTANCE_SIGNATURE");
    if (signature.isEmpty())
        return {};
    // Hyprland 0.40 moved its sockets from /tmp/hypr into the runtime folder.
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    for (const QString &base : QStringList { runtime + u"/hypr/"_s, u"/tmp/hypr/"_s }) {
        if (QDir(base + signature).exists())
            return base + signature;
    }
    return {};
}

QString HyprlandBackend::name() const
{
    return u"Hyprland"_s;
}

DesktopBackend::Capabilities HyprlandBackend::capabilities() const
{
    return Capability::PerDisplay | Capability::Workspaces;
}

QList<DesktopScreen> HyprlandBackend::screens() const
{
    return m_monitors ? *m_monitors : DesktopBackend::screens();
}

QCoro::Task<> HyprlandBackend::readMonitors()
{
    // One reading at a time; a change heard meanwhile is read again after it.
    if (m_reading) {
        m_readAgain = true;
        co_return;
    }
    m_reading = true;
    const QPointer<HyprlandBackend> self(this);
    do {
        m_readAgain = false;
        QList<DesktopScreen> screens;
        try {
            // As hyprctl asks: the whole answer, up to Hyprland closing the connection.
            screens = monitors(co_await localSocketRequest(m_folder + u"/.socket.sock"_s,
                                                           "j/monitors", u"Hyprland"_s, m_timeout));
        } catch (const DesktopError &error) {
            if (!self)
                co_return;
            qCWarning(lcHyprland) << "No monitors:" << error.description();
            break;
        }
        if (!self)
            co_return;
        if (screens != m_monitors) {
            m_monitors = screens;
            Q_EMIT screensChanged();
        }
    } while (m_readAgain);
    m_reading = false;
}

std::optional<QString> HyprlandBackend::picture(const DesktopScreen &screen) const
{
    return m_shown.picture(screen.connector);
}

QCoro::Task<> HyprlandBackend::setPicture(DesktopPicture picture, QList<DesktopScreen> screens)
{
    if (screens.isEmpty())
        co_return;
    const QString socket = m_folder + u"/.hyprpaper.sock"_s;
    const QString path = picture.stillPath();
    QStringList commands { u"preload "_s + path };
    for (const DesktopScreen &screen : std::as_const(screens))
        commands.append(u"wallpaper "_s + screen.connector + u',' + path);
    // Pictures no monitor shows any more are let go of: hyprpaper keeps every preload in memory.
    commands.append(u"unload unused"_s);
    const QPointer<HyprlandBackend> self(this);
    QStringList changed;
    for (const QString &command : std::as_const(commands)) {
        qCDebug(lcHyprland) << command;
        const bool unload = command.startsWith("unload"_L1);
        QString answer;
        try {
            answer = QString::fromUtf8(co_await localSocketRequest(socket, command.toUtf8(),
                                                                   u"hyprpaper"_s, m_timeout))
                         .trimmed();
        } catch (const DesktopError &error) {
            // Letting go of memory changes nothing on the screens.
            if (!unload)
                throw;
            qCDebug(lcHyprland) << error.description();
        }
        if (!self)
            co_return;
        // Releases that changed the socket's commands answer them with something else.
        if (!unload && answer != "ok"_L1) {
            m_shown.save();
            throw DesktopError(
                u"hyprpaper did not take the picture: it answered “%1” to %2. Quennet works with "
                "hyprpaper releases that accept the preload and wallpaper commands."_s.arg(
                    answer, command.section(u' ', 0, 0)),
                changed);
        }
        if (command.startsWith("wallpaper "_L1)) {
            const QString connector = command.section(u' ', 1).section(u',', 0, 0);
            m_shown.setPicture(connector, path);
            changed.append(connector);
        }
    }
    m_shown.save();
}

void HyprlandBackend::readEvents()
{
    m_buffer += m_events->readAll();
    bool switched = false;
    bool monitorsChanged = false;
    qsizetype end = 0;
    while ((end = m_buffer.indexOf('\n')) >= 0) {
        const QByteArray line = m_buffer.left(end);
        m_buffer.remove(0, end + 1);
        switched = switched || line.startsWith("workspace>>") || line.startsWith("workspacev2>>");
        // The focused monitor is listed first, so a change of focus reorders them.
        monitorsChanged = monitorsChanged || line.startsWith("monitoradded")
            || line.startsWith("monitorremoved") || line.startsWith("focusedmon>>");
    }
    if (switched)
        Q_EMIT workspaceChanged();
    if (monitorsChanged)
        readMonitors();
}
