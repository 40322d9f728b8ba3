#include "computer_name.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

// The pretty host name as systemd writes /etc/machine-info.
class ComputerNameTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void prettyHostName_data()
    {
        QTest::addColumn<QByteArray>("machineInfo");
        QTest::addColumn<QString>("name");

        QTest::newRow("bare") << QByteArray("CHASSIS=laptop\nPRETTY_HOSTNAME=Studio\n")
                              << u"Studio"_s;
        QTest::newRow("double quotes, escapes")
            << QByteArray(R"(PRETTY_HOSTNAME="Zoë’s \"Big\" One")") << u"Zoë’s \"Big\" One"_s;
        QTest::newRow("single quotes") << QByteArray("PRETTY_HOSTNAME='a\\b'") << u"a\\b"_s;
        QTest::newRow("a longer key") << QByteArray("NOT_PRETTY_HOSTNAME=x") << QString();
        QTest::newRow("blank") << QByteArray("PRETTY_HOSTNAME=\"  \"") << QString();
    }

    void prettyHostName()
    {
        QFETCH(QByteArray, machineInfo);
        QTEST(::prettyHostName(machineInfo), "name");
    }
};

QTEST_GUILESS_MAIN(ComputerNameTest)
#include "test_computer_name.moc"
