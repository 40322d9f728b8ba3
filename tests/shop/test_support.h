#pragma once

#include "clock.h"
#include "dev_shop.h"
#include "error.h"

#include <QCoroTask>
#include <QEventLoop>
#include <QFile>
#include <QList>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QUrl>

#include <exception>
#include <functional>
#include <optional>

// What a task ended with: its value, or what it threw.
template<typename T>
struct Result {
    std::optional<T> value;
    std::exception_ptr error;

    template<typename E>
    [[nodiscard]] std::optional<E> failure() const
    {
        if (!error)
            return std::nullopt;
        try {
            std::rethrow_exception(error);
        } catch (const E &e) {
            return e;
        } catch (...) {
            return std::nullopt;
        }
    }

    // The description of an Error, "no failure", or "not an Error".
    [[nodiscard]] QString errorDescription() const
    {
        if (!error)
            return QStringLiteral("no failure");
        try {
            std::rethrow_exception(error);
        } catch (const Error &e) {
            return e.description();
        } catch (...) {
            return QStringLiteral("not an Error");
        }
    }
};

// Runs a task to its end in a nested event loop; unlike QCoro::waitFor, it survives a throw.
template<typename T>
Result<T> finish(QCoro::Task<T> task)
{
    Result<T> outcome;
    QEventLoop loop;
    bool done = false;
    [](QCoro::Task<T> task, Result<T> &outcome, QEventLoop &loop, bool &done) -> QCoro::Task<> {
        try {
            outcome.value = co_await task;
        } catch (...) {
            outcome.error = std::current_exception();
        }
        done = true;
        loop.quit();
    }(std::move(task), outcome, loop, done);
    if (!done)
        loop.exec();
    return outcome;
}

// A task without a value ends with true.
inline Result<bool> finish(QCoro::Task<> task)
{
    return finish([](QCoro::Task<> task) -> QCoro::Task<bool> {
        co_await task;
        co_return true;
    }(std::move(task)));
}

// A clock whose sleeps take no time: each one is recorded and moves the clock on.
class TestClock : public Clock
{
public:
    [[nodiscard]] std::chrono::nanoseconds sinceBoot() const override { return m_sinceBoot; }
    [[nodiscard]] QDateTime now() const override { return m_now; }
    QCoro::Task<bool> sleep(std::shared_ptr<CancelToken> token,
                            std::chrono::milliseconds duration) override;

    [[nodiscard]] const QList<std::chrono::milliseconds> &sleeps() const { return m_sleeps; }
    // Called with each sleep's duration, to move a server's clock along.
    void setOnSleep(std::function<void(std::chrono::milliseconds)> onSleep);

private:
    std::chrono::nanoseconds m_sinceBoot{std::chrono::hours(1)};
    QDateTime m_now = QDateTime::fromSecsSinceEpoch(1'750'000'000, Qt::UTC);
    QList<std::chrono::milliseconds> m_sleeps;
    std::function<void(std::chrono::milliseconds)> m_onSleep;
};

// A development shop in-process on port 0, over the build's sample content. Shops given the same
// state folder share its certificates, which are slow to make.
class TestShop
{
public:
    explicit TestShop(DevShop::Options options = {}, const QString &stateDir = {});

    [[nodiscard]] bool isRunning() const { return m_running; }
    [[nodiscard]] DevShop &shop() { return m_shop; }
    [[nodiscard]] QUrl base() const { return m_shop.baseUrl(); }
    // The same shop under its other name: localhost for 127.0.0.1.
    [[nodiscard]] QUrl baseOnLocalhost() const;
    [[nodiscard]] QString caPath() const { return m_shop.caPath(); }
    // Requests the shop has seen at an API endpoint ("library").
    [[nodiscard]] int requests(const QString &endpoint) const;
    // A fresh token of the sample account, listed for the token check.
    [[nodiscard]] QString issueToken();

private:
    std::optional<QTemporaryDir> m_ownState;
    DevShop m_shop;
    bool m_running = false;
};

// Adds a token to the list that the token check looks for in every test's output.
void recordToken(const QString &token);

// A loopback HTTP server for the few replies the development shop cannot produce. It answers
// each request with the next canned reply (or holds it without answer), and keeps what it got.
class StandInServer : public QObject
{
    Q_OBJECT

public:
    struct Reply {
        int status = 200;
        QByteArray body;
        QList<std::pair<QByteArray, QByteArray>> headers;
        bool hold = false; // never answer
    };

    struct Request {
        QByteArray method;
        QByteArray path;
        QList<std::pair<QByteArray, QByteArray>> headers; // names in lower case
        QByteArray body;

        [[nodiscard]] std::optional<QByteArray> header(QByteArrayView name) const;
    };

    explicit StandInServer(QObject *parent = nullptr);

    // http://127.0.0.1:PORT/api/app/v1
    [[nodiscard]] QUrl base() const;
    void enqueue(Reply reply);
    [[nodiscard]] const QList<Request> &requests() const { return m_requests; }

private:
    void serve(QTcpSocket *socket);

    QTcpServer m_server;
    QList<Reply> m_replies;
    QList<Request> m_requests;
};
