#include "gsettings_do_not_disturb.h"

#include "gsettings_library.h"
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

// The schema when GIO is there and the schema is installed with the key; the caller unrefs it.
GSettingsSchema *lookUp(const GSettingsLibrary *gio, const Key &key)
{
    return gio ? gio->lookUp(key.schema, key.key) : nullptr;
}
} // namespace

struct GSettingsDoNotDisturb::Settings {
    const GSettingsLibrary *gio = GSettingsLibrary::get();
    Key key {};
    GSettings *settings = nullptr;
    gulong handler = 0;

    ~Settings()
    {
        if (!settings)
            return;
        gio->disconnectSignal(settings, handler);
        gio->unrefObject(settings);
    }
};

GSettingsDoNotDisturb::GSettingsDoNotDisturb(Family family, QObject *parent)
    : DoNotDisturb(parent)
    , m_family(family)
    , m_settings(std::make_unique<Settings>())
{
    m_settings->key = keyOf(family);
    const GSettingsLibrary *gio = m_settings->gio;
    GSettingsSchema *schema = lookUp(gio, m_settings->key);
    if (!schema) {
        qCWarning(lcDoNotDisturb) << "No settings key" << m_settings->key.schema
                                  << m_settings->key.key;
        setOn(false);
        return;
    }
    m_settings->settings = gio->newSettings(schema, nullptr, nullptr);
    gio->unrefSchema(schema);
    const QByteArray signal = QByteArrayLiteral("changed::") + m_settings->key.key;
    m_settings->handler =
        gio->connectSignal(m_settings->settings, signal.constData(),
                           G_CALLBACK(+[](GSettings *, const gchar *, gpointer self) {
                               static_cast<GSettingsDoNotDisturb *>(self)->read();
                           }),
                           this, nullptr, GConnectFlags(0));
    read();
}

GSettingsDoNotDisturb::~GSettingsDoNotDisturb() = default;

bool GSettingsDoNotDisturb::isAvailable(Family family)
{
    const GSettingsLibrary *gio = GSettingsLibrary::get();
    GSettingsSchema *schema = lookUp(gio, keyOf(family));
    if (schema)
        gio->unrefSchema(schema);
    return schema != nullptr;
}

QString GSettingsDoNotDisturb::name() const
{
    return QString::fromLatin1(m_settings->key.schema) + u' '
        + QString::fromLatin1(m_settings->key.key);
}

void GSettingsDoNotDisturb::read()
{
    const bool value = m_settings->gio->getBoolean(m_settings->settings, m_settings->key.key);
    setOn(bool(value) == m_settings->key.onWhen);
}
