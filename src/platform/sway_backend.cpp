#include "sway_backend.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QLoggingCategory>
#include <QtEndian>

Q_LOGGING_CATEGORY(lcSway, "app.quennet.Quennet.Desktop.Sway")

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QByteArrayView magic = "i3-ipc";
constexpr qsizetype headerSize = 6 + 4 + 4;
enum Type : quint32 { RunCommand = 0, Subscribe = 2, GetOutputs = 3 };
constexpr quint32 eventBit = 0x80000000;
constexpr quint32 workspaceEvent = eventBit | 0;

QByteArray message(quint32 type, const QByteArray &payload)
{
    QByteArray bytes = magic.toByteArray();
    bytes.resize(headerSize);
    qToLittleEndian<quint32>(quint32(payload.size()), bytes.data() + 6);
    qToLittleEndian<quint32>(type, bytes.data() + 10);
    return bytes + payload;
}

// One whole message off the front of buffer, if it holds one.
std::optional<std::pair<quint32, QByteArray>> take(QByteArray &buffer)
{
    if (buffer.size() < headerSize || !buffer.startsWith(magic))
        return std::nullopt;
    const auto length = qFromLittleEndian<quint32>(buffer.constData() + 6);
    const auto type = qFromLittleEndian<quint32>(buffer.constData() + 10);
    if (buffer.size() < headerSize + qsizetype(length))
        return std::nullopt;
    QByteArray payload = buffer.mid(headerSize, length);
    buffer.remove(0, headerSize + length);
    return std::pair { type, payload };
}

// sway answers at once; a stuck compositor costs at most two seconds.
std::optional<QJsonDocument> request(const QString &socket, quint32 type, const QByteArray &payload)
{
    QLocalSocket connection;
    connection.connectToServer(socket);
    if (!connection.waitForConnected(2000))
        return std::nullopt;
    connection.write(message(type, payload));
    QByteArray buffer;
    while (connection.waitForReadyRead(2000)) {
        buffer += connection.readAll();
        if (const auto reply = take(buffer))
            return QJsonDocument::fromJson(reply->second);
    }
    return std::nullopt;
}

QString quoted(const QString &text)
{
    QString escaped = text;
    escaped.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
    return u'"' + escaped + u'"';
}
} // namespace

SwayBackend::SwayBackend(QString socket, const QString &stateFile, QObject *parent)
    : DesktopBackend(parent)
    , m_socket(std::move(socket))
    , m_shown(stateFile)
    , m_events(new QLocalSocket(this))
{
    connect(m_events, &QLocalSocket::readyRead, this, &SwayBackend::readEvents);
    connect(m_events, &QLocalSocket::connected, this, [this] {
        // sway 1.7 has no output events: screens are listed afresh at each refresh.
        m_events->write(message(Subscribe, R"(["workspace"])"));
    });
    m_events->connectToServer(m_socket);
}

SwayBackend::~SwayBackend() = default;

QString SwayBackend::name() const
{
    return u"sway"_s;
}

DesktopBackend::Capabilities SwayBackend::capabilities() const
{
    return Capability::PerDisplay | Capability::Workspaces;
}

QList<DesktopScreen> SwayBackend::screens() const
{
    QList<DesktopScreen> result;
    const auto outputs = request(m_socket, GetOutputs, {});
    for (const QJsonValue &value : outputs ? outputs->array() : QJsonArray()) {
        const QJsonObject output = value.toObject();
        if (!output.value("active"_L1).toBool())
            continue;
        const QJsonObject rect = output.value("rect"_L1).toObject();
        DesktopScreen screen { .connector = output.value("name"_L1).toString(),
                               .manufacturer = output.value("make"_L1).toString(),
                               .model = output.value("model"_L1).toString(),
                               .serial = output.value("serial"_L1).toString(),
                               .geometry = QRect(rect.value("x"_L1).toInt(), rect.value("y"_L1).toInt(),
                                                 rect.value("width"_L1).toInt(), rect.value("height"_L1).toInt()) };
        // The focused output comes first, as a primary screen would.
        if (output.value("focused"_L1).toBool())
            result.prepend(screen);
        else
            result.append(screen);
    }
    return result;
}

std::optional<QString> SwayBackend::picture(const DesktopScreen &screen) const
{
    return m_shown.picture(screen.connector);
}

QCoro::Task<> SwayBackend::setPicture(DesktopPicture picture, QList<DesktopScreen> screens)
{
    QStringList commands;
    for (const DesktopScreen &screen : std::as_const(screens))
        commands.append(u"output %1 bg %2 fill"_s.arg(quoted(screen.connector), quoted(picture.stillPath())));
    if (commands.isEmpty())
        co_return;
    qCDebug(lcSway) << commands;
    const auto reply = request(m_socket, RunCommand, commands.join(u';').toUtf8());
    if (!reply)
        throw DesktopError(u"sway did not answer."_s);
    for (const QJsonValue &result : reply->array()) {
        if (!result.toObject().value("success"_L1).toBool())
            throw DesktopError(result.toObject().value("error"_L1).toString(u"sway refused the picture."_s));
    }
    for (const DesktopScreen &screen : std::as_const(screens))
        m_shown.setPicture(screen.connector, picture.stillPath());
    m_shown.save();
}

void SwayBackend::readEvents()
{
    m_buffer += m_events->readAll();
    while (const auto event = take(m_buffer)) {
        if (event->first == workspaceEvent)
            Q_EMIT workspaceChanged();
    }
}
