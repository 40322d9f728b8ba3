#include "login_item.h"
#include "test_files.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Open at login as an XDG autostart entry.
class LoginItemTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onAndOff()
    {
        QTemporaryDir home;
        const QString folder = home.path() + u"/config/autostart"_s;
        LoginItem item(u"/opt/Quennet Apps/quennet"_s, folder);
        QSignalSpy changed(&item, &LoginItem::changed);
        QCOMPARE(item.entryPath(), folder + u"/app.quennet.Quennet.desktop"_s);
        QVERIFY(!item.isOn());

        item.setOn(true);
        QVERIFY(item.isOn());
        const QByteArray contents = readAll(item.entryPath());
        QVERIFY(contents.startsWith("[Desktop Entry]\n"));
        QVERIFY(contents.contains("\nExec=\"/opt/Quennet Apps/quennet\" --at-login\n"));
        QVERIFY(contents.contains("\nTryExec=/opt/Quennet Apps/quennet\n"));

        item.setOn(false);
        QVERIFY(!item.isOn());
        QVERIFY(!QFile::exists(item.entryPath()));
        QCOMPARE(changed.size(), 2);
    }

    // An entry the user or the desktop wrote counts unless it is hidden or switched off; turning
    // such an entry on writes a visible one in its place.
    void existingEntry_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<bool>("on");
        QTest::newRow("plain") << "[Desktop Entry]\nExec=quennet --at-login\n"_ba << true;
        QTest::newRow("hidden") << "[Desktop Entry]\nExec=quennet\nHidden=true\n"_ba << false;
        QTest::newRow("switched off in the desktop's settings")
            << "[Desktop Entry]\nExec=quennet\nX-GNOME-Autostart-enabled=false\n"_ba << false;
        QTest::newRow("hidden in another group")
            << "[Desktop Entry]\nExec=quennet\n[Desktop Action x]\nHidden=true\n"_ba << true;
        QTest::newRow("empty file") << QByteArray() << true;
    }

    void existingEntry()
    {
        QFETCH(QByteArray, contents);
        QTemporaryDir folder;
        LoginItem item(u"quennet"_s, folder.path());
        QVERIFY(writeFile(item.entryPath(), contents));
        QTEST(item.isOn(), "on");
        item.setOn(true);
        QVERIFY(item.isOn());
    }

    // A folder that cannot be written leaves the switch off.
    void unwritable()
    {
        QTemporaryDir folder;
        QVERIFY(writeFile(folder.path() + u"/autostart"_s, "a file where the folder should be"));
        LoginItem item(u"quennet"_s, folder.path() + u"/autostart"_s);
        QTest::ignoreMessage(QtCriticalMsg,
                             QRegularExpression(u"^Couldn't change the login item"_s));
        item.setOn(true);
        QVERIFY(!item.isOn());
    }
};

QTEST_GUILESS_MAIN(LoginItemTest)
#include "test_login_item.moc"
