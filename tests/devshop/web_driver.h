#pragma once

#include "curl.h"

#include <QProcess>
#include <QTemporaryDir>

// Headless Chromium driven through chromedriver's WebDriver API. The browser trusts the
// development shop's authority through its own certificate database, as a person's would after
// importing "ca.pem"; no certificate error is ignored.
class WebDriver {
public:
    // Empty when chromedriver, chromium or certutil is missing.
    [[nodiscard]] static QString missingTool();

    explicit WebDriver(const QString &caPath);
    ~WebDriver();

    // False, with the reason in error(), when the browser did not start.
    [[nodiscard]] bool start();
    [[nodiscard]] QString error() const { return m_error; }

    void open(const QString &url);
    [[nodiscard]] QString title();
    // The WebDriver id of the first element matching a CSS selector, or an empty string.
    [[nodiscard]] QString find(const QString &selector);
    [[nodiscard]] QString property(const QString &element, const QString &name);
    [[nodiscard]] QString text(const QString &element);
    void type(const QString &element, const QString &text);
    void click(const QString &element);

private:
    QJsonValue call(const QString &method, const QString &path, const QJsonObject &body = {});

    QString m_caPath;
    QTemporaryDir m_home;
    QProcess m_driver;
    Curl m_curl;
    QString m_endpoint;
    QString m_session;
    QString m_error;
};
