#include "shop_fixture.h"
#include "web_driver.h"

#include <QTest>
#include <memory>

using namespace Qt::Literals::StringLiterals;

// The approval page in a real browser: a person approves or denies the code Quennet shows.
class TestDevshopApprovalPage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (const QString missing = WebDriver::missingTool(); !missing.isEmpty())
            QSKIP(qPrintable(u"needs "_s + missing + u" (scripts/install-deps)"_s));
        QVERIFY(m_fixture.isRunning());
        m_browser = std::make_unique<WebDriver>(m_fixture.shop().caPath());
        QVERIFY2(m_browser->start(), qPrintable(m_browser->error()));
    }

    void decisions_data()
    {
        QTest::addColumn<bool>("prefilled");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("pollError");
        QTest::newRow("approve the prefilled code")
            << true << u"approve"_s << u"Approved"_s << u""_s;
        QTest::newRow("deny a typed code")
            << false << u"deny"_s << u"Denied"_s << u"access_denied"_s;
        QTest::newRow("approve a typed code") << false << u"approve"_s << u"Approved"_s << u""_s;
    }

    void decisions()
    {
        QFETCH(bool, prefilled);
        QFETCH(QString, button);
        QFETCH(QString, result);
        QFETCH(QString, pollError);
        const QJsonObject code = m_fixture.requestCode(u"Robin's <Laptop>"_s);
        const QString userCode = code[u"user_code"_s].toString();

        m_browser->open(
            code[prefilled ? u"verification_uri_complete"_s : u"verification_uri"_s].toString());
        // A certificate error would show the browser's own page instead.
        QCOMPARE(m_browser->title(), u"Sign in to Quennet · Quennet shop"_s);
        QCOMPARE(m_browser->text(m_browser->find(u"#email"_s)), u"sam.sample@example.com"_s);
        const QString input = m_browser->find(u"#user_code"_s);
        if (prefilled) {
            QCOMPARE(m_browser->property(input, u"value"_s), userCode);
            QVERIFY(m_browser->text(m_browser->find(u"#device"_s)).contains(u"Robin's <Laptop>"_s));
        } else {
            QCOMPARE(m_browser->property(input, u"value"_s), QString());
            m_browser->type(input, userCode.toLower().remove(u'-'));
        }
        m_browser->click(m_browser->find(u'#' + button));
        QVERIFY(m_browser->text(m_browser->find(u"#result"_s)).startsWith(result));

        const CurlReply poll = m_fixture.poll(code[u"device_code"_s].toString());
        QCOMPARE(poll.json()[u"error"_s].toString(), pollError);
        QCOMPARE(poll.json().contains(u"access_token"_s), pollError.isEmpty());
    }

    void unknownCodeIsRefused()
    {
        m_browser->open(m_fixture.url(u"/activate"_s));
        m_browser->type(m_browser->find(u"#user_code"_s), u"BBBB-BBBB"_s);
        m_browser->click(m_browser->find(u"#approve"_s));
        QVERIFY(m_browser->text(m_browser->find(u"#error"_s)).contains(u"isn't valid"_s));
        QCOMPARE(m_browser->property(m_browser->find(u"#user_code"_s), u"value"_s), u"BBBB-BBBB"_s);
    }

    void cleanupTestCase() { m_browser.reset(); }

private:
    ShopFixture m_fixture;
    std::unique_ptr<WebDriver> m_browser;
};

QTEST_GUILESS_MAIN(TestDevshopApprovalPage)
#include "test_devshop_approval_page.moc"
