#include "await_task.h"
#include "desktop_backends.h"
#include "pixels.h"
#include "socket_stand_in.h"
#include "sway_backend.h"

#include <QColor>
#include <QFile>
#include <QImage>
#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace Qt::Literals::StringLiterals;

namespace {
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
class SwayBackendTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QList<QByteArray> m_commands; // that the stand-in for sway was sent
    QByteArray m_commandAnswer = R"([{"success":true}])";

    // Answers a whole message of sway's IPC: a command (type 0), or the outputs.
    std::optional<QByteArray> answer(QLocalSocket &socket)
    {
        if (socket.bytesAvailable() < 14)
            return std::nullopt;
        const QByteArray header = socket.peek(14);
        const auto length = qFromLittleEndian<quint32>(header.constData() + 6);
        if (socket.bytesAvailable() < 14 + length)
            return std::nullopt;
        socket.skip(14);
        const QByteArray payload = socket.read(length);
        QByteArray answer = R"([{"name":"DP-2","make":"AOC","active":true,"focused":true,
                                "rect":{"x":0,"y":0,"width":2560,"height":1440}},{"name":"OFF-1","active":false}])";
        if (qFromLittleEndian<quint32>(header.constData() + 10) == 0) {
            m_commands.append(payload);
            answer = m_commandAnswer;
        }
        QByteArray reply = header;
        qToLittleEndian<quint32>(quint32(answer.size()), reply.data() + 6);
        return reply + answer;
    }

private Q_SLOTS:
    // A backend gone with a reading on its way leaves it to end on its own: let it, before the
    // next case or the end of the program.
    void cleanup() { QTest::qWait(100); }

    // Chosen where sway names its socket.
    void outputsPicturesAndWorkspaces()
    {
        const std::unique_ptr<DesktopBackend> made(DesktopBackends::make(u"sway"_s, m_dir.path()));
        QCOMPARE(made->name(), u"sway"_s);
        DesktopBackend &backend = *made;
        QTRY_COMPARE(backend.screens().size(), 2);
        const auto screens = backend.screens();
        QCOMPARE(screens[1].geometry, QRect(1920, 0, 1920, 1080));
        // swaybg runs as sway's user: the pictures must be readable by anyone.
        const auto anyone = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther;
        QFile::setPermissions(m_dir.path(), anyone | QFile::ExeOwner | QFile::ExeOther);
        const QString red = solidPicture(m_dir.filePath(u"red picture.png"_s), Qt::red);
        const QString blue = solidPicture(m_dir.filePath(u"blue picture.png"_s), Qt::blue);
        QVERIFY(QFile::setPermissions(red, anyone) && QFile::setPermissions(blue, anyone));
        awaitTask(backend.setPicture({ .path = red }, { screens[0] }));
        awaitTask(backend.setPicture({ .path = blue }, { screens[1] }));
        QTRY_COMPARE(pixel(960, 540), QColor(Qt::red));
        QTRY_COMPARE(pixel(1920 + 960, 540), QColor(Qt::blue));
        QCOMPARE(backend.picture(screens[0]), red); // sway itself cannot tell

        // A workspace switch is told.
        QSignalSpy workspaces(&backend, &DesktopBackend::workspaceChanged);
        QCOMPARE(QProcess::execute(u"swaymsg"_s, { u"workspace"_s, u"7"_s }), 0);
        QVERIFY(workspaces.wait(5000));
    }

    // A sway that answers late is heard; one that refuses, does not answer or is not there is a
    // failure that says so, and what was set before stays the answer.
    void standInSway()
    {
        const QString path = m_dir.filePath(u"stand-in.sock"_s);
        std::optional<SocketStandIn> standIn;
        standIn.emplace(path, [this](QLocalSocket &socket) { return answer(socket); });
        SwayBackend backend(path, m_dir.filePath(u"stand-in.json"_s));
        backend.setTimeout(std::chrono::milliseconds(300));
        QSignalSpy screensChanged(&backend, &DesktopBackend::screensChanged);
        QVERIFY(screensChanged.wait(5000));
        const auto screens = backend.screens();
        QCOMPARE(screens.size(), 1);
        QCOMPARE(screens[0].geometry, QRect(0, 0, 2560, 1440));
        awaitTask(backend.setPicture({ .path = u"/w/a.png"_s }, screens));
        QCOMPARE(m_commands, QList<QByteArray>({ R"(output "DP-2" bg "/w/a.png" fill)" }));

        const auto failure = [&] {
            return failureText(finish(backend.setPicture({ .path = u"/w/b.png"_s }, screens)));
        };
        m_commandAnswer = R"([{"success":false,"error":"Invalid output"}])";
        QCOMPARE(failure(), u"Invalid output"_s);
        standIn->manner = SocketStandIn::Manner::Silent;
        QCOMPARE(failure(), u"sway did not answer within 0.3 seconds."_s);
        standIn.reset();
        QCOMPARE(failure(), u"Cannot reach sway: nothing answers at %1."_s.arg(path));
        QCOMPARE(backend.picture(screens[0]), u"/w/a.png"_s);
    }
};

QTEST_GUILESS_MAIN(SwayBackendTest)
#include "test_sway_backend.moc"
