#pragma once

#include <QCoroTask>
#include <QString>
#include <chrono>
#include <functional>

// One request to a desktop program over a local socket of its own, as its command-line tool
// makes it, awaited rather than waited on: writes request and reads until isWhole says the answer
// is complete, or, without isWhole, until the program closes the connection. who names the
// program in the failures, DesktopErrors: nothing listens at socket, it closed without a whole
// answer, or it did not give one within timeout.
QCoro::Task<QByteArray> localSocketRequest(QString socket, QByteArray request, QString who,
                                           std::chrono::milliseconds timeout,
                                           std::function<bool(const QByteArray &)> isWhole = {});
