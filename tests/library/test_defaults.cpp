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
    void shopBaseURL_data();
    void shopBaseURL();
    void writtenAndReadBack();

private:
    [[nodiscard]] QString iniWith(const QByteArray &lines);

    QTemporaryDir m_folder;
};

QString DefaultsTest::iniWith(const QByteArray &lines)
{
    const auto path = m_folder.filePath(u"defaults.ini"_s);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        qFatal("cannot write %s", qPrintable(path));
    file.write(lines);
    return path;
}

void DefaultsTest::shopBaseURL_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<QUrl>("base");
    QTest::addColumn<std::optional<QString>>("certificates");

    const QUrl production(u"https://shop.quennet.app/api/app/v1"_s);
    QTest::newRow("nothing set") << QByteArray() << production << std::optional<QString>();
    QTest::newRow("a development shop")
        << QByteArray("[General]\nshopBaseURL=https://127.0.0.1:8443/api/app/v1\n"
                      "shopCertificates=/tmp/devshop/ca.pem\n")
        << QUrl(u"https://127.0.0.1:8443/api/app/v1"_s) << std::optional(u"/tmp/devshop/ca.pem"_s);
    QTest::newRow("quoted") << QByteArray(
        "[General]\nshopBaseURL=\"http://localhost:8080/api/app/v1\"\n")
                            << QUrl(u"http://localhost:8080/api/app/v1"_s)
                            << std::optional<QString>();
    QTest::newRow("empty") << QByteArray("[General]\nshopBaseURL=\nshopCertificates=\n")
                           << production << std::optional<QString>();
    QTest::newRow("not a URL") << QByteArray("[General]\nshopBaseURL=shop.example\n") << production
                               << std::optional<QString>();
    QTest::newRow("another scheme") << QByteArray("[General]\nshopBaseURL=ftp://shop.example/api\n")
                                    << production << std::optional<QString>();
    QTest::newRow("no host") << QByteArray("[General]\nshopBaseURL=https:///api/app/v1\n")
                             << production << std::optional<QString>();
    // INI reads an unquoted comma as a list.
    QTest::newRow("a list") << QByteArray("[General]\nshopBaseURL=https://a.example,b\n")
                            << production << std::optional<QString>();
}

void DefaultsTest::shopBaseURL()
{
    QFETCH(QByteArray, ini);
    QFETCH(QUrl, base);
    QFETCH(std::optional<QString>, certificates);

    const Defaults defaults(iniWith(ini));
    QCOMPARE(defaults.shopBaseURL(), base);
    QCOMPARE(defaults.shopCertificates(), certificates);
}

void DefaultsTest::writtenAndReadBack()
{
    const auto path = iniWith({});
    {
        Defaults defaults(path);
        defaults.setShopBaseURL(QUrl(u"https://localhost:9/api/app/v1"_s));
        defaults.setShopCertificates(u"/srv/ca, with a comma.pem"_s);
    }
    Defaults reopened(path);
    QCOMPARE(reopened.shopBaseURL(), QUrl(u"https://localhost:9/api/app/v1"_s));
    QCOMPARE(reopened.shopCertificates(), u"/srv/ca, with a comma.pem"_s);

    reopened.setShopBaseURL(std::nullopt);
    reopened.setShopCertificates(std::nullopt);
    reopened.sync();
    QCOMPARE(Defaults(path).shopBaseURL(), Defaults::productionShopURL());
    QCOMPARE(Defaults(path).shopCertificates(), std::nullopt);
}

QTEST_GUILESS_MAIN(DefaultsTest)
#include "test_defaults.moc"
