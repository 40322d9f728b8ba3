#include "xfce_backend.h"

#include "x11_root_window.h"

#include <QCoroDBusPendingCall>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QDBusVariant>
#include <QLoggingCategory>
#include <QPointer>
#include <QRegularExpression>

#include <algorithm>

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
    , m_root(new X11RootWindow(this))
{
    followQtScreens();
    connect(m_root, &X11RootWindow::currentDesktopChanged, this, &DesktopBackend::workspaceChanged);
    // From any sender: xfconfd is started on demand, perhaps after this, and a match on its
    // name would miss it.
    m_bus.connect(QString(), path, interface, u"PropertyChanged"_s, this,
                  SLOT(propertyChanged(QDBusMessage)));
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
    return Capability::PerDisplay | Capability::ReadBack | Capability::Workspaces;
}

std::optional<QVariant> XfceBackend::property(const QString &name) const
{
    const QDBusMessage reply = m_bus.call(call(u"GetProperty"_s, { channel, name }));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    QVariant value = reply.arguments().constFirst();
    if (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

bool XfceBackend::keepsPicturePerWorkspace() const
{
    // xfdesktop's default is the single-workspace mode.
    const auto single = property(u"/backdrop/single-workspace-mode"_s);
    return single && !single->toBool();
}

int XfceBackend::shownWorkspace() const
{
    if (keepsPicturePerWorkspace())
        return int(m_root->currentDesktop().value_or(0));
    return property(u"/backdrop/single-workspace-number"_s).value_or(0).toInt();
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
    const int count = std::max<int>({ int(m_root->numberOfDesktops().value_or(1)), shownWorkspace() + 1, 1 });
    for (int workspace = 0; workspace < count; ++workspace) {
        const QString image = monitorBase(connector) + u"/workspace%1/last-image"_s.arg(workspace);
        if (!properties.contains(image))
            properties.append(image);
    }
    properties.sort();
    return properties;
}

std::optional<QString> XfceBackend::picture(const DesktopScreen &screen) const
{
    const auto value = property(monitorBase(screen.connector)
                                + u"/workspace%1/last-image"_s.arg(shownWorkspace()));
    const QString shown = value ? value->toString() : QString();
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

void XfceBackend::propertyChanged(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.size() >= 2 && arguments[0].toString() == channel
        && arguments[1].toString().startsWith(u"/backdrop/"_s))
        Q_EMIT picturesChanged();
}
