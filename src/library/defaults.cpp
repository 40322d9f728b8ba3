#include "defaults.h"

#include "application_folder.h"
#include "atomic_file.h"
#include "ini_text.h"

#include <QCoreApplication>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

Defaults::Defaults()
    : Defaults(defaultPath())
{
}

Defaults::Defaults(QString path)
    : m_path(std::move(path))
{
    load();
}

QString Defaults::NotSaved::description() const
{
    return QCoreApplication::translate(
        "Defaults", "Couldn't save your settings. Check that your disk has room and try again.");
}

void Defaults::load()
{
    // QSettings reads what every build wrote (@ByteArray, @Variant, one-item lists as text).
    // It reads a file again only when its size or its time to the millisecond changed, so two
    // other writers of one size within a millisecond could leave it the older copy.
    QFile file(m_path);
    m_known = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    m_values.clear();
    const QSettings settings(m_path, QSettings::IniFormat);
    for (const QString &key : settings.allKeys())
        m_values.insert(key, settings.value(key));
}

bool Defaults::save(const QVariantMap &changes)
{
    QFile file(m_path);
    QByteArray onDisk;
    if (file.exists()) {
        if (!file.open(QIODevice::ReadOnly))
            return false;
        onDisk = file.readAll();
    }
    if (onDisk != m_known)
        load();
    QVariantMap values = m_values;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        if (it->isValid())
            values.insert(it.key(), it.value());
        else
            values.remove(it.key());
    }
    const QByteArray text = iniText(values);
    if (!writeAtomically(m_path, text))
        return false;
    m_values = values;
    m_known = text;
    return true;
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
    const auto text = string(u"shopBaseURL"_s);
    if (!text)
        return productionShopURL();
    const QUrl url(*text, QUrl::StrictMode);
    const bool usable = url.isValid() && (url.scheme() == "https"_L1 || url.scheme() == "http"_L1)
        && !url.host().isEmpty();
    return usable ? url : productionShopURL();
}

std::optional<QString> Defaults::shopCertificates() const
{
    auto path = string(u"shopCertificates"_s);
    if (path && path->isEmpty())
        return std::nullopt;
    return path;
}

bool Defaults::shuffleIsOn() const
{
    return boolean(u"shuffleIsOn"_s, false);
}

bool Defaults::setShuffleIsOn(bool on)
{
    return save(u"shuffleIsOn"_s, on);
}

QString Defaults::shuffleInterval() const
{
    return string(u"shuffleInterval"_s).value_or(QString());
}

bool Defaults::setShuffleInterval(const QString &raw)
{
    return save(u"shuffleInterval"_s, raw);
}

QString Defaults::shuffleSource() const
{
    return string(u"shuffleSource"_s).value_or(QString());
}

bool Defaults::setShuffleSource(const QString &raw)
{
    return save(u"shuffleSource"_s, raw);
}

bool Defaults::shuffleDifferentOnEachDisplay() const
{
    return boolean(u"shuffleDifferentOnEachDisplay"_s, false);
}

bool Defaults::setShuffleDifferentOnEachDisplay(bool on)
{
    return save(u"shuffleDifferentOnEachDisplay"_s, on);
}

std::optional<QDateTime> Defaults::shuffleAnchor() const
{
    const auto text = string(u"shuffleAnchor"_s);
    if (!text)
        return std::nullopt;
    const auto anchor = QDateTime::fromString(*text, Qt::ISODateWithMs);
    if (!anchor.isValid())
        return std::nullopt;
    return anchor.toUTC();
}

bool Defaults::setShuffleAnchor(const QDateTime &anchor)
{
    return save(u"shuffleAnchor"_s, anchor.toUTC().toString(Qt::ISODateWithMs));
}

QStringList Defaults::shufflePlayed() const
{
    return strings(u"shufflePlayed"_s);
}

bool Defaults::setShufflePlayed(const QStringList &keys)
{
    return save(u"shufflePlayed"_s, keys);
}

QByteArray Defaults::focusWallpaper() const
{
    return m_values.value(u"focusWallpaper"_s).toByteArray();
}

bool Defaults::setFocusWallpaper(const QByteArray &json)
{
    // Saved at once like every setting: a relaunch after a crash must find the record.
    return save(u"focusWallpaper"_s, json.isEmpty() ? QVariant() : QVariant(json));
}

QByteArray Defaults::focusRestores() const
{
    return m_values.value(u"focusRestores"_s).toByteArray();
}

