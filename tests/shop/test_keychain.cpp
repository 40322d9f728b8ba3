#include "keychain.h"
#include "test_support.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

// Runs in two sessions (tests/run-in-session): "keyring", where the secret service must hold
// every item and the private file must never appear, and "nobus", where only the private file
// can hold them.
class KeychainTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void saveReadRemove();
    void variantInUse();
    void failedSaveKeepsPreviousItem();

private:
    [[nodiscard]] bool expectsSecretStore() const;
    // What secret-tool, an independent client of the secret service, finds for the item.
    [[nodiscard]] QString inSecretStore(const QString &item) const;

    std::optional<QTemporaryDir> m_folder;
    std::optional<Keychain> m_keychain;
};

bool KeychainTest::expectsSecretStore() const
{
    return qEnvironmentVariable("QUENNET_SESSION") == "keyring"_L1;
}

QString KeychainTest::inSecretStore(const QString &item) const
{
    QProcess tool;
    tool.start(u"secret-tool"_s,
               { u"lookup"_s, u"server"_s, u"app.quennet.Quennet"_s, u"user"_s, item });
    tool.waitForFinished();
    return QString::fromUtf8(tool.readAllStandardOutput());
}

void KeychainTest::init()
{
    const auto session = qEnvironmentVariable("QUENNET_SESSION");
    if (session != "keyring"_L1 && session != "nobus"_L1)
        QSKIP("runs only inside tests/run-in-session keyring|nobus");
    m_keychain.reset();
    m_folder.emplace();
    m_keychain.emplace(m_folder->path());
    finish(m_keychain->remove(Keychain::sessionToken));
    finish(m_keychain->remove(Keychain::pendingRevocation));
}

void KeychainTest::saveReadRemove()
{
    auto &keychain = *m_keychain;
    QCOMPARE(*finish(keychain.read(Keychain::sessionToken)).value, std::nullopt);

    QVERIFY(*finish(keychain.save(u"first-ünïcode"_s, Keychain::sessionToken)).value);
    QVERIFY(*finish(keychain.save(u"a\nb"_s, Keychain::pendingRevocation)).value);
    QCOMPARE(*finish(keychain.read(Keychain::sessionToken)).value, u"first-ünïcode"_s);

    QVERIFY(*finish(keychain.save(u"second"_s, Keychain::sessionToken)).value);
    QCOMPARE(*finish(keychain.read(Keychain::sessionToken)).value, u"second"_s);

    // Removing one item leaves the other.
    finish(keychain.remove(Keychain::sessionToken));
    QCOMPARE(*finish(keychain.read(Keychain::sessionToken)).value, std::nullopt);
    QCOMPARE(*finish(keychain.read(Keychain::pendingRevocation)).value, u"a\nb"_s);

    // A new keychain object finds what an earlier one stored, as after a restart.
    Keychain later(m_folder->path());
    QCOMPARE(*finish(later.read(Keychain::pendingRevocation)).value, u"a\nb"_s);
}

void KeychainTest::variantInUse()
{
    QVERIFY(*finish(m_keychain->save(u"stored-value"_s, Keychain::sessionToken)).value);
    const auto path = m_keychain->fallbackPath();

    if (expectsSecretStore()) {
        QCOMPARE(inSecretStore(Keychain::sessionToken), u"stored-value"_s);
        QVERIFY2(!QFile::exists(path), "the private file is only for when no store answers");
        finish(m_keychain->remove(Keychain::sessionToken));
        QCOMPARE(inSecretStore(Keychain::sessionToken), QString());
        return;
    }

    struct stat info { };
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &info), 0);
    QCOMPARE(info.st_mode & 0777, mode_t(0600));
    // Rewritten whole, the file keeps its mode.
    QVERIFY(*finish(m_keychain->save(u"other-value"_s, Keychain::pendingRevocation)).value);
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &info), 0);
    QCOMPARE(info.st_mode & 0777, mode_t(0600));

    // The last item gone, so is the file.
    finish(m_keychain->remove(Keychain::sessionToken));
    finish(m_keychain->remove(Keychain::pendingRevocation));
    QVERIFY(!QFile::exists(path));
}

void KeychainTest::failedSaveKeepsPreviousItem()
{
    if (expectsSecretStore())
        QSKIP("the secret service replaces an item in one call; nothing here can make it fail");
    QVERIFY(*finish(m_keychain->save(u"previous"_s, Keychain::sessionToken)).value);

    // A file size limit makes the write fail part-way, even for root.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit original {};
    getrlimit(RLIMIT_FSIZE, &original);
    rlimit small = original;
    small.rlim_cur = 100;
    setrlimit(RLIMIT_FSIZE, &small);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Couldn't save session-token"_s));
    const auto saved = finish(m_keychain->save(QString(4096, u'x'), Keychain::sessionToken));
    setrlimit(RLIMIT_FSIZE, &original);

    QCOMPARE(*saved.value, false);
    QCOMPARE(*finish(m_keychain->read(Keychain::sessionToken)).value, u"previous"_s);
}

QTEST_GUILESS_MAIN(KeychainTest)
#include "test_keychain.moc"
