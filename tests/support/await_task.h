#pragma once

#include <QCoroTask>
#include <exception>

// Runs a task to its end in a nested event loop and rethrows its failure. QCoro 0.8's waitFor
// never returns when the task throws.
inline void awaitTask(QCoro::Task<> task)
{
    std::exception_ptr failure;
    QCoro::waitFor([](QCoro::Task<> task, std::exception_ptr *failure) -> QCoro::Task<> {
        try {
            co_await std::move(task);
        } catch (...) {
            *failure = std::current_exception();
        }
    }(std::move(task), &failure));
    if (failure)
        std::rethrow_exception(failure);
}
