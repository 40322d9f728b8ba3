#include "fake_desktop.h"

QCoro::Task<> FakeDesktop::setPicture(DesktopPicture picture, QList<DesktopScreen> screens)
{
    QStringList connectors;
    for (const DesktopScreen &screen : std::as_const(screens))
        connectors.append(screen.connector);
    requests.append({ picture, connectors });
    if (refusal) {
        const QStringList changed = connectors.first(qMin(changesBeforeRefusal, connectors.size()));
        for (const QString &connector : changed)
            shown.insert(connector, picture.path);
        throw DesktopError(*refusal, changed);
    }
    if (reportsAtOnce) {
        for (const QString &connector : std::as_const(connectors))
            shown.insert(connector, picture.path);
    }
    co_return;
}
