#pragma once

#include "dev_shop.h"
#include "test_files.h"

#include <QJsonDocument>
#include <QStandardPaths>
#include <QTemporaryDir>

// The browser Quennet opens for the approval page: a stand-in in folder, first on the PATH, that
// only notes the address in folder/opened.
inline bool standInBrowser(const QString &folder)
{
    const QString opener = folder + QStringLiteral("/xdg-open");
    qputenv("PATH", folder.toUtf8() + ':' + qgetenv("PATH"));
    return writeFile(opener, "#!/bin/sh\nprintf '%s\\n' \"$1\" >\"$(dirname \"$0\")/opened\"\n")
        && QFile::setPermissions(opener, QFile::permissions(opener) | QFileDevice::ExeOwner);
}

// Whether Quennet keeps a library it loaded in its disk copy, in the application folder.
inline bool hasLibrary(const QString &folder)
{
    const auto cache =
        QJsonDocument::fromJson(readAll(folder + QStringLiteral("/shop-cache.json")));
    return cache[QStringLiteral("library")].isObject();
}

// The development shop over the sample content, answering polls every second, with the Quennet
// that a test starts pointed at it.
struct SampleShop {
    // Points Quennet at the shop through the settings in the test's home, welcomed already and
    // with this version's changes seen. False when the shop does not start or the settings
    // cannot be written.
    bool start()
    {
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
            + QStringLiteral("/app.quennet.Quennet");
        return shop.start()
            && writeFile(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                             + QStringLiteral("/app.quennet.Quennet/defaults.ini"),
                         QStringLiteral("[General]\nshopBaseURL=%1\nshopCertificates=%2\n"
                                        "hasLaunchedBefore=true\nlastOpenedVersion=%3\n")
                             .arg(shop.baseUrl().toString(), shop.caPath(),
                                  QStringLiteral(QUENNET_VERSION))
                             .toUtf8());
    }

    QTemporaryDir state;
    DevShop shop { { .contentDir = QStringLiteral(QUENNET_DEVSHOP_CONTENT),
                     .stateDir = state.path(),
                     .pollInterval = 1 } };
    QString folder; // Quennet's application folder
};
