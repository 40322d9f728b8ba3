#include "keychain.h"
#include "test_support.h"

#include <QProcess>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

// Runs in two sessions (tests/run-in-session): "keyring", where the secret service holds every
// item and the private file never appears, and "nobus", where only the private file can.
class KeychainTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void saveReadRemove();
    void failedSaveKeepsThePreviousItem();

private:
    [[nodiscard]] std::optional<QString> read(QLatin1StringView item)
    {
        return *finish(m_keychain->read(item)).value;
    }
    [[nodiscard]] bool save(const QString &value, QLatin1StringView item)
    {
        return *finish(m_keychain->save(value, item)).value;
    }

    bool m_secretStore = false;
    std::optional<QTemporaryDir> m_folder;
    std::optional<Keychain> m_keychain;
};

void KeychainTest::init()
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

void KeychainTest::saveReadRemove()
{
    QCOMPARE(read(Keychain::sessionToken), std::nullopt);
    QVERIFY(save(u"first-ünïcode"_s, Keychain::sessionToken));
    QVERIFY(save(u"a\nb"_s, Keychain::pendingRevocation));
    QVERIFY(save(u"second"_s, Keychain::sessionToken));
    // A new keychain object finds them, as after a restart.
    m_keychain.emplace(m_folder->path());
    QCOMPARE(read(Keychain::sessionToken), u"second"_s);

    const auto path = m_keychain->fallbackPath();
    if (m_secretStore) {
        // As secret-tool, an independent client of the secret service, finds it.
        QProcess tool;
        tool.start(u"secret-tool"_s, {u"lookup"_s, u"server"_s, u"app.quennet.Quennet"_s,
                                      u"user"_s, Keychain::sessionToken});
        QVERIFY(tool.waitForFinished());
        QCOMPARE(tool.readAllStandardOutput(), "second");
        QVERIFY2(!QFile::exists(path), "the private file is for when no secret store answers");
    } else {
        struct stat info {};
        QCOMPARE(::stat(QFile::encodeName(path).constData(), &info), 0);
        QCOMPARE(info.st_mode & 0777, mode_t(0600));
    }

    finish(m_keychain->remove(Keychain::sessionToken));
    QCOMPARE(read(Keychain::sessionToken), std::nullopt);
    QCOMPARE(read(Keychain::pendingRevocation), u"a\nb"_s);
    finish(m_keychain->remove(Keychain::pendingRevocation));
    QVERIFY(!QFile::exists(path));
}

void KeychainTest::failedSaveKeepsThePreviousItem()
{
    if (m_secretStore)
        QSKIP("the secret service replaces an item in one call; nothing here makes it fail");
    QVERIFY(save(u"previous"_s, Keychain::sessionToken));

    // A file size limit makes the write fail part-way, even for root.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const auto original = limit;
    limit.rlim_cur = 100;
    setrlimit(RLIMIT_FSIZE, &limit);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Couldn't save session-token"_s));
    const bool saved = save(QString(4096, u'x'), Keychain::sessionToken);
    setrlimit(RLIMIT_FSIZE, &original);

    QVERIFY(!saved);
    QCOMPARE(read(Keychain::sessionToken), u"previous"_s);
}

QTEST_GUILESS_MAIN(KeychainTest)
#include "test_keychain.moc"
