#include "defaults.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// The development keys as a person writes them into defaults.ini by hand.
class DefaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shopKeys_data();
    void shopKeys();
};

void DefaultsTest::shopKeys_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<QUrl>("base");
    QTest::addColumn<std::optional<QString>>("certificates");

    const auto production = Defaults::productionShopURL();
    const std::optional<QString> none;
    QTest::newRow("nothing set") << QByteArray() << production << none;
    QTest::newRow("a development shop")
        << QByteArray("shopBaseURL=https://127.0.0.1:8443/api/app/v1\nshopCertificates=/ca.pem")
        << QUrl(u"https://127.0.0.1:8443/api/app/v1"_s) << std::optional(u"/ca.pem"_s);
    QTest::newRow("empty") << QByteArray("shopBaseURL=\nshopCertificates=") << production << none;
    QTest::newRow("not a URL") << QByteArray("shopBaseURL=shop.example") << production << none;
    QTest::newRow("another scheme") << QByteArray("shopBaseURL=ftp://shop.example/") << production
                                    << none;
    // INI reads an unquoted comma as a list.
    QTest::newRow("a list") << QByteArray("shopBaseURL=https://a.example,b") << production << none;
}

void DefaultsTest::shopKeys()
{
    QFETCH(QByteArray, ini);
    QFETCH(QUrl, base);
    QFETCH(std::optional<QString>, certificates);

    QTemporaryDir folder;
    QFile file(folder.filePath(u"defaults.ini"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[General]\n" + ini + '\n');
    file.close();

    const Defaults defaults(file.fileName());
    QCOMPARE(defaults.shopBaseURL(), base);
    QCOMPARE(defaults.shopCertificates(), certificates);
}

QTEST_GUILESS_MAIN(DefaultsTest)
#include "test_defaults.moc"
