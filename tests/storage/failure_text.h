#pragma once

#include "error.h"
#include "test_support.h"

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
