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

std::optional<QString> Defaults::string(QAnyStringView key) const
{
    const auto value = m_settings.value(key);
    if (!value.isValid() || value.typeId() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
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
