#include "await_task.h"
#include "sway_backend.h"

#include <QColor>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
// One pixel of the compositor's outputs, as grim captures it.
QColor pixel(int x, int y)
{
    QTemporaryDir dir;
    const QString shot = dir.filePath(u"shot.png"_s);
    QProcess::execute(u"grim"_s, { u"-g"_s, u"%1,%2 1x1"_s.arg(x).arg(y), shot });
    return QImage(shot).pixelColor(0, 0);
}
} // namespace

// Against headless sway with two outputs side by side.
class SwayBackendTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_state;

    // swaybg runs as sway's user: the pictures must be readable by anyone.
    QString picture(const char *name, Qt::GlobalColor colour)
    {
        QFile::setPermissions(m_dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner
                                                 | QFile::ReadOther | QFile::ExeOther);
        QImage image(64, 40, QImage::Format_RGB32);
        image.fill(colour);
        const QString path = m_dir.filePath(QString::fromLatin1(name) + u" picture.png"_s);
        image.save(path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
        return path;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(!qEnvironmentVariableIsEmpty("SWAYSOCK"));
        m_state = m_dir.filePath(u"desktop-sway.json"_s);
    }

    void outputsAndPictures()
    {
        SwayBackend backend(qEnvironmentVariable("SWAYSOCK"), m_state);
        const auto screens = backend.screens();
        QCOMPARE(screens.size(), 2);
        QCOMPARE(screens[0].connector, u"HEADLESS-1"_s);
        QCOMPARE(screens[1].geometry, QRect(1920, 0, 1920, 1080));
        QCOMPARE(screens[0].manufacturer, u"headless"_s);

        const QString red = picture("red", Qt::red);
        const QString blue = picture("blue", Qt::blue);
        awaitTask(backend.setPicture({ .path = red }, { screens[0] }));
        awaitTask(backend.setPicture({ .path = blue }, { screens[1] }));
        QTRY_COMPARE(pixel(960, 540), QColor(Qt::red));
        QTRY_COMPARE(pixel(1920 + 960, 540), QColor(Qt::blue));
        QCOMPARE(backend.picture(screens[1]), blue);
        // Remembered across a restart: sway itself cannot tell.
        QCOMPARE(SwayBackend(qEnvironmentVariable("SWAYSOCK"), m_state).picture(screens[0]), red);
    }

    void workspaceSwitchIsReported()
    {
        SwayBackend backend(qEnvironmentVariable("SWAYSOCK"), m_state);
        QSignalSpy workspaces(&backend, &DesktopBackend::workspaceChanged);
        QTest::qWait(200); // the subscription
        QCOMPARE(QProcess::execute(u"swaymsg"_s, { u"workspace"_s, u"7"_s }), 0);
        QVERIFY(workspaces.wait(5000));
    }
};

QTEST_GUILESS_MAIN(SwayBackendTest)
#include "test_sway_backend.moc"
