#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

class QDBusMessage;
class QTextStream;
struct Command;

// Carries out one quennetctl command against Quennet's object on the bus, and words the outcome:
// results on standard output, the sentence of a failure on standard error.
class AutomationClient : public QObject {
    Q_OBJECT

public:
    static constexpr int failed = 1;
    static constexpr int usageError = 2;

    explicit AutomationClient(QDBusConnection bus, QObject *parent = nullptr);

    // The exit status: 0 when done, failed, or usageError for an argument Quennet refused.
    int run(const Command &command, QTextStream &out, QTextStream &err);

    // Text that came from the shop, without the control characters and escape sequences a
    // terminal would act on.
    [[nodiscard]] static QString printable(QStringView text);
    // The verification page to print: empty unless it is an HTTPS address.
    [[nodiscard]] static QString printablePage(const QString &page);

Q_SIGNALS:
    void sessionChanged();

private Q_SLOTS:
    void propertiesChanged(const QString &interface, const QVariantMap &changed,
                           const QStringList &invalidated);

private:
    QDBusMessage call(const QString &interface, const QString &method,
                      const QVariantList &arguments = {});
    // Calls a method that needs the library, waiting for it once when Quennet is still starting.
    QDBusMessage callWhenReady(const QString &method, const QVariantList &arguments = {});
    // Listens for the Session's property changes, and reads them all; false when it cannot.
    bool watchSession();
    bool waitForSessionChange(int milliseconds);
    int report(const QDBusMessage &reply, QTextStream &err);
    int signIn(QTextStream &out, QTextStream &err);
    int status(QTextStream &out, QTextStream &err);

    QDBusConnection m_bus;
    QVariantMap m_session;
    bool m_watching = false;
};
