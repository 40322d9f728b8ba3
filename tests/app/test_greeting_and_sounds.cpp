#include "defaults.h"
#include "event_sounds.h"
#include "feedback_sounds.h"
#include "greeting.h"
#include "test_files.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
// Notes the event ids instead of reaching a sound server.
struct StandInPlayer : EventSoundPlayer {
    explicit StandInPlayer(QStringList *played)
        : played(played)
    {
    }
    void play(const QString &eventId) override { played->append(eventId); }
    QStringList *played;
};
} // namespace

// The welcome and what's new as the user opens Quennet, and the event sounds.
class GreetingAndSoundsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void welcomeThenWhatsNew()
    {
        QTemporaryDir home;
        Defaults defaults(home.filePath(u"defaults.ini"_s));
        const QString changelog =
            QString::fromUtf8(readAll(QStringLiteral(QUENNET_TEST_DATA "/app/CHANGELOG.md")));
        const auto build = [&](const QString &version, bool development = false) {
            return Greeting::Build { .version = version,
                                     .development = development,
                                     .changelog = changelog };
        };
        Greeting first(&defaults, build(u"1.2.0"_s));
        QCOMPARE(first.greet(), Greeting::Kind::Welcome);
        QCOMPARE(first.greet(), Greeting::Kind::None);
        QCOMPARE(defaults.lastOpenedVersion(), u"1.2.0"_s);

        // An update shows the versions after the one last opened, newest first, once.
        Greeting updated(&defaults, build(u"1.3.1"_s));
        QCOMPARE(updated.greet(), Greeting::Kind::WhatsNew);
        QCOMPARE(updated.notes(),
                 u"## 1.3.1 - 2026-03-02\n\n### Fixed\n- The second fix.\n\n"
                 "## 1.3.0 - 2026-02-01\n\n### Added\n- The third feature."_s);
        QCOMPARE(updated.greet(), Greeting::Kind::None);
        QCOMPARE(Greeting(&defaults, build(u"1.3.0"_s)).greet(), Greeting::Kind::None);

        // A development build's own changes are those not released yet.
        Greeting development(&defaults, build(u"1.4.0"_s, true));
        QCOMPARE(development.greet(), Greeting::Kind::WhatsNew);
        QCOMPARE(development.notes(), u"## Unreleased\n\n### Added\n- Not out yet."_s);

        // Turned off, an update shows nothing, and its version counts as seen.
        development.setShowsWhatsNew(false);
        QCOMPARE(Greeting(&defaults, build(u"1.5.0"_s, true)).greet(), Greeting::Kind::None);
        QCOMPARE(defaults.lastOpenedVersion(), u"1.5.0"_s);
    }

    // A sound for each moment, unless the user or GNOME's settings turned event sounds off;
    // Plasma leaves that to its sound server.
    void soundsAsTheUserAndTheDesktopSay()
    {
        QTemporaryDir home;
        Defaults defaults(home.filePath(u"defaults.ini"_s));
        QStringList played;
        const auto sounds = [&](const QString &desktop) {
            return std::make_unique<FeedbackSounds>(
                &defaults, std::make_unique<StandInPlayer>(&played),
                [desktop] { return EventSounds::desktopPlays(desktop); });
        };
        const auto allMoments = [](FeedbackSounds &feedback) {
            for (auto moment : { FeedbackSounds::Moment::WallpaperSet,
                                 FeedbackSounds::Moment::Failed, FeedbackSounds::Moment::SignedIn })
                feedback.play(moment);
        };
        const auto gnome = sounds(u"ubuntu:GNOME"_s);
        const auto plasma = sounds(u"KDE"_s);

        allMoments(*gnome);
        QCOMPARE(played, (QStringList { u"complete"_s, u"dialog-error"_s, u"service-login"_s }));

        played.clear();
        gnome->setOn(false);
        QVERIFY(!defaults.playsFeedbackSounds());
        allMoments(*gnome);
        allMoments(*plasma);
        QCOMPARE(played, QStringList());

        gnome->setOn(true);
        QCOMPARE(QProcess::execute(
                     u"gsettings"_s,
                     { u"set"_s, u"org.gnome.desktop.sound"_s, u"event-sounds"_s, u"false"_s }),
                 0);
        allMoments(*gnome);
        QCOMPARE(played, QStringList());
        allMoments(*plasma);
        QCOMPARE(played.size(), 3);
    }
};

QTEST_GUILESS_MAIN(GreetingAndSoundsTest)
#include "test_greeting_and_sounds.moc"
