#include "sway_backend.h"

#include "local_socket_request.h"
#include "logging.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QPointer>
#include <QtEndian>

using namespace Qt::Literals::StringLiterals;

namespace {
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

bool isWhole(const QByteArray &answer)
{
    QByteArray rest = answer;
    return take(rest).has_value();
}

// On a connection of its own, as swaymsg asks: the event connection carries events only.
QCoro::Task<QJsonDocument> request(QString socket, std::chrono::milliseconds timeout, quint32 type,
                                   QByteArray payload)
{
    QByteArray answer = co_await localSocketRequest(std::move(socket), message(type, payload),
                                                    u"sway"_s, timeout, isWhole);
    co_return QJsonDocument::fromJson(take(answer)->second);
}

QList<DesktopScreen> outputs(const QJsonDocument &reply)
{
    QList<DesktopScreen> result;
    for (const QJsonValue value : reply.array()) {
        const QJsonObject output = value.toObject();
        if (!output.value("active"_L1).toBool())
            continue;
        const QJsonObject rect = output.value("rect"_L1).toObject();
        DesktopScreen screen {
            .connector = output.value("name"_L1).toString(),
            .manufacturer = output.value("make"_L1).toString(),
            .model = output.value("model"_L1).toString(),
            .serial = output.value("serial"_L1).toString(),
            .geometry = QRect(rect.value("x"_L1).toInt(), rect.value("y"_L1).toInt(),
                              rect.value("width"_L1).toInt(), rect.value("height"_L1).toInt()),
            // The rectangle is in the layout's units: a scaled output has more pixels.
            .pixels = QSize(rect.value("width"_L1).toInt(), rect.value("height"_L1).toInt())
                * output.value("scale"_L1).toDouble(1)
        };
        // The focused output comes first, as a primary screen would.
        if (output.value("focused"_L1).toBool())
            result.prepend(screen);
        else
            result.append(screen);
    }
    return result;
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
    connect(m_events, &QLocalSocket::connected, this,
            [this] { m_events->write(message(Subscribe, R"(["workspace"])")); });
    m_events->connectToServer(m_socket);
    // sway 1.7 has no output events: a workspace event or Qt's screens may tell of a change.
    followQtScreens([this] { readOutputs(); });
    readOutputs();
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
    return m_screens;
}

QCoro::Task<> SwayBackend::readOutputs()
{
    // One reading at a time; a change heard meanwhile is read again after it.
    if (m_reading) {
        m_readAgain = true;
        co_return;
    }
    m_reading = true;
    const QPointer<SwayBackend> self(this);
    do {
        m_readAgain = false;
        QList<DesktopScreen> screens;
        try {
            screens = outputs(co_await request(m_socket, m_timeout, GetOutputs, {}));
        } catch (const DesktopError &error) {
            if (!self)
                co_return;
            qCWarning(lcSway) << "No outputs:" << error.description();
            break;
        }
        if (!self)
            co_return;
        if (screens != m_screens) {
            m_screens = screens;
            Q_EMIT screensChanged();
        }
    } while (m_readAgain);
    m_reading = false;
}

std::optional<QString> SwayBackend::picture(const DesktopScreen &screen) const
{
    return m_shown.picture(screen.connector);
}

QCoro::Task<> SwayBackend::setPicture(DesktopPicture picture, QList<DesktopScreen> screens)
{
    QStringList commands;
    for (const DesktopScreen &screen : std::as_const(screens))
        commands.append(
            u"output %1 bg %2 fill"_s.arg(quoted(screen.connector), quoted(picture.stillPath())));
    if (commands.isEmpty())
        co_return;
    qCDebug(lcSway) << commands;
    const QPointer<SwayBackend> self(this);
    const QJsonDocument reply =
        co_await request(m_socket, m_timeout, RunCommand, commands.join(u';').toUtf8());
    if (!self)
        co_return;
    // One result per command, in order; sway stops at the first that fails.
    const QJsonArray results = reply.array();
    QStringList changed;
    for (qsizetype i = 0; i < screens.size(); ++i) {
        const QJsonObject result = results.at(i).toObject();
        if (!result.value("success"_L1).toBool()) {
            m_shown.save();
            throw DesktopError(result.value("error"_L1).toString(u"sway refused the picture."_s),
                               changed);
        }
        m_shown.setPicture(screens[i].connector, picture.stillPath());
        changed.append(screens[i].connector);
    }
    m_shown.save();
}

void SwayBackend::readEvents()
{
    m_buffer += m_events->readAll();
    while (const auto event = take(m_buffer)) {
        if (event->first != workspaceEvent)
            continue;
        Q_EMIT workspaceChanged();
        readOutputs();
    }
}
