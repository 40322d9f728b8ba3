#pragma once

#include "api_client.h"
#include "shop_cache.h"
#include "shop_session.h"

#include <QObject>
#include <functional>
#include <memory>

class CancelToken;
class DownloadThread;

// Fetches the catalogue and the library and keeps their disk copy, "shop-cache.json". The
// library's entity tag saves sending an unchanged library again; a failure leaves the copy's
// library as it was.
class LibraryRefresher : public QObject {
    Q_OBJECT

public:
    LibraryRefresher(std::function<APIClient()> api, ShopSession session, DownloadThread *thread,
                     QString cachePath, QObject *parent = nullptr);

    // The disk copy, read on the download thread; none when it is missing or damaged.
    [[nodiscard]] QCoro::Task<std::optional<Cache::Saved>> load();
    // Both replies, fresh or, for an unchanged library, from the disk copy; without a library
    // when signed out. Throws what the shop threw.
    [[nodiscard]] QCoro::Task<Cache::Saved> refresh(std::shared_ptr<CancelToken> cancel);
    // Drops the library from the disk copy, catalogue kept: its session has ended.
    [[nodiscard]] QCoro::Task<> forgetLibrary();

private:
    static QCoro::Task<Cache::Saved> refresh(QPointer<LibraryRefresher> self,
                                             std::shared_ptr<CancelToken> cancel);
    // The library, or none when it has not changed since the entity tag.
    static QCoro::Task<std::optional<APIClient::LibraryResult>>
    library(QPointer<LibraryRefresher> self, QString token, std::shared_ptr<CancelToken> cancel);

    std::function<APIClient()> m_api;
    ShopSession m_session;
    QPointer<DownloadThread> m_thread;
    QString m_cachePath;
    std::optional<QString> m_etag;
};
