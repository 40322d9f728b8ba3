#pragma once

#include "dev_shop.h"

#include <QDir>
#include <QFile>
#include <QFileDevice>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QTemporaryDir>

// Points the Quennet that a test starts at the development shop, through the settings in the
// test's home. Returns the application folder, or nothing when the settings cannot be written.
inline QString pointAtShop(const DevShop &shop)
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/app.quennet.Quennet");
    QFile defaults(config + QStringLiteral("/defaults.ini"));
    if (!QDir().mkpath(config) || !defaults.open(QIODevice::WriteOnly))
        return {};
    defaults.write(QStringLiteral("[General]\nshopBaseURL=%1\nshopCertificates=%2\n")
                       .arg(shop.baseUrl().toString(), shop.caPath())
                       .toUtf8());
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/app.quennet.Quennet");
}

// The browser Quennet opens for the approval page: a stand-in in folder, first on the PATH, that
// only notes the address in folder/opened.
inline bool standInBrowser(const QString &folder)
{
    QFile opener(folder + QStringLiteral("/xdg-open"));
    if (!opener.open(QIODevice::WriteOnly))
        return false;
    opener.write("#!/bin/sh\nprintf '%s\\n' \"$1\" >\"$(dirname \"$0\")/opened\"\n");
    opener.close();
    qputenv("PATH", folder.toUtf8() + ':' + qgetenv("PATH"));
    return opener.setPermissions(opener.permissions() | QFileDevice::ExeOwner);
}

// Whether Quennet keeps a library it loaded in its disk copy, in the application folder.
inline bool hasLibrary(const QString &folder)
{
    QFile file(folder + QStringLiteral("/shop-cache.json"));
    return file.open(QIODevice::ReadOnly)
        && QJsonDocument::fromJson(file.readAll())[QStringLiteral("library")].isObject();
}

// The development shop over the sample content, answering polls every second, with the Quennet
// that a test starts pointed at it.
struct SampleShop {
    // False when the shop does not start or the settings cannot be written.
    bool start()
    {
        folder = shop.start() ? pointAtShop(shop) : QString();
        return !folder.isEmpty();
    }

    QTemporaryDir state;
    DevShop shop { { .contentDir = QStringLiteral(QUENNET_DEVSHOP_CONTENT),
                     .stateDir = state.path(),
                     .pollInterval = 1 } };
    QString folder; // Quennet's application folder
};
