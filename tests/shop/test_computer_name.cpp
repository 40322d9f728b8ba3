#include "computer_name.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

// The pretty host name as systemd writes /etc/machine-info.
class ComputerNameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prettyHostName_data();
    void prettyHostName();
};

void ComputerNameTest::prettyHostName_data()
{
    QTest::addColumn<QByteArray>("machineInfo");
    QTest::addColumn<QString>("name");

    QTest::newRow("bare word") << QByteArray("PRETTY_HOSTNAME=Studio\n") << u"Studio"_s;
    QTest::newRow("double quotes")
        << QByteArray("CHASSIS=laptop\nPRETTY_HOSTNAME=\"Ana's Laptop\"\n") << u"Ana's Laptop"_s;
    QTest::newRow("single quotes")
        << QByteArray("PRETTY_HOSTNAME='The \"Big\" One'") << u"The \"Big\" One"_s;
    QTest::newRow("escapes") << QByteArray(R"(PRETTY_HOSTNAME="Back\\slash \"quoted\"")")
                             << uR"(Back\slash "quoted")"_s;
    QTest::newRow("UTF-8") << QByteArray("PRETTY_HOSTNAME=\"Zoë’s Mac\"") << u"Zoë’s Mac"_s;
    QTest::newRow("the last one counts")
        << QByteArray("PRETTY_HOSTNAME=old\nPRETTY_HOSTNAME=new\n") << u"new"_s;
    QTest::newRow("another key only") << QByteArray("ICON_NAME=computer-laptop\n") << QString();
    QTest::newRow("a longer key") << QByteArray("NOT_PRETTY_HOSTNAME=x\n") << QString();
    QTest::newRow("empty") << QByteArray("PRETTY_HOSTNAME=\"\"\n") << QString();
    QTest::newRow("blank") << QByteArray("PRETTY_HOSTNAME=\"   \"\n") << QString();
}

void ComputerNameTest::prettyHostName()
{
    QFETCH(QByteArray, machineInfo);
    QFETCH(QString, name);
    QCOMPARE(::prettyHostName(machineInfo), name);
}

QTEST_GUILESS_MAIN(ComputerNameTest)
#include "test_computer_name.moc"