bool Defaults::setFocusRestores(const QByteArray &json)
{
    return save(u"focusRestores"_s, json.isEmpty() ? QVariant() : QVariant(json));
}

QString Defaults::focusFilterWallpaper() const
{
    return string(u"focusFilterWallpaper"_s).value_or(QString());
}

QString Defaults::focusFilterEdition() const
{
    return string(u"focusFilterEdition"_s).value_or(QString());
}

bool Defaults::setFocusFilter(const QString &key, const QString &edition)
{
    return save({ { u"focusFilterWallpaper"_s, key }, { u"focusFilterEdition"_s, edition } });
}

std::optional<QString> Defaults::helperStartedByBuild() const
{
    return string(u"helperStartedByBuild"_s);
}

bool Defaults::setHelperStartedByBuild(const QString &build)
{
    return save(u"helperStartedByBuild"_s, build);
}

std::optional<QString> Defaults::string(const QString &key) const
{
    const auto value = m_values.value(key);
    if (!value.isValid() || value.typeId() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

QStringList Defaults::strings(const QString &key) const
{
    // INI keeps a list of one item as plain text, and an empty list as nothing at all.
    const auto value = m_values.value(key);
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList();
    if (value.typeId() == QMetaType::QString && !value.toString().isEmpty())
        return { value.toString() };
    return {};
}

QStringList Defaults::favouriteColourways() const
{
    const QVariant value = m_values.value(u"favouriteColourways"_s);
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList();
    if (value.typeId() == QMetaType::QString) {
        const QStringList parts = value.toString().split(u'/');
        if (parts.size() == 2 && !parts[0].isEmpty() && !parts[1].isEmpty())
            return { value.toString() };
    }
    return {};
}

bool Defaults::setFavouriteColourways(const QStringList &keys)
{
    return save(u"favouriteColourways"_s, keys);
}

bool Defaults::checksForNewFiles() const
{
    return boolean(u"checksForNewFiles"_s, true);
}

bool Defaults::setChecksForNewFiles(bool on)
{
    return save(u"checksForNewFiles"_s, on);
}

bool Defaults::showsUnreleasedPacks() const
{
    return boolean(u"showsUnreleasedPacks"_s, false);
}

bool Defaults::setShowsUnreleasedPacks(bool on)
{
    return save(u"showsUnreleasedPacks"_s, on);
}

bool Defaults::hasLaunchedBefore() const
{
    return boolean(u"hasLaunchedBefore"_s, false);
}

bool Defaults::setHasLaunchedBefore(bool launched)
{
    return save(u"hasLaunchedBefore"_s, launched);
}

std::optional<QString> Defaults::lastOpenedVersion() const
{
    return string(u"lastOpenedVersion"_s);
}

bool Defaults::setLastOpenedVersion(const QString &version)
{
    return save(u"lastOpenedVersion"_s, version);
}

bool Defaults::showsWhatsNew() const
{
    return boolean(u"showsWhatsNew"_s, true);
}

bool Defaults::setShowsWhatsNew(bool on)
{
    return save(u"showsWhatsNew"_s, on);
}

bool Defaults::playsFeedbackSounds() const
{
    return boolean(u"playsFeedbackSounds"_s, true);
}

bool Defaults::setPlaysFeedbackSounds(bool on)
{
    return save(u"playsFeedbackSounds"_s, on);
}

QMap<QString, QStringList> Defaults::seenColourways() const
{
    QMap<QString, QStringList> seen;
    const auto value = m_values.value(u"seenColourways"_s);
    if (value.typeId() != QMetaType::QVariantMap)
        return seen;
    const auto map = value.toMap();
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        if (it->typeId() == QMetaType::QStringList)
            seen.insert(it.key(), it->toStringList());
    }
    return seen;
}

bool Defaults::setSeenColourways(const QMap<QString, QStringList> &seen)
{
    QVariantMap map;
    for (auto it = seen.cbegin(); it != seen.cend(); ++it)
        map.insert(it.key(), it.value());
    return save(u"seenColourways"_s, map);
}

bool Defaults::boolean(const QString &key, bool fallback) const
{
    // The INI file keeps booleans as text.
    const auto text = string(key);
    if (text == "true"_L1)
        return true;
    if (text == "false"_L1)
        return false;
    const auto value = m_values.value(key);
    return value.typeId() == QMetaType::Bool ? value.toBool() : fallback;
}
