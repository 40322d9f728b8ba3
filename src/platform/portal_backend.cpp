#include "portal_backend.h"

#include "logging.h"

#include <QCoreApplication>
#include <QCoroDBusPendingCall>
#include <QCoroSignal>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QPointer>
#include <QRandomGenerator>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto everyScreen = u"*"_s;
const auto requestInterface = u"org.freedesktop.portal.Request"_s;
} // namespace

// Carries the portal's Response signal for one request: it may come before the call's reply.
class PortalResponse : public QObject {
    Q_OBJECT

public:
    PortalResponse(QDBusConnection bus, QString request)
        : m_bus(std::move(bus))
        , m_request(std::move(request))
    {
        listen(true);
    }

    ~PortalResponse() override { listen(false); }

    // Where the portal put the request, when it chose another object than the one asked for.
    void follow(const QString &request)
    {
        if (request.isEmpty() || request == m_request)
            return;
        listen(false);
        m_request = request;
        listen(true);
    }

    std::optional<uint> code;

Q_SIGNALS:
    void arrived();

public Q_SLOTS:
    void take(uint response, const QVariantMap & /*results*/)
    {
        code = response;
        Q_EMIT arrived();
    }

private:
    void listen(bool on)
    {
        const auto signal = u"Response"_s;
        if (on)
            m_bus.connect(QString(), m_request, requestInterface, signal, this,
                          SLOT(take(uint, QVariantMap)));
        else
            m_bus.disconnect(QString(), m_request, requestInterface, signal, this,
                             SLOT(take(uint, QVariantMap)));
    }

    QDBusConnection m_bus;
    QString m_request;
};

PortalBackend::PortalBackend(QDBusConnection bus, const QString &stateFile, QObject *parent)
    : DesktopBackend(parent)
    , m_bus(std::move(bus))
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

std::optional<QString> PortalBackend::picture(const DesktopScreen & /*screen*/) const
{
    return m_shown.picture(everyScreen);
}

QCoro::Task<> PortalBackend::setPicture(DesktopPicture picture, QList<DesktopScreen> /*screens*/)
{
    // The portal's request pattern: the request's object follows from our name and a token of
    // ours, so its Response is listened for before the call, which it may overtake.
    const QString token = u"quennet%1"_s.arg(QRandomGenerator::global()->generate());
    const QString sender = m_bus.baseService().mid(1).replace(u'.', u'_');
    PortalResponse response(m_bus,
                            u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(sender, token));
    auto message = QDBusMessage::createMethodCall(
        u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
        u"org.freedesktop.portal.Wallpaper"_s, u"SetWallpaperURI"_s);
    message << QString() << QUrl::fromLocalFile(picture.stillPath()).toString()
            << QVariantMap { { u"handle_token"_s, token },
                             { u"show-preview"_s, false },
                             { u"set-on"_s, u"background"_s } };
    const QPointer<PortalBackend> self(this);
    QDBusPendingCall pending = m_bus.asyncCall(message);
    const QDBusMessage reply = co_await pending;
    if (!self)
        co_return;
    if (reply.type() == QDBusMessage::ErrorMessage)
        throw DesktopError(
            QCoreApplication::translate("DesktopError",
                                        "The desktop portal refused the picture: %1")
                .arg(reply.errorMessage().isEmpty() ? reply.errorName() : reply.errorMessage()));
    // Portals older than the token pattern choose the object themselves.
    response.follow(reply.arguments().value(0).value<QDBusObjectPath>().path());
    if (!response.code) {
        // The user may take a while to answer the desktop's question.
        co_await qCoro(&response, &PortalResponse::arrived, m_timeout);
        if (!self)
            co_return;
    }
    if (!response.code)
        throw DesktopError(QCoreApplication::translate(
            "DesktopError", "Your desktop did not answer about the picture."));
    if (*response.code != 0)
        throw DesktopError(
            QCoreApplication::translate("DesktopError", "Your desktop did not take the picture."));
    qCDebug(lcPortal) << "The desktop took" << picture.path;
    m_shown.setPicture(everyScreen, picture.path);
    m_shown.save();
}

#include "portal_backend.moc"
