#include "keychain.h"
#include "test_support.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
// What secret-tool, an independent client of the secret service, prints.
QByteArray secretTool(const QStringList &arguments, const QByteArray &input = {})
{
    QProcess tool;
    tool.start(u"secret-tool"_s, arguments);
    tool.write(input);
    tool.closeWriteChannel();
    tool.waitForFinished();
    return tool.readAllStandardOutput();
}
} // namespace

// Runs in two sessions (tests/run-in-session): "keyring", where gnome-keyring holds every item
// and the private file never appears, and "nobus", where only the private file can.
class KeychainTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        const auto session = qEnvironmentVariable("QUENNET_SESSION");
        if (session != "keyring"_L1 && session != "nobus"_L1)
            QSKIP("runs only inside tests/run-in-session keyring|nobus");
        m_secretStore = session == "keyring"_L1;
        m_keychain.reset();
        m_folder.emplace();
        m_keychain.emplace(m_folder->path());
        finish(m_keychain->remove(Keychain::sessionToken));
        finish(m_keychain->remove(Keychain::pendingRevocation));
    }

    // Items kept across restarts, and one removed beside another, are test_account's.
    void saveReadRemove()
    {
        QVERIFY(save(u"first-ünïcode"_s, Keychain::sessionToken));
        QVERIFY(save(u"second"_s, Keychain::sessionToken));

        const auto path = m_keychain->fallbackPath();
        if (m_secretStore) {
            QCOMPARE(secretTool({ u"lookup"_s, u"server"_s, u"app.quennet.Quennet"_s, u"user"_s,
                                  Keychain::sessionToken }),
                     "second");
            QVERIFY2(!QFile::exists(path), "the private file is for when there is no secret store");
        } else {
            struct stat info { };
            QCOMPARE(::stat(QFile::encodeName(path).constData(), &info), 0);
            QCOMPARE(info.st_mode & 0777, mode_t(0600));

            // A save that fails part-way keeps the previous item. A file size limit makes the
            // write fail, even for root; the secret service replaces an item in one call.
            std::signal(SIGXFSZ, SIG_IGN);
            rlimit limit {};
            getrlimit(RLIMIT_FSIZE, &limit);
            const auto original = limit;
            limit.rlim_cur = 100;
            setrlimit(RLIMIT_FSIZE, &limit);
            QTest::ignoreMessage(QtWarningMsg,
                                 QRegularExpression(u"^Couldn't save session-token"_s));
            const bool saved = save(QString(4096, u'x'), Keychain::sessionToken);
            setrlimit(RLIMIT_FSIZE, &original);
            QVERIFY(!saved);
            QCOMPARE(read(Keychain::sessionToken), u"second"_s);
        }

        finish(m_keychain->remove(Keychain::sessionToken));
        QCOMPARE(read(Keychain::sessionToken), std::nullopt);
        QVERIFY(!QFile::exists(path));

        if (m_secretStore) {
            // An item as earlier versions saved it through QtKeychain.
            secretTool({ u"store"_s, u"--label"_s, u"x"_s, u"user"_s, Keychain::sessionToken,
                         u"server"_s, u"app.quennet.Quennet"_s, u"type"_s, u"plaintext"_s },
                       "earlier");
            QCOMPARE(read(Keychain::sessionToken), u"earlier"_s);
            finish(m_keychain->remove(Keychain::sessionToken));
            QCOMPARE(read(Keychain::sessionToken), std::nullopt);
        }
    }

    // Last: it leaves the store locked.
    void refusingStoreIsAFailure()
    {
        if (!m_secretStore)
            QSKIP("needs a secret store");
        QVERIFY(save(u"kept"_s, Keychain::sessionToken));
        const auto failed = [this] {
            return finish(m_keychain->read(Keychain::sessionToken)).failure<Keychain::Failure>();
        };

        // A store that doesn't answer: its daemon is stopped. Should the read wait on regardless,
        // the daemon comes back and the read finds the item.
        auto bus = QDBusConnection::sessionBus();
        const pid_t daemon = bus.interface()->servicePid(u"org.freedesktop.secrets"_s).value();
        QVERIFY(daemon > 0);
        m_keychain->setTimeout(200ms);
        ::kill(daemon, SIGSTOP);
        QTimer::singleShot(3s, [daemon] { ::kill(daemon, SIGCONT); });
        const bool stalled = failed().has_value();
        ::kill(daemon, SIGCONT);
        QVERIFY(stalled);
        m_keychain->setTimeout(5s);
        QCOMPARE(read(Keychain::sessionToken), u"kept"_s);

        // A locked store whose unlock prompt cannot be shown: there is no display.
        QVERIFY(lockSecretStore());
        QVERIFY(failed());
        // Nothing found in a locked store isn't "no such item": stores may hide what is locked.
        QVERIFY(finish(m_keychain->read(Keychain::pendingRevocation)).failure<Keychain::Failure>());
        QVERIFY(!save(u"new"_s, Keychain::sessionToken));
        QVERIFY(finish(m_keychain->remove(Keychain::sessionToken)).failure<Keychain::Failure>());
        QVERIFY2(!QFile::exists(m_keychain->fallbackPath()),
                 "a refusing store is no missing store");

        // A store without any collection to save in is a store all the same.
        auto remove = QDBusMessage::createMethodCall(
            u"org.freedesktop.secrets"_s, u"/org/freedesktop/secrets/collection/login"_s,
            u"org.freedesktop.Secret.Collection"_s, u"Delete"_s);
        QCOMPARE(bus.call(remove).type(), QDBusMessage::ReplyMessage);
        QVERIFY(!save(u"new"_s, Keychain::sessionToken));
        QVERIFY2(!QFile::exists(m_keychain->fallbackPath()),
                 "a refusing store is no missing store");
    }

private:
    [[nodiscard]] std::optional<QString> read(QLatin1StringView item)
    {
        return finish(m_keychain->read(item)).value.value();
    }

    [[nodiscard]] bool save(const QString &value, QLatin1StringView item)
    {
        return finish(m_keychain->save(value, item)).value.value();
    }

    bool m_secretStore = false;
    std::optional<QTemporaryDir> m_folder;
    std::optional<Keychain> m_keychain;
};

QTEST_GUILESS_MAIN(KeychainTest)
#include "test_keychain.moc"
