#include "portal_backend.h"

#include <QCoroDBusPendingCall>
#include <QCoroSignal>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QPointer>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace
{
const auto everyScreen = u"*"_s;
} // namespace

// Carries the portal's Response signal for one request.
class PortalResponse : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    uint code = 2;

Q_SIGNALS:
    void arrived();

public Q_SLOTS:
    void take(uint response, const QVariantMap &)
    {
        code = response;
        Q_EMIT arrived();
    }
};

PortalBackend::PortalBackend(const QDBusConnection &bus, const QString &stateFile, QObject *parent)
    : DesktopBackend(parent)
    , m_bus(bus)
    , m_shown(stateFile)
{
    followQtScreens();
}

QString PortalBackend::name() const
{
    return u"desktop portal"_s;
}

DesktopBackend::Capabilities PortalBackend::capabilities() const
{
    return {};
}

std::optional<QString> PortalBackend::picture(const DesktopScreen &) const
{
    return m_shown.picture(everyScreen);
}

QCoro::Task<> PortalBackend::setPicture(DesktopPicture picture, QList<DesktopScreen>)
{
    auto message = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
                                                  u"/org/freedesktop/portal/desktop"_s,
                                                  u"org.freedesktop.portal.Wallpaper"_s, u"SetWallpaperURI"_s);
    message << QString() << QUrl::fromLocalFile(picture.stillPath()).toString()
            << QVariantMap { { u"show-preview"_s, false }, { u"set-on"_s, u"background"_s } };
    const QPointer<PortalBackend> self(this);
    QDBusPendingCall pending = m_bus.asyncCall(message);
    const QDBusMessage reply = co_await pending;
    if (!self)
        co_return;
    if (reply.type() == QDBusMessage::ErrorMessage)
        throw DesktopError(reply.errorMessage());
    const QString request = reply.arguments().value(0).value<QDBusObjectPath>().path();
    PortalResponse response;
    m_bus.connect(QString(), request, u"org.freedesktop.portal.Request"_s, u"Response"_s, &response,
                  SLOT(take(uint, QVariantMap)));
    // The user may take a while to answer the desktop's question.
    co_await qCoro(&response, &PortalResponse::arrived, std::chrono::minutes(5));
    if (!self)
        co_return;
    if (response.code != 0)
        throw DesktopError(u"Your desktop did not take the picture."_s);
    m_shown.setPicture(everyScreen, picture.path);
    m_shown.save();
}

#include "portal_backend.moc"
