#pragma once

#include "dev_shop.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

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
