#include "gnome_backend.h"

#include "gsettings_schema.h"
#include "logging.h"
#include "spanned_picture.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QJsonObject>
#include <QPointer>
#include <QUrl>
#include <QtConcurrent/QtConcurrentRun>

using namespace Qt::Literals::StringLiterals;

namespace {
struct Keys {
    const char *schema;
    const char *picture;
    bool isUri; // MATE keeps a plain path
    const char *dark; // null where the desktop has no dark picture
};

Keys keysOf(GnomeBackend::Family family)
{
    switch (family) {
    case GnomeBackend::Family::Gnome:
        return { "org.gnome.desktop.background", "picture-uri", true, "picture-uri-dark" };
    case GnomeBackend::Family::Cinnamon:
        return { "org.cinnamon.desktop.background", "picture-uri", true, nullptr };
    case GnomeBackend::Family::Mate:
        return { "org.mate.background", "picture-filename", false, nullptr };
    }
    Q_UNREACHABLE();
}

const auto darkKey = u"dark"_s;
const auto stillKey = u"still"_s;
const auto spannedKey = u"spanned"_s;
} // namespace

struct GnomeBackend::Settings {
    GSettingsSchema *schema = nullptr;
    GSettings *settings = nullptr;
    Keys keys {};
    bool hasDark = false;
    gulong handler = 0;

    ~Settings()
    {
        if (settings) {
            g_signal_handler_disconnect(settings, handler);
            g_object_unref(settings);
        }
        if (schema)
            g_settings_schema_unref(schema);
    }

    [[nodiscard]] QString string(const char *key) const
    {
        gchar *value = g_settings_get_string(settings, key);
        QString result = QString::fromUtf8(value);
        g_free(value);
        return result;
    }

    void setString(const char *key, const QString &value) const
    {
        g_settings_set_string(settings, key, value.toUtf8().constData());
    }

    [[nodiscard]] QString toSetting(const QString &path) const
    {
        return keys.isUri ? QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded) : path;
    }

    [[nodiscard]] QString fromSetting(const QString &value) const
    {
        if (!keys.isUri)
            return value;
        const QUrl url(value);
        return url.isLocalFile() ? url.toLocalFile() : value;
    }
};

GnomeBackend::GnomeBackend(Family family, QString folder, QObject *parent)
    : DesktopBackend(parent)
    , m_family(family)
    , m_folder(std::move(folder))
    , m_settings(std::make_unique<Settings>())
    , m_shown(m_folder + u"/desktop-gsettings.json"_s)
{
    m_composer.setMaxThreadCount(1);
    m_settings->keys = keysOf(family);
    m_settings->schema = installedSchema(m_settings->keys.schema);
    if (!m_settings->schema) {
        qCWarning(lcGSettings) << "No settings schema" << m_settings->keys.schema;
        return;
    }
    m_settings->settings = g_settings_new_full(m_settings->schema, nullptr, nullptr);
    m_settings->hasDark = m_settings->keys.dark
        && g_settings_schema_has_key(m_settings->schema, m_settings->keys.dark);
    // Changes made elsewhere arrive through GLib's main loop, which Qt's event dispatcher runs.
    m_settings->handler = g_signal_connect(
        m_settings->settings, "changed", G_CALLBACK(+[](GSettings *, const gchar *, gpointer self) {
            Q_EMIT static_cast<GnomeBackend *>(self)->picturesChanged();
        }),
        this);

    followQtScreens();
    connect(this, &DesktopBackend::screensChanged, this, [this] {
        if (isSpanned())
            [](GnomeBackend *self) -> QCoro::Task<> {
                try {
                    co_await self->span();
                } catch (const Error &error) {
                    qCWarning(lcGSettings) << "Could not span the pictures again:" << error.what();
                }
            }(this);
    });
}

GnomeBackend::~GnomeBackend() = default;

std::optional<GnomeBackend::Family> GnomeBackend::familyOf(const QString &currentDesktop)
{
    for (const QString &name : currentDesktop.split(u':', Qt::SkipEmptyParts)) {
        const QString desktop = name.toLower();
        if (desktop == "gnome"_L1 || desktop == "budgie"_L1 || desktop == "unity"_L1
            || desktop == "gnome-classic"_L1 || desktop == "gnome-flashback"_L1
            || desktop == "pantheon"_L1)
            return Family::Gnome;
        if (desktop == "x-cinnamon"_L1 || desktop == "cinnamon"_L1)
            return Family::Cinnamon;
        if (desktop == "mate"_L1)
            return Family::Mate;
    }
    return std::nullopt;
}

bool GnomeBackend::isAvailable(Family family)
{
    GSettingsSchema *schema = installedSchema(keysOf(family).schema);
    if (schema)
        g_settings_schema_unref(schema);
    return schema != nullptr;
}

QString GnomeBackend::name() const
{
    switch (m_family) {
    case Family::Gnome:
        return u"GNOME"_s;
    case Family::Cinnamon:
        return u"Cinnamon"_s;
    case Family::Mate:
        return u"MATE"_s;
    }
    Q_UNREACHABLE();
}

DesktopBackend::Capabilities GnomeBackend::capabilities() const
{
    Capabilities capabilities = Capability::PerDisplay | Capability::ReadBack;
    if (m_settings->hasDark)
        capabilities |= Capability::LightDarkPair;
    if (m_family == Family::Gnome)
        capabilities |= Capability::TimedSlideshow;
    return capabilities;
}

