#include "gsettings_do_not_disturb.h"

#include "gsettings_schema.h"
#include "logging.h"

using namespace Qt::Literals::StringLiterals;

namespace {
struct Key {
    const char *schema;
    const char *key;
    bool onWhen; // the key's value while Do Not Disturb is on
};

Key keyOf(GSettingsDoNotDisturb::Family family)
{
    switch (family) {
    case GSettingsDoNotDisturb::Family::Gnome:
        return { "org.gnome.desktop.notifications", "show-banners", false };
    case GSettingsDoNotDisturb::Family::Cinnamon:
        return { "org.cinnamon.desktop.notifications", "display-notifications", false };
    case GSettingsDoNotDisturb::Family::Mate:
        return { "org.mate.NotificationDaemon", "do-not-disturb", true };
    }
    Q_UNREACHABLE();
}

} // namespace

struct GSettingsDoNotDisturb::Settings {
    Key key {};
    GSettings *settings = nullptr;
    gulong handler = 0;

    ~Settings()
    {
        if (!settings)
            return;
        g_signal_handler_disconnect(settings, handler);
        g_object_unref(settings);
    }
};

GSettingsDoNotDisturb::GSettingsDoNotDisturb(Family family, QObject *parent)
    : DoNotDisturb(parent)
    , m_family(family)
    , m_settings(std::make_unique<Settings>())
{
    m_settings->key = keyOf(family);
    GSettingsSchema *schema = installedSchema(m_settings->key.schema, m_settings->key.key);
    if (!schema) {
        qCWarning(lcDoNotDisturb) << "No settings key" << m_settings->key.schema
                                  << m_settings->key.key;
        setOn(false);
        return;
    }
    m_settings->settings = g_settings_new_full(schema, nullptr, nullptr);
    g_settings_schema_unref(schema);
    const QByteArray signal = QByteArrayLiteral("changed::") + m_settings->key.key;
    m_settings->handler =
        g_signal_connect(m_settings->settings, signal.constData(),
                         G_CALLBACK(+[](GSettings *, const gchar *, gpointer self) {
                             static_cast<GSettingsDoNotDisturb *>(self)->read();
                         }),
                         this);
    read();
}

GSettingsDoNotDisturb::~GSettingsDoNotDisturb() = default;

bool GSettingsDoNotDisturb::isAvailable(Family family)
{
    GSettingsSchema *schema = installedSchema(keyOf(family).schema, keyOf(family).key);
    if (schema)
        g_settings_schema_unref(schema);
    return schema != nullptr;
}

QString GSettingsDoNotDisturb::name() const
{
    return QString::fromLatin1(m_settings->key.schema) + u' '
        + QString::fromLatin1(m_settings->key.key);
}

void GSettingsDoNotDisturb::read()
{
    const bool value = g_settings_get_boolean(m_settings->settings, m_settings->key.key);
    setOn(bool(value) == m_settings->key.onWhen);
}
