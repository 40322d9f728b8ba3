#include "desktop_application.h"

#include "logging.h"

using namespace Qt::Literals::StringLiterals;

namespace {
// On Wayland a window may take the focus only with the token of the launch that asked for it;
// Qt's Wayland plugin uses this variable the next time a window asks.
void takeActivationToken(const QVariantMap &platformData)
{
    const QString token = platformData.value(u"activation-token"_s).toString();
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}
} // namespace

DesktopApplication::DesktopApplication(QObject *object, Actions actions)
    : QDBusAbstractAdaptor(object)
    , m_actions(std::move(actions))
{
}

void DesktopApplication::Activate(const QVariantMap &platformData)
{
    takeActivationToken(platformData);
    m_actions.openMain();
}

void DesktopApplication::Open(const QStringList & /*uris*/, const QVariantMap &platformData)
{
    // Quennet opens no files: opening is starting.
    Activate(platformData);
}

void DesktopApplication::ActivateAction(const QString &name, const QVariantList & /*parameter*/,
                                        const QVariantMap &platformData)
{
    takeActivationToken(platformData);
    if (name == "settings"_L1) {
        m_actions.openSettings();
    } else if (name == "shuffle-now"_L1) {
        m_actions.shuffleNow();
    } else {
        qCWarning(lcApplication) << "No such action:" << name;
    }
}