QString GnomeBackend::desktopPicture() const
{
    return m_settings->settings
        ? m_settings->fromSetting(m_settings->string(m_settings->keys.picture))
        : QString();
}

bool GnomeBackend::isSpanned() const
{
    const QString shown = desktopPicture();
    return !shown.isEmpty() && shown == m_shown.extra(spannedKey).toString();
}

std::optional<QString> GnomeBackend::picture(const DesktopScreen &screen) const
{
    const QString shown = desktopPicture();
    if (shown.isEmpty())
        return std::nullopt;
    return isSpanned() ? m_shown.picture(screen.connector) : std::optional(shown);
}

std::optional<QString> GnomeBackend::thumbnail(const DesktopScreen &screen, bool dark) const
{
    auto shown = picture(screen);
    if (!shown || shown != m_shown.picture(screen.connector))
        return shown;
    const QString still =
        m_shown.extra(stillKey).toObject().value(screen.connector).toString(*shown);
    if (!dark || !m_settings->hasDark)
        return still;
    return m_shown.extra(darkKey).toObject().value(screen.connector).toString(still);
}

QCoro::Task<> GnomeBackend::setPicture(DesktopPicture picture, QList<DesktopScreen> screens)
{
    if (!m_settings->settings)
        throw DesktopError(QCoreApplication::translate(
            "DesktopError", "Your desktop settings have no wallpaper settings."));
    const QList<DesktopScreen> all = this->screens();
    bool everyScreen = true;
    for (const DesktopScreen &screen : all)
        everyScreen = everyScreen && screens.contains(screen);

    // What was on the other screens stays: a plain picture of the desktop's own is theirs too.
    const bool wasSpanned = isSpanned();
    const QString before = desktopPicture();
    QJsonObject stills = m_shown.extra(stillKey).toObject();
    QJsonObject darks = m_shown.extra(darkKey).toObject();
    for (const DesktopScreen &screen : all) {
        if (!wasSpanned && !screens.contains(screen)) {
            m_shown.setPicture(screen.connector, before);
            stills.insert(screen.connector, before);
            darks.remove(screen.connector);
        }
    }
    for (const DesktopScreen &screen : std::as_const(screens)) {
        m_shown.setPicture(screen.connector, picture.path);
        stills.insert(screen.connector, picture.stillPath());
        if (picture.dark)
            darks.insert(screen.connector, *picture.dark);
        else
            darks.remove(screen.connector);
    }
    m_shown.setExtra(stillKey, stills);
    m_shown.setExtra(darkKey, darks);
    m_shown.save();

    if (everyScreen || all.size() < 2) {
        write(picture.path, picture.dark, false);
        co_return;
    }
    co_await span();
}

QCoro::Task<> GnomeBackend::span()
{
    const QJsonObject stills = m_shown.extra(stillKey).toObject();
    const QJsonObject darks = m_shown.extra(darkKey).toObject();
    QList<SpannedPicture::Part> light;
    QList<SpannedPicture::Part> dark;
    for (const DesktopScreen &screen : screens()) {
        const QString still = stills.value(screen.connector).toString();
        light.append({ screen.geometry, still });
        dark.append({ screen.geometry, darks.value(screen.connector).toString(still) });
    }
    const bool hasDark = m_settings->hasDark && light != dark;
    const QString folder = m_folder;
    const QPointer<GnomeBackend> self(this);
    const quint64 generation = ++m_spanGeneration;
    // Not inside the co_await expression: g++ 12 destroys such temporaries twice.
    QFuture<QStringList> composing = QtConcurrent::run(&m_composer, [light, dark, folder, hasDark] {
        return QStringList { SpannedPicture::compose(light, folder, u"spanned"_s),
                             hasDark ? SpannedPicture::compose(dark, folder, u"spanned-dark"_s)
                                     : QString() };
    });
    const QStringList made = co_await composing;
    // A newer arrangement is on its way, and its composition removed this one's files.
    if (!self || generation != m_spanGeneration)
        co_return;
    const QString lightPath = made.value(0);
    const QString darkPath = made.value(1);
    if (lightPath.isEmpty())
        throw DesktopError(QCoreApplication::translate(
            "DesktopError", "The picture for all displays could not be written."));
    m_shown.setExtra(spannedKey, lightPath);
    m_shown.save();
    write(lightPath, darkPath.isEmpty() ? std::nullopt : std::optional(darkPath), true);
}

void GnomeBackend::write(const QString &path, const std::optional<QString> &dark, bool spanned)
{
    const Settings &s = *m_settings;
    qCDebug(lcGSettings) << "Setting" << path << dark.value_or(QString())
                         << (spanned ? "spanned" : "zoom");
    g_settings_delay(s.settings);
    s.setString(s.keys.picture, s.toSetting(path));
    if (s.hasDark)
        s.setString(s.keys.dark, s.toSetting(dark.value_or(path)));
    s.setString("picture-options", spanned ? u"spanned"_s : u"zoom"_s);
    g_settings_apply(s.settings);
    g_settings_sync();
    if (desktopPicture() != path
        || (s.hasDark && s.fromSetting(s.string(s.keys.dark)) != dark.value_or(path)))
        throw DesktopError(QCoreApplication::translate(
            "DesktopError", "Your desktop settings did not keep the picture."));
}
