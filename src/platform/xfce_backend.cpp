#include "xfce_backend.h"

#include "dbus_values.h"
#include "logging.h"
#include "x11_root_window.h"

#include <QCoroDBusPendingCall>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QPointer>
#include <QRegularExpression>
#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {
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

const auto singleMode = u"/backdrop/single-workspace-mode"_s;
const auto singleNumber = u"/backdrop/single-workspace-number"_s;

// The properties that say what shows; the rest (styles, colours) change nothing for Quennet.
bool tellsWhatShows(const QString &property)
{
    return property.endsWith("/last-image"_L1) || property == singleMode
        || property == singleNumber;
}
} // namespace

XfceBackend::XfceBackend(QDBusConnection bus, QObject *parent)
    : DesktopBackend(parent)
    , m_bus(std::move(bus))
    , m_root(new X11RootWindow(this))
{
    followQtScreens();
    connect(m_root, &X11RootWindow::currentDesktopChanged, this, &DesktopBackend::workspaceChanged);
    // From any sender: xfconfd is started on demand, perhaps after this, and a match on its
    // name would miss it.
    m_bus.connect(QString(), path, interface, u"PropertyChanged"_s, this,
                  SLOT(propertyChanged(QDBusMessage)));
    m_bus.connect(QString(), path, interface, u"PropertyRemoved"_s, this,
                  SLOT(propertyRemoved(QDBusMessage)));
    // Qualified: a constructor reaches only this class's own, whatever the dynamic type.
    XfceBackend::readBack();
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

QCoro::Task<> XfceBackend::readBack()
{
    const QPointer<XfceBackend> self(this);
    QDBusPendingCall pending =
        m_bus.asyncCall(call(u"GetAllProperties"_s, { channel, u"/backdrop"_s }));
    const QDBusMessage reply = co_await pending;
    if (!self)
        co_return;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        qCDebug(lcXfce) << "No read-back:" << reply.errorMessage();
        co_return;
    }
    const auto all = qdbus_cast<QVariantMap>(reply.arguments().constFirst());
    QVariantMap backdrop;
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        if (tellsWhatShows(it.key()))
            backdrop.insert(it.key(), unwrap(it.value()));
    }
    take(std::move(backdrop));
}

void XfceBackend::take(QVariantMap backdrop)
{
    if (backdrop == m_backdrop)
        return;
    m_backdrop = std::move(backdrop);
    Q_EMIT picturesChanged();
}

bool XfceBackend::keepsPicturePerWorkspace() const
{
    // xfdesktop's default is the single-workspace mode.
    const QVariant single = m_backdrop.value(singleMode);
    return single.isValid() && !single.toBool();
}

int XfceBackend::shownWorkspace() const
{
    if (keepsPicturePerWorkspace())
        return int(m_root->currentDesktop().value_or(0));
    return m_backdrop.value(singleNumber, 0).toInt();
}

QStringList XfceBackend::imageProperties(const QString &connector) const
{
    static const QRegularExpression image(u"^/workspace\\d+/last-image$"_s);
    const QString base = monitorBase(connector);
    QStringList properties;
    for (auto it = m_backdrop.cbegin(); it != m_backdrop.cend(); ++it) {
        if (it.key().startsWith(base)
            && image.match(QStringView(it.key()).mid(base.size())).hasMatch())
            properties.append(it.key());
    }
    const int count =
        std::max<int>({ int(m_root->numberOfDesktops().value_or(1)), shownWorkspace() + 1, 1 });
    for (int workspace = 0; workspace < count; ++workspace) {
        const QString image = base + u"/workspace%1/last-image"_s.arg(workspace);
        if (!properties.contains(image))
            properties.append(image);
    }
    properties.sort();
    return properties;
}

std::optional<QString> XfceBackend::picture(const DesktopScreen &screen) const
{
    const QString shown = m_backdrop
                              .value(monitorBase(screen.connector)
                                     + u"/workspace%1/last-image"_s.arg(shownWorkspace()))
                              .toString();
    return shown.isEmpty() ? std::nullopt : std::optional(shown);
}

QCoro::Task<> XfceBackend::setPicture(DesktopPicture picture, QList<DesktopScreen> screens)
{
    const QPointer<XfceBackend> self(this);
    // Every workspace xfconf knows of, as it is now.
    co_await readBack();
    if (!self)
        co_return;
    QStringList changed;
    for (const DesktopScreen &screen : std::as_const(screens)) {
        for (const QString &image : imageProperties(screen.connector)) {
            const QString style =
                image.chopped(QStringView(u"last-image").size()) + u"image-style"_s;
            const QList<std::pair<QString, QVariant>> values { { image, picture.stillPath() },
                                                               { style, zoomed } };
            for (const auto &value : values) {
                qCDebug(lcXfce) << "Setting" << value.first;
                QDBusPendingCall pending = m_bus.asyncCall(call(
                    u"SetProperty"_s,
                    { channel, value.first, QVariant::fromValue(QDBusVariant(value.second)) }));
                const QDBusMessage reply = co_await pending;
                if (!self)
                    co_return;
                if (reply.type() == QDBusMessage::ErrorMessage)
                    throw DesktopError(reply.errorMessage(), changed);
            }
        }
        changed.append(screen.connector);
    }
    // Asked after the sets, so answered after them.
    co_await readBack();
}

void XfceBackend::propertyChanged(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.size() < 3 || arguments[0].toString() != channel
        || !arguments[1].toString().startsWith(u"/backdrop/"_s)
        || !tellsWhatShows(arguments[1].toString()))
        return;
    QVariantMap backdrop = m_backdrop;
    backdrop.insert(arguments[1].toString(), unwrap(arguments[2]));
    take(std::move(backdrop));
}

void XfceBackend::propertyRemoved(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.size() < 2 || arguments[0].toString() != channel)
        return;
    QVariantMap backdrop = m_backdrop;
    // Removing a group removes what is under it.
    const QString removed = arguments[1].toString();
    backdrop.removeIf([&removed](QVariantMap::iterator it) {
        return it.key() == removed || it.key().startsWith(removed + u'/');
    });
    take(std::move(backdrop));
}
