#include "hyprland_backend.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcHyprland, "app.quennet.Quennet.Desktop.Hyprland")

using namespace Qt::Literals::StringLiterals;

namespace
{
// One request on a socket of its own, as hyprctl makes it: the whole answer, up to the server
// closing the connection, or none when it does not answer within two seconds. Both answer at
// once, as sway does.
std::optional<QByteArray> ask(const QString &socket, const QByteArray &request)
{
    QLocalSocket connection;
    connection.connectToServer(socket);
    if (!connection.waitForConnected(2000))
        return std::nullopt;
    connection.write(request);
    if (!connection.waitForBytesWritten(2000))
        return std::nullopt;
    QByteArray answer;
    while (connection.waitForReadyRead(2000))
        answer += connection.readAll();
    answer += connection.readAll();
    if (answer.isEmpty())
        return std::nullopt;
    return answer;
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
    const auto answer = ask(m_folder + u"/.socket.sock"_s, "j/monitors");
    if (!answer)
        return DesktopBackend::screens();
    QList<DesktopScreen> result;
    for (const QJsonValue &value : QJsonDocument::fromJson(*answer).array()) {
        const QJsonObject monitor = value.toObject();
        if (monitor.value("disabled"_L1).toBool())
            continue;
        DesktopScreen screen { .connector = monitor.value("name"_L1).toString(),
                               .manufacturer = monitor.value("make"_L1).toString(),
                               .model = monitor.value("model"_L1).toString(),
                               .serial = monitor.value("serial"_L1).toString(),
                               .geometry = QRect(monitor.value("x"_L1).toInt(), monitor.value("y"_L1).toInt(),
                                                 monitor.value("width"_L1).toInt(),
                                                 monitor.value("height"_L1).toInt()) };
        // The focused monitor comes first, as a primary screen would.
        if (monitor.value("focused"_L1).toBool())
            result.prepend(screen);
        else
            result.append(screen);
    }
    return result;
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
    for (const QString &command : std::as_const(commands)) {
        qCDebug(lcHyprland) << command;
        const auto answer = ask(socket, command.toUtf8());
        if (!answer)
            throw DesktopError(u"hyprpaper did not answer."_s);
        const QString text = QString::fromUtf8(*answer).trimmed();
        if (text != "ok"_L1 && !command.startsWith("unload"_L1))
            throw DesktopError(text);
    }
    for (const DesktopScreen &screen : std::as_const(screens))
        m_shown.setPicture(screen.connector, path);
    m_shown.save();
}

void HyprlandBackend::readEvents()
{
    m_buffer += m_events->readAll();
    bool switched = false;
    qsizetype end = 0;
    while ((end = m_buffer.indexOf('\n')) >= 0) {
        const QByteArray line = m_buffer.left(end);
        m_buffer.remove(0, end + 1);
        switched = switched || line.startsWith("workspace>>") || line.startsWith("workspacev2>>");
    }
    if (switched)
        Q_EMIT workspaceChanged();
}
