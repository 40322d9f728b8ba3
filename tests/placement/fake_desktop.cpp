#include "fake_desktop.h"

#include "cancel_token.h"

#include <QCoroTimer>
#include <QTimer>

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

QCoro::Task<bool> FakeClock::sleep(std::shared_ptr<CancelToken> token,
                                   std::chrono::milliseconds duration)
{
    while (allowed <= 0 && !token->isCancelled()) {
        QTimer timer;
        timer.setSingleShot(true);
        timer.start(1);
        co_await timer;
    }
    if (token->isCancelled())
        co_return false;
    --allowed;
    time = time.addMSecs(duration.count());
    ++sleeps;
    co_return true;
}
