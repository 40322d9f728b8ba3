#include "plasma_backend.h"

#include "logging.h"

#include <QCoroDBusPendingCall>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QPointer>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {
QDBusMessage script(const QString &text)
{
    auto message = QDBusMessage::createMethodCall(u"org.kde.plasmashell"_s, u"/PlasmaShell"_s,
                                                  u"org.kde.PlasmaShell"_s, u"evaluateScript"_s);
    message << text;
    return message;
}

QString geometryKey(const QRect &geometry)
{
    return u"%1,%2,%3,%4"_s.arg(geometry.x())
        .arg(geometry.y())
        .arg(geometry.width())
        .arg(geometry.height());
}

// Values go into the script as JSON, which is also JavaScript.
QString literal(const QJsonValue &value)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray { value }).toJson(QJsonDocument::Compact))
        .mid(1)
        .chopped(1);
}

const auto eachDesktop = uR"(
var ds = desktops();
for (var i = 0; i < ds.length; i++) {
    var d = ds[i];
    var g = screenGeometry(d.screen);
    var key = g.x + "," + g.y + "," + g.width + "," + g.height;
)"_s;

// JSON, whatever characters the paths hold.
const QString readImages = u"var shown = {};"_s + eachDesktop + uR"(
    d.currentConfigGroup = ["Wallpaper", "org.kde.image", "General"];
    shown[key] = d.wallpaperPlugin == "org.kde.image" ? String(d.readConfig("Image")) : "";
}
print(JSON.stringify(shown));
)"_s;
} // namespace

PlasmaBackend::PlasmaBackend(QDBusConnection bus, QObject *parent)
    : DesktopBackend(parent)
    , m_bus(std::move(bus))
{
    followQtScreens([this] {
        Q_EMIT screensChanged();
        readBack();
    });
    if (auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        // Back from Plasma's own settings, perhaps.
        connect(application, &QGuiApplication::applicationStateChanged, this,
                [this](Qt::ApplicationState state) {
                    if (state == Qt::ApplicationActive)
                        readBack();
                });
    }
    // Qualified: a constructor reaches only this class's own, whatever the dynamic type.
    PlasmaBackend::readBack();
}

bool PlasmaBackend::isPlasma(const QString &currentDesktop)
{
    return currentDesktop.split(u':').contains(u"KDE"_s, Qt::CaseInsensitive);
}

QString PlasmaBackend::name() const
{
    return u"KDE Plasma"_s;
}

DesktopBackend::Capabilities PlasmaBackend::capabilities() const
{
    return Capability::PerDisplay | Capability::ReadBack;
}

std::optional<QString> PlasmaBackend::picture(const DesktopScreen &screen) const
{
    const QUrl url(m_shown.value(geometryKey(screen.geometry)));
    if (url.isEmpty())
        return std::nullopt;
    return url.isLocalFile() ? url.toLocalFile() : url.toString();
}

QCoro::Task<> PlasmaBackend::readBack()
{
    const QPointer<PlasmaBackend> self(this);
    QDBusPendingCall pending = m_bus.asyncCall(script(readImages));
    const QDBusMessage reply = co_await pending;
    if (!self)
        co_return;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        qCDebug(lcPlasma) << "No read-back:" << reply.errorMessage();
        co_return;
    }
    QHash<QString, QString> shown;
    const QJsonObject images =
        QJsonDocument::fromJson(reply.arguments().constFirst().toString().toUtf8()).object();
    for (auto it = images.begin(); it != images.end(); ++it)
        shown.insert(it.key(), it->toString());
    if (shown == m_shown)
        co_return;
    m_shown = shown;
    Q_EMIT picturesChanged();
}

QCoro::Task<> PlasmaBackend::setPicture(DesktopPicture picture, QList<DesktopScreen> screens)
{
    QJsonArray targets;
    for (const DesktopScreen &screen : std::as_const(screens))
        targets.append(geometryKey(screen.geometry));
    const QString text = eachDesktop + uR"(
    if (%1.indexOf(key) >= 0) {
        d.wallpaperPlugin = "org.kde.image";
        d.currentConfigGroup = ["Wallpaper", "org.kde.image", "General"];
        d.writeConfig("Image", %2);
        d.writeConfig("FillMode", 2);
    }
}
)"_s.arg(literal(targets), literal(QUrl::fromLocalFile(picture.stillPath()).toString()));
    qCDebug(lcPlasma) << "Setting" << picture.stillPath() << "on" << targets;
    const QPointer<PlasmaBackend> self(this);
    QDBusPendingCall pending = m_bus.asyncCall(script(text));
    const QDBusMessage reply = co_await pending;
    if (!self)
        co_return;
    if (reply.type() == QDBusMessage::ErrorMessage)
        throw DesktopError(reply.errorMessage());
    // Asked after the set, so answered after it.
    co_await readBack();
}
