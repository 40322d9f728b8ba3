#pragma once

#include "error.h"

#include <QCoroTask>
#include <QEventLoop>
#include <exception>
#include <optional>

// What a task ended with: its value, or what it threw.
template<typename T> struct Result {
    std::optional<T> value;
    std::exception_ptr error;

    template<typename E> [[nodiscard]] std::optional<E> failure() const
    {
        try {
            if (error)
                std::rethrow_exception(error);
        } catch (const E &e) {
            return e;
        } catch (...) {
        }
        return std::nullopt;
    }
};

// Runs a task to its end in a nested event loop; unlike QCoro::waitFor, it survives a throw.
template<typename T> Result<T> finish(QCoro::Task<T> task)
{
    Result<T> result;
    QEventLoop loop;
    bool done = false;
    [](QCoro::Task<T> task, Result<T> &result, QEventLoop &loop, bool &done) -> QCoro::Task<> {
        try {
            result.value = co_await task;
        } catch (...) {
            result.error = std::current_exception();
        }
        done = true;
        loop.quit();
    }(std::move(task), result, loop, done);
    if (!done)
        loop.exec();
    return result;
}

// A task without a value ends with true.
inline Result<bool> finish(QCoro::Task<> task)
{
    return finish([](QCoro::Task<> task) -> QCoro::Task<bool> {
        co_await task;
        co_return true;
    }(std::move(task)));
}

// Runs a task to its end and rethrows its failure.
inline void awaitTask(QCoro::Task<> task)
{
    if (const auto error = finish(std::move(task)).error)
        std::rethrow_exception(error);
}

// The sentence of what a task threw, for comparing and for messages of failed checks.
template<typename T> [[nodiscard]] QString failureText(const Result<T> &result)
{
    if (!result.error)
        return QStringLiteral("no failure");
    try {
        std::rethrow_exception(result.error);
    } catch (const Error &error) {
        return error.description();
    } catch (...) {
        return QStringLiteral("not an Error");
    }
}
