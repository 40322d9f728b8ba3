#include "xfce_backend.h"

#include <QCoroDBusPendingCall>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QDBusVariant>
#include <QLoggingCategory>
#include <QPointer>
#include <QRegularExpression>

Q_LOGGING_CATEGORY(lcXfce, "app.quennet.Quennet.Desktop.Xfce")

using namespace Qt::Literals::StringLiterals;

namespace
{
const auto service = u"org.xfce.Xfconf"_s;
const auto path = u"/org/xfce/Xfconf"_s;
const auto interface = u"org.xfce.Xfconf"_s;
const auto channel = u"xfce4-desktop"_s;
constexpr int zoomed = 5; // xfdesktop's image-style: fill the monitor, cropping

QString monitorBase(const QString &connector)
{
    return u"/backdrop/screen0/monitor"_s + connector;
}

QDBusMessage call(const QString &method, const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return message;
}
} // namespace

XfceBackend::XfceBackend(const QDBusConnection &bus, QObject *parent)
    : DesktopBackend(parent)
    , m_bus(bus)
{
    followQtScreens();
    m_bus.connect(service, path, interface, u"PropertyChanged"_s, this,
                  SLOT(propertyChanged(QString, QString, QDBusVariant)));
}

bool XfceBackend::isXfce(const QString &currentDesktop)
{
    return currentDesktop.split(u':').contains(u"XFCE"_s, Qt::CaseInsensitive);
}

QString XfceBackend::name() const
{
    return u"XFCE"_s;
}

DesktopBackend::Capabilities XfceBackend::capabilities() const
{
    return Capability::PerDisplay | Capability::ReadBack;
}

QStringList XfceBackend::imageProperties(const QString &connector) const
{
    const QDBusReply<QVariantMap> all = m_bus.call(call(u"GetAllProperties"_s, { channel, monitorBase(connector) }));
    QStringList properties;
    if (all.isValid()) {
        static const QRegularExpression image(u"/workspace\\d+/last-image$"_s);
        for (auto it = all.value().cbegin(); it != all.value().cend(); ++it) {
            if (image.match(it.key()).hasMatch())
                properties.append(it.key());
        }
    }
    if (properties.isEmpty())
        properties.append(monitorBase(connector) + u"/workspace0/last-image"_s);
    properties.sort();
    return properties;
}

std::optional<QString> XfceBackend::picture(const DesktopScreen &screen) const
{
    const QDBusMessage reply =
        m_bus.call(call(u"GetProperty"_s, { channel, imageProperties(screen.connector).constFirst() }));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    QVariant value = reply.arguments().constFirst();
    if (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    const QString shown = value.toString();
    return shown.isEmpty() ? std::nullopt : std::optional(shown);
}

QCoro::Task<> XfceBackend::setPicture(DesktopPicture picture, QList<DesktopScreen> screens)
{
    const QPointer<XfceBackend> self(this);
    for (const DesktopScreen &screen : std::as_const(screens)) {
        for (const QString &image : imageProperties(screen.connector)) {
            const QString style = image.chopped(QStringView(u"last-image").size()) + u"image-style"_s;
            const QList<std::pair<QString, QVariant>> values { { image, picture.stillPath() }, { style, zoomed } };
            for (const auto &value : values) {
                qCDebug(lcXfce) << "Setting" << value.first;
                QDBusPendingCall pending = m_bus.asyncCall(
                    call(u"SetProperty"_s, { channel, value.first, QVariant::fromValue(QDBusVariant(value.second)) }));
                const QDBusMessage reply = co_await pending;
                if (!self)
                    co_return;
                if (reply.type() == QDBusMessage::ErrorMessage)
                    throw DesktopError(reply.errorMessage());
            }
        }
    }
}

void XfceBackend::propertyChanged(const QString &changedChannel, const QString &property, const QDBusVariant &)
{
    if (changedChannel == channel && property.startsWith(u"/backdrop/"_s))
        Q_EMIT picturesChanged();
}
