#include "automation_client.h"
#include "command_line.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(Command)

// What quennetctl makes of its command line before it talks to Quennet, and of the shop's text
// it prints.
class QuennetctlCommandLineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void commands_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Command>("command");
        using Action = Command::Action;
        QTest::newRow("set") << QStringList { u"set"_s, u"aurora/emerald"_s }
                             << Command { .action = Action::Set, .wallpaper = u"aurora/emerald"_s };
        QTest::newRow("set, edition after")
            << QStringList { u"set"_s, u"a/b"_s, u"--edition"_s, u"dark"_s }
            << Command { .action = Action::Set, .wallpaper = u"a/b"_s, .edition = u"dark"_s };
        QTest::newRow("set, edition before")
            << QStringList { u"set"_s, u"--edition=light"_s, u"a/b"_s }
            << Command { .action = Action::Set, .wallpaper = u"a/b"_s, .edition = u"light"_s };
        QTest::newRow("shuffle settings")
            << QStringList { u"shuffle-settings"_s, u"--on"_s,      u"--interval"_s, u"hour"_s,
                             u"--source"_s,         u"favourites"_s }
            << Command { .action = Action::ShuffleSettings,
                         .isOn = true,
                         .interval = u"hour"_s,
                         .source = u"favourites"_s };
        QTest::newRow("shuffle off") << QStringList { u"shuffle-settings"_s, u"--off"_s }
                                     << Command { .action = Action::ShuffleSettings };
        QTest::newRow("Do Not Disturb wallpaper") << QStringList {
            u"focus-filter"_s, u"a/b"_s, u"--edition"_s, u"dark"_s
        } << Command { .action = Action::FocusFilter, .wallpaper = u"a/b"_s, .edition = u"dark"_s };
        QTest::newRow("no Do Not Disturb wallpaper")
            << QStringList { u"focus-filter"_s } << Command { .action = Action::FocusFilter };
        QTest::newRow("find words") << QStringList { u"find"_s, u"dunes"_s, u"rose"_s }
                                    << Command { .action = Action::Find, .text = u"dunes rose"_s };
    }

    void commands()
    {
        QFETCH(QStringList, arguments);
        QFETCH(Command, command);
        const CommandLine line = CommandLine::parse(arguments);
        QVERIFY2(line.error.isEmpty(), qPrintable(line.error));
        QCOMPARE(line.command, command);
    }

    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("error");
        QTest::newRow("nothing") << QStringList() << u"quennetctl: name a command"_s;
        QTest::newRow("unknown command")
            << QStringList { u"paint"_s } << u"quennetctl: 'paint' isn't a command"_s;
        QTest::newRow("unknown option")
            << QStringList { u"get"_s, u"--all"_s } << u"quennetctl: get: unknown option --all"_s;
        QTest::newRow("set, no wallpaper")
            << QStringList { u"set"_s } << u"quennetctl: set: name a wallpaper as PACK/COLOURWAY"_s;
        QTest::newRow("set, two") << QStringList { u"set"_s, u"a/b"_s, u"c/d"_s }
                                  << u"quennetctl: set: one wallpaper at a time"_s;
        QTest::newRow("edition without value") << QStringList { u"set"_s, u"a/b"_s, u"--edition"_s }
                                               << u"quennetctl: set: --edition needs a value"_s;
        QTest::newRow("on nor off")
            << QStringList { u"shuffle-settings"_s, u"--interval"_s, u"day"_s }
            << u"quennetctl: shuffle-settings: give --on or --off"_s;
        QTest::newRow("on and off")
            << QStringList { u"shuffle-settings"_s, u"--on"_s, u"--off"_s }
            << u"quennetctl: shuffle-settings: give --on or --off, not both"_s;
        QTest::newRow("an edition of nothing")
            << QStringList { u"focus-filter"_s, u"--edition"_s, u"dark"_s }
            << u"quennetctl: focus-filter: --edition needs a wallpaper"_s;
        QTest::newRow("extra argument") << QStringList { u"status"_s, u"now"_s }
                                        << u"quennetctl: status: unexpected argument now"_s;
    }

    void usageErrors()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, error);
        const CommandLine line = CommandLine::parse(arguments);
        QCOMPARE(line.command, std::nullopt);
        QCOMPARE(line.exitStatus, CommandLine::usageError);
        QCOMPARE(line.error.section(u'\n', 0, 0), error);
    }

    // Help for the tool and each command, on standard output; the man page and the completions
    // know every command.
    void helpEverywhere()
    {
        const auto read = [](const char *path) {
            QFile file(QLatin1StringView(QUENNET_SOURCE_DIR "/data/") + QLatin1StringView(path));
            return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        };
        const QString manual = read("man/quennetctl.1").remove(u'\\');
        QVERIFY(!manual.isEmpty());

        const QString help = CommandLine::parse({ u"--help"_s }).output;
        for (const QString &name : CommandLine::subcommands()) {
            QVERIFY2(help.contains(u"  "_s + name + u' '), qPrintable(name));
            for (const QStringList &arguments :
                 { QStringList { name, u"--help"_s }, QStringList { u"--help"_s, name },
                   QStringList { name, u"x/y"_s, u"-h"_s } }) {
                const CommandLine line = CommandLine::parse(arguments);
                QCOMPARE(line.exitStatus, 0);
                QVERIFY(line.output.startsWith(u"Usage: quennetctl "_s + name));
            }
            QVERIFY2(manual.contains(u".B "_s + name) || manual.contains(u".BI "_s + name)
                         || manual.contains(u".BR "_s + name),
                     qPrintable(name));
        }
        const auto listed = [&read](const char *path, const QString &pattern) {
            QStringList names;
            for (const auto &match :
                 QRegularExpression(pattern, QRegularExpression::MultilineOption)
                     .globalMatch(read(path)))
                names += match.captured(1).split(u' ');
            return names;
        };
        QCOMPARE(listed("completion/quennetctl.bash", u"local commands=\"([^\"]*)\""_s),
                 CommandLine::subcommands());
        QCOMPARE(listed("completion/quennetctl.fish", u"^set -l commands (.*)$"_s),
                 CommandLine::subcommands());
        QCOMPARE(listed("completion/_quennetctl", u"^ +['\"]([a-z-]+):"_s),
                 CommandLine::subcommands());
    }

    // The shop's names, sentences and codes reach the terminal as text, never as its commands.
    void shopTextPrinted_data()
    {
        QTest::addColumn<QString>("sent");
        QTest::addColumn<QString>("printed");

        QTest::newRow("plain") << u"Café Dunes — Dawn"_s << u"Café Dunes — Dawn"_s;
        QTest::newRow("colour") << u"\x1b[31;1mRed\x1b[0m Sea"_s << u"Red Sea"_s;
        QTest::newRow("title") << u"A\x1b]0;owned\aB"_s << u"AB"_s;
        QTest::newRow("link") << u"\x1b]8;;https://x.test\x1b\\Go\x1b]8;;\x1b\\"_s << u"Go"_s;
        QTest::newRow("character set") << u"\x1b(0lqk"_s << u"lqk"_s;
        QTest::newRow("a lone escape") << u"end\x1b"_s << u"end"_s;
        QTest::newRow("C0 and DEL") << u"a\tb\nc\rd\x08"
                                       u"e\x7f\x00"
                                       u"f"_s
                                    << u"abcdef"_s;
        QTest::newRow("C1") << u"x\u009b2Jy\u0085z"_s << u"x2Jyz"_s;
    }

    void shopTextPrinted()
    {
        QFETCH(QString, sent);
        QFETCH(QString, printed);
        QCOMPARE(AutomationClient::printable(sent), printed);
    }

    // Quennet passes on only the shop's own page; whatever else arrives is not printed.
    void verificationPage_data()
    {
        QTest::addColumn<QString>("sent");
        QTest::addColumn<QString>("printed");

        QTest::newRow("the shop's page")
            << u"https://shop.quennet.app/activate"_s << u"https://shop.quennet.app/activate"_s;
        QTest::newRow("a file") << u"file:///etc/passwd"_s << QString();
        QTest::newRow("plain http") << u"http://shop.quennet.app/activate"_s << QString();
        QTest::newRow("no host") << u"https:/activate"_s << QString();
        QTest::newRow("control characters") << u"https://shop.quennet.app/\x1b[2Ja"_s << QString();
    }

    void verificationPage()
    {
        QFETCH(QString, sent);
        QFETCH(QString, printed);
        QCOMPARE(AutomationClient::printablePage(sent), printed);
    }
};

QTEST_GUILESS_MAIN(QuennetctlCommandLineTest)
#include "test_quennetctl_command_line.moc"
