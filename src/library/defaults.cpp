#include "defaults.h"

#include "application_folder.h"

#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

Defaults::Defaults()
    : Defaults(defaultPath())
{
}

Defaults::Defaults(const QString &path)
    : m_settings(path, QSettings::IniFormat)
{
}

QString Defaults::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/'
        + QLatin1StringView(bundleIdentifier) + u"/defaults.ini"_s;
}

QUrl Defaults::productionShopURL()
{
    return QUrl(u"https://shop.quennet.app/api/app/v1"_s);
}

QUrl Defaults::shopBaseURL() const
{
    const auto text = string("shopBaseURL");
    if (!text)
        return productionShopURL();
    const QUrl url(*text, QUrl::StrictMode);
    const bool usable = url.isValid() && (url.scheme() == "https"_L1 || url.scheme() == "http"_L1)
        && !url.host().isEmpty();
    return usable ? url : productionShopURL();
}

std::optional<QString> Defaults::shopCertificates() const
{
    auto path = string("shopCertificates");
    if (path && path->isEmpty())
        return std::nullopt;
    return path;
}

bool Defaults::shuffleIsOn() const
{
    return boolean("shuffleIsOn", false);
}

void Defaults::setShuffleIsOn(bool on)
{
    m_settings.setValue("shuffleIsOn", on);
}

QString Defaults::shuffleInterval() const
{
    return string("shuffleInterval").value_or(QString());
}

void Defaults::setShuffleInterval(const QString &raw)
{
    m_settings.setValue("shuffleInterval", raw);
}

QString Defaults::shuffleSource() const
{
    return string("shuffleSource").value_or(QString());
}

void Defaults::setShuffleSource(const QString &raw)
{
    m_settings.setValue("shuffleSource", raw);
}

bool Defaults::shuffleDifferentOnEachDisplay() const
{
    return boolean("shuffleDifferentOnEachDisplay", false);
}

void Defaults::setShuffleDifferentOnEachDisplay(bool on)
{
    m_settings.setValue("shuffleDifferentOnEachDisplay", on);
}

std::optional<QDateTime> Defaults::shuffleAnchor() const
{
    const auto text = string("shuffleAnchor");
    if (!text)
        return std::nullopt;
    const auto anchor = QDateTime::fromString(*text, Qt::ISODateWithMs);
    if (!anchor.isValid())
        return std::nullopt;
    return anchor.toUTC();
}

void Defaults::setShuffleAnchor(const QDateTime &anchor)
{
    m_settings.setValue("shuffleAnchor", anchor.toUTC().toString(Qt::ISODateWithMs));
}

QStringList Defaults::shufflePlayed() const
{
    return strings("shufflePlayed");
}

void Defaults::setShufflePlayed(const QStringList &keys)
{
    m_settings.setValue("shufflePlayed", keys);
}

QByteArray Defaults::focusWallpaper() const
{
    return m_settings.value("focusWallpaper").toByteArray();
}

void Defaults::setFocusWallpaper(const QByteArray &json)
{
    if (json.isEmpty())
        m_settings.remove("focusWallpaper");
    else
        m_settings.setValue("focusWallpaper", json);
    // At once: a relaunch after a crash must find the record.
    m_settings.sync();
}

QByteArray Defaults::focusRestores() const
{
    return m_settings.value("focusRestores").toByteArray();
}

void Defaults::setFocusRestores(const QByteArray &json)
{
    if (json.isEmpty())
        m_settings.remove("focusRestores");
    else
        m_settings.setValue("focusRestores", json);
    // At once: a relaunch after a crash must find the record.
    m_settings.sync();
}

QString Defaults::focusFilterWallpaper() const
{
    return string("focusFilterWallpaper").value_or(QString());
}

void Defaults::setFocusFilterWallpaper(const QString &key)
{
    m_settings.setValue("focusFilterWallpaper", key);
}

QString Defaults::focusFilterEdition() const
{
    return string("focusFilterEdition").value_or(QString());
}

void Defaults::setFocusFilterEdition(const QString &raw)
{
    m_settings.setValue("focusFilterEdition", raw);
}

std::optional<QString> Defaults::helperStartedByBuild() const
{
    return string("helperStartedByBuild");
}

void Defaults::setHelperStartedByBuild(const QString &build)
{
    m_settings.setValue("helperStartedByBuild", build);
}

std::optional<QString> Defaults::string(QAnyStringView key) const
{
    const auto value = m_settings.value(key);
    if (!value.isValid() || value.typeId() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

QStringList Defaults::strings(QAnyStringView key) const
{
    // INI keeps a list of one item as plain text, and an empty list as nothing at all.
    const auto value = m_settings.value(key);
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList();
    if (value.typeId() == QMetaType::QString && !value.toString().isEmpty())
        return { value.toString() };
    return {};
}

QStringList Defaults::favouriteColourways() const
{
    const QVariant value = m_settings.value("favouriteColourways");
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList();
    if (value.typeId() == QMetaType::QString) {
        const QStringList parts = value.toString().split(u'/');
        if (parts.size() == 2 && !parts[0].isEmpty() && !parts[1].isEmpty())
            return { value.toString() };
    }
    return {};
}

void Defaults::setFavouriteColourways(const QStringList &keys)
{
    m_settings.setValue("favouriteColourways", keys);
}

bool Defaults::checksForNewFiles() const
{
    return boolean("checksForNewFiles", true);
}

void Defaults::setChecksForNewFiles(bool on)
{
    m_settings.setValue("checksForNewFiles", on);
}

bool Defaults::showsUnreleasedPacks() const
{
    return boolean("showsUnreleasedPacks", false);
}

void Defaults::setShowsUnreleasedPacks(bool on)
{
    m_settings.setValue("showsUnreleasedPacks", on);
}

QMap<QString, QStringList> Defaults::seenColourways() const
{
    QMap<QString, QStringList> seen;
    const auto value = m_settings.value("seenColourways");
    if (value.typeId() != QMetaType::QVariantMap)
        return seen;
    const auto map = value.toMap();
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        if (it->typeId() == QMetaType::QStringList)
            seen.insert(it.key(), it->toStringList());
    }
    return seen;
}

void Defaults::setSeenColourways(const QMap<QString, QStringList> &seen)
{
    QVariantMap map;
    for (auto it = seen.cbegin(); it != seen.cend(); ++it)
        map.insert(it.key(), it.value());
    m_settings.setValue("seenColourways", map);
}

bool Defaults::boolean(QAnyStringView key, bool fallback) const
{
    // The INI file keeps booleans as text.
    const auto text = string(key);
    if (text == "true"_L1)
        return true;
    if (text == "false"_L1)
        return false;
    const auto value = m_settings.value(key);
    return value.typeId() == QMetaType::Bool ? value.toBool() : fallback;
}
