#include "await_task.h"
#include "gnome_backend.h"
#include "pixels.h"
#include "test_files.h"

#include <QImage>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {
// The picture a key names, as the desktop reads it.
QImage shown(const QString &key = u"picture-uri"_s)
{
    return QImage(QUrl(gsettings(key)).toLocalFile());
}

bool xrandr(const QStringList &arguments)
{
    return QProcess::execute(u"xrandr"_s, arguments) == 0;
}
} // namespace

// Under dconf on a private bus, with two dummy monitors side by side.
class GnomeBackendTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

    QString picture(const char *name, Qt::GlobalColor colour)
    {
        return solidPicture(m_dir.filePath(QString::fromLatin1(name) + u".png"_s), colour);
    }

    GnomeBackend m_backend { GnomeBackend::Family::Gnome, m_dir.filePath(u"Rendered"_s) };

private Q_SLOTS:
    // A light and dark pair, read back; then different pictures, spanned over the displays.
    void onePictureThenOneEachSpanned()
    {
        QVERIFY(GnomeBackend::isAvailable(GnomeBackend::Family::Gnome));
        const auto screens = m_backend.screens();
        QCOMPARE(screens.size(), 2);
        const QString light = picture("light", Qt::white);
        const QString dark = picture("dark", Qt::black);
        awaitTask(m_backend.setPicture({ .path = light, .dark = dark }, screens));
        QCOMPARE(QUrl(gsettings(u"picture-uri"_s)).toLocalFile(), light);
        QCOMPARE(QUrl(gsettings(u"picture-uri-dark"_s)).toLocalFile(), dark);
        QCOMPARE(gsettings(u"picture-options"_s), u"zoom"_s);
        for (const DesktopScreen &screen : screens) {
            QCOMPARE(m_backend.picture(screen), light);
            QCOMPARE(m_backend.thumbnail(screen, true), dark);
        }

        // Without a dark picture both keys name the one picture.
        awaitTask(m_backend.setPicture({ .path = light }, screens));
        QCOMPARE(gsettings(u"picture-uri"_s), gsettings(u"picture-uri-dark"_s));

        // A change by another program is seen.
        QSignalSpy changed(&m_backend, &DesktopBackend::picturesChanged);
        gsettings(u"picture-uri"_s, u"file:///usr/share/elsewhere.png"_s);
        QVERIFY(changed.wait(5000));
        QCOMPARE(m_backend.picture(screens[0]), u"/usr/share/elsewhere.png"_s);

        const QString blue = picture("blue", Qt::blue);
        const QString red = picture("red", Qt::red);
        awaitTask(m_backend.setPicture({ .path = blue }, screens));
        awaitTask(m_backend.setPicture({ .path = red }, { screens[0] }));

        QCOMPARE(gsettings(u"picture-options"_s), u"spanned"_s);
        const QImage spanned = shown();
        QCOMPARE(spanned.size(), QSize(3840, 1080));
        QCOMPARE(spanned.pixelColor(1919, 1079), QColor(Qt::red));
        QCOMPARE(spanned.pixelColor(1920, 0), QColor(Qt::blue));
        QCOMPARE(m_backend.picture(screens[1]), blue);

        // A pair on one display: the dark spanned picture has it, the other display keeps its one.
        awaitTask(m_backend.setPicture(
            { .path = picture("green", Qt::green), .dark = picture("yellow", Qt::yellow) },
            { screens[1] }));
        QCOMPARE(shown(u"picture-uri-dark"_s).pixelColor(100, 100), QColor(Qt::red));
        QCOMPARE(shown(u"picture-uri-dark"_s).pixelColor(3000, 500), QColor(Qt::yellow));
        QCOMPARE(shown().pixelColor(3000, 500), QColor(Qt::green));

        // Started together: whichever composition ends last, the newer arrangement is what stays.
        auto first = m_backend.setPicture({ .path = blue }, { screens[1] });
        auto second = m_backend.setPicture({ .path = picture("green", Qt::green) }, { screens[1] });
        awaitTask(std::move(first));
        awaitTask(std::move(second));
        QCOMPARE(shown().pixelColor(100, 100), QColor(Qt::red));
        QCOMPARE(shown().pixelColor(3000, 100), QColor(Qt::green));

        // The spanned picture follows the displays.
        QVERIFY(xrandr({ u"--output"_s, u"DUMMY1"_s, u"--off"_s }));
        QTRY_COMPARE(shown().size(), QSize(1920, 1080));
        QVERIFY(xrandr({ u"--output"_s, u"DUMMY1"_s, u"--mode"_s, u"1920x1080"_s, u"--left-of"_s,
                         u"DUMMY0"_s }));
        QTRY_COMPARE(shown().size(), QSize(3840, 1080));
        // DUMMY1 now on the left.
        QCOMPARE(shown().pixelColor(100, 100), QColor(Qt::green));
        QCOMPARE(shown().pixelColor(2000, 100), QColor(Qt::red));
        xrandr({ u"--output"_s, u"DUMMY1"_s, u"--right-of"_s, u"DUMMY0"_s });
    }
};

QTEST_MAIN(GnomeBackendTest)
#include "test_gnome_backend.moc"
