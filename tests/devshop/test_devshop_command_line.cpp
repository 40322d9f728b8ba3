#include "curl.h"
#include "test_files.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto program = u"" QUENNET_DEVSHOP_PROGRAM ""_s;
const auto content = u"" QUENNET_DEVSHOP_CONTENT ""_s;

// `quennet-devshop serve` until it has printed its base URL.
struct Server {
    explicit Server(const QString &state)
    {
        process.start(program, { u"serve"_s, u"--content"_s, content, u"--state"_s, state });
        while (!process.canReadLine() && process.waitForReadyRead(60'000)) { }
        baseUrl = QUrl(QString::fromUtf8(process.readLine().trimmed()));
    }
    ~Server()
    {
        process.kill();
        process.waitForFinished();
    }

    QProcess process;
    QUrl baseUrl;
};
} // namespace

// The command line that scripts and other tools rely on.
class TestDevshopCommandLine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("nothing") << QStringList();
        QTest::newRow("unknown command") << QStringList { u"start"_s };
        QTest::newRow("make-content without a folder") << QStringList { u"make-content"_s };
        QTest::newRow("serve without folders") << QStringList { u"serve"_s };
        QTest::newRow("option without value")
            << QStringList { u"serve"_s, u"--content"_s, u"c"_s, u"--state"_s };
        QTest::newRow("port out of range")
            << QStringList { u"serve"_s, u"--content"_s, u"c"_s,    u"--state"_s,
                             u"s"_s,     u"--port"_s,    u"65536"_s };
        QTest::newRow("unknown option")
            << QStringList { u"serve"_s, u"--content"_s, u"c"_s,  u"--state"_s,
                             u"s"_s,     u"--tls"_s,     u"off"_s };
    }

    void usageErrors()
    {
        QFETCH(QStringList, arguments);
        QProcess process;
        process.start(program, arguments);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 2);
        QVERIFY(process.readAllStandardError().contains("usage:"));
    }

    void serveWithoutContentFails()
    {
        QTemporaryDir empty;
        QProcess process;
        process.start(
            program,
            { u"serve"_s, u"--content"_s, empty.path(), u"--state"_s, empty.filePath(u"state"_s) });
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 1);
        QVERIFY(process.readAllStandardError().contains("content"));
    }

    void serveWritesItsStateFiles()
    {
        QTemporaryDir state;
        const QDir dir(state.path());
        QByteArray authority;
        for (int start = 0; start < 2; ++start) {
            Server server(state.path());
            QCOMPARE(server.baseUrl.scheme(), u"https"_s);
            QCOMPARE(server.baseUrl.host(), u"127.0.0.1"_s);
            QCOMPARE(server.baseUrl.path(), u"/api/app/v1"_s);
            QCOMPARE(readAll(dir.filePath(u"port"_s)).trimmed().toInt(), server.baseUrl.port());
            const QByteArray secret = readAll(dir.filePath(u"admin-secret"_s)).trimmed();
            QVERIFY(secret.size() >= 32);

            // The first start makes the authority, later ones keep it.
            if (start == 0)
                authority = readAll(dir.filePath(u"ca.pem"_s));
            QCOMPARE(readAll(dir.filePath(u"ca.pem"_s)), authority);
            const Curl curl(dir.filePath(u"ca.pem"_s));
            QCOMPARE(curl.get(server.baseUrl.toString() + u"/catalogue"_s).status, 200);
            QCOMPARE(curl.run({ u"--data"_s, QString(), u"-H"_s,
                                u"X-Devshop-Secret: "_s + QString::fromLatin1(secret),
                                server.baseUrl.resolved(QUrl(u"/_devshop/token"_s)).toString() })
                         .status,
                     200);

            server.process.terminate();
            QVERIFY(server.process.waitForFinished());
            QCOMPARE(server.process.exitStatus(), QProcess::NormalExit);
            QCOMPARE(server.process.exitCode(), 0);
        }
    }

    void takenPortFails()
    {
        QTemporaryDir state;
        const Server first(state.path());
        QProcess second;
        second.start(program,
                     { u"serve"_s, u"--content"_s, content, u"--state"_s,
                       state.filePath(u"second"_s), u"--port"_s,
                       QString::number(first.baseUrl.port()) });
        QVERIFY(second.waitForFinished());
        QCOMPARE(second.exitCode(), 1);
        QVERIFY(second.readAllStandardError().contains("Could not listen"));
    }
};

QTEST_GUILESS_MAIN(TestDevshopCommandLine)
#include "test_devshop_command_line.moc"
