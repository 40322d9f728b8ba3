#include "library_refresher.h"

#include "cancel_token.h"
#include "download_thread.h"
#include "logging.h"
#include "network_error.h"

using namespace Qt::Literals::StringLiterals;

namespace {
void ensureCurrent(const QPointer<LibraryRefresher> &self, const CancelToken &cancel)
{
    if (!self || cancel.isCancelled())
        throw NetworkError(QNetworkReply::OperationCanceledError, u"Operation canceled"_s);
}
QCoro::Task<> save(QPointer<DownloadThread> thread, QString path, Cache::Saved saved)
{
    // Lambdas are named before a co_await: g++ 12 misplaces one written inside it.
    auto write = [path, saved] { return Cache::save(path, saved); };
    const bool written = co_await thread->run(std::move(write));
    if (!written)
        qCWarning(lcShop) << "Couldn't save the shop's copy to" << path;
}
} // namespace

LibraryRefresher::LibraryRefresher(std::function<APIClient()> api, ShopSession session,
                                   DownloadThread *thread, QString cachePath, QObject *parent)
    : QObject(parent)
    , m_api(std::move(api))
    , m_session(std::move(session))
    , m_thread(thread)
    , m_cachePath(std::move(cachePath))
{
}

QCoro::Task<std::optional<Cache::Saved>> LibraryRefresher::load()
{
    return m_thread->run([path = m_cachePath] { return Cache::load(path); });
}

QCoro::Task<> LibraryRefresher::forgetLibrary()
{
    m_etag.reset();
    auto forget = [path = m_cachePath] {
        Cache::update(path, [](Cache::Saved &copy) {
            copy.library.reset();
            copy.account.reset();
        });
    };
    co_await m_thread->run(std::move(forget));
}

QCoro::Task<Cache::Saved> LibraryRefresher::refresh(std::shared_ptr<CancelToken> cancel)
{
    return refresh(this, std::move(cancel));
}

QCoro::Task<Cache::Saved> LibraryRefresher::refresh(QPointer<LibraryRefresher> self,
                                                    std::shared_ptr<CancelToken> cancel)
{
    const APIClient api = self->m_api();
    const QPointer<DownloadThread> thread = self->m_thread;
    const QString path = self->m_cachePath;

    Cache::Saved saved;
    saved.catalogue = co_await api.catalogue(cancel.get());
    saved.base = api.base();
    ensureCurrent(self, *cancel);
    const auto token = co_await self->m_session.token();
    ensureCurrent(self, *cancel);
    if (!token) {
        // Signed out: the copy keeps no library.
        self->m_etag.reset();
        co_await save(thread, path, saved);
        co_return saved;
    }

    std::optional<APIClient::LibraryResult> result;
    std::exception_ptr failure;
    try {
        result = co_await library(self, *token, cancel);
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        // The new catalogue is kept; the library on disk stays as it was.
        auto keepCatalogue = [path, catalogue = saved.catalogue, base = saved.base] {
            Cache::update(path, [&](Cache::Saved &copy) {
                copy.catalogue = catalogue;
                copy.base = base;
            });
        };
        co_await thread->run(std::move(keepCatalogue));
        std::rethrow_exception(failure);
    }
    ensureCurrent(self, *cancel);

    if (!result) {
        qCInfo(lcShop) << "Library unchanged";
        auto read = [path] { return Cache::load(path); };
        const auto copy = co_await thread->run(std::move(read));
        ensureCurrent(self, *cancel);
        if (copy && copy->library) {
            saved.library = copy->library;
            saved.account = copy->account;
            co_await save(thread, path, saved);
            co_return saved;
        }
        // The copy is gone: ask for the whole library.
        self->m_etag.reset();
        result = co_await library(self, *token, cancel);
        ensureCurrent(self, *cancel);
        if (!result)
            throw APIClient::Failure::invalidReply();
    }

    qCInfo(lcShop, "Library changed: %lld packs", qint64(result->reply.packs.size()));
    self->m_etag = result->etag;
    saved.library = result->reply;
    saved.account = result->reply.email;
    co_await save(thread, path, saved);
    co_return saved;
}

QCoro::Task<std::optional<APIClient::LibraryResult>>
LibraryRefresher::library(QPointer<LibraryRefresher> self, QString token,
                          std::shared_ptr<CancelToken> cancel)
{
    const APIClient api = self->m_api();
    const ShopSession session = self->m_session;
    try {
        co_return co_await api.library(token, self->m_etag, cancel.get());
    } catch (const APIClient::Failure &failure) {
        if (failure.kind() == APIClient::Failure::Kind::SignedOut)
            session.rejected();
        throw;
    }
}
