#include "automation_client.h"
#include "command_line.h"
#include "test_files.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(Command)

// What quennetctl makes of its command line before it talks to Quennet, and of the shop's text
// it prints.
class QuennetctlCommandLineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The command lines as typed after "quennetctl", split at spaces.
    void commands_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<Command>("command");
        using Action = Command::Action;
        // Options before and after the wallpaper, "=" or a separate value; shuffle-settings is
        // test_quennetctl's, which sees what Quennet saved.
        QTest::newRow("set") << u"set --edition=light a/b"_s
                             << Command { .action = Action::Set,
                                          .wallpaper = u"a/b"_s,
                                          .edition = u"light"_s };
        QTest::newRow("focus-filter") << u"focus-filter a/b --edition dark"_s
                                      << Command { .action = Action::FocusFilter,
                                                   .wallpaper = u"a/b"_s,
                                                   .edition = u"dark"_s };
        QTest::newRow("find words")
            << u"find dunes rose"_s << Command { .action = Action::Find, .text = u"dunes rose"_s };
    }

    void commands()
    {
        QFETCH(QString, line);
        QFETCH(Command, command);
        const CommandLine parsed = CommandLine::parse(line.split(u' ', Qt::SkipEmptyParts));
        QVERIFY2(parsed.error.isEmpty(), qPrintable(parsed.error));
        QCOMPARE(parsed.command, command);
    }

    void usageErrors_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("error"); // after "quennetctl: "
        const auto row = [](const char *line, const QString &error) {
            QTest::newRow(*line ? line : "nothing") << QString::fromLatin1(line) << error;
        };
        row("", u"name a command"_s);
        row("paint", u"'paint' isn't a command"_s);
        row("get --all", u"get: unknown option --all"_s);
        row("set a/b c/d", u"set: one wallpaper at a time"_s);
        row("set a/b --edition", u"set: --edition needs a value"_s);
        row("shuffle-settings --interval day", u"shuffle-settings: give --on or --off"_s);
        row("shuffle-settings --on --off", u"shuffle-settings: give --on or --off, not both"_s);
        row("focus-filter --edition dark", u"focus-filter: --edition needs a wallpaper"_s);
    }

    void usageErrors()
    {
        QFETCH(QString, line);
        QFETCH(QString, error);
        const CommandLine parsed = CommandLine::parse(line.split(u' ', Qt::SkipEmptyParts));
        QCOMPARE(parsed.exitStatus, CommandLine::usageError);
        QCOMPARE(parsed.error.section(u'\n', 0, 0), u"quennetctl: "_s + error);
    }

    // Help for the tool and each command, on standard output; the man page and the completions
    // know every command.
    void helpEverywhere()
    {
        const auto read = [](const char *path) {
            return QString::fromUtf8(
                readAll(QLatin1StringView(QUENNET_SOURCE_DIR "/data/") + QLatin1StringView(path)));
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
            const QRegularExpression inManual(u"\\.B[IR]? "_s + QRegularExpression::escape(name));
            QVERIFY2(manual.contains(inManual), qPrintable(name));
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
        QTest::newRow("CSI, OSC ended by BEL and by ST, character set")
            << u"\x1b[31;1mRed\x1b[0m A\x1b]0;owned\aB "
               u"\x1b]8;;https://x.test\x1b\\Go\x1b]8;;\x1b\\ "
               u"\x1b(0lqk"_s
            << u"Red AB Go lqk"_s;
        QTest::newRow("C0, DEL, C1 and a lone escape") << u"a\tb\nc\rd\x08"
                                                          u"e\x7f\x00"
                                                          u"f\u009b2Jy\u0085z\x1b"_s
                                                       << u"abcdef2Jyz"_s;
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
