#include "account.h"
#include "app_delegate.h"
#include "application_folder.h"
#include "defaults.h"
#include "keychain.h"
#include "library_status.h"
#include "notice_presenter.h"
#include "shop.h"
#include "test_support.h"

#include <QCoreApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>
#include <QTranslator>
#include <QtQml/QQmlExtensionPlugin>

Q_IMPORT_QML_PLUGIN(QuennetPlugin)

using namespace Qt::Literals::StringLiterals;

namespace {
// Every string 40 % longer, in accented letters, with its placeholders and accelerators kept:
// what a long translation does to the views.
class PseudoTranslator : public QTranslator {
public:
    [[nodiscard]] bool isEmpty() const override { return false; }

    [[nodiscard]] QString translate(const char *, const char *source, const char *,
                                    int) const override
    {
        static const QString plain = u"aceinouyAEIOU"_s;
        static const QString accented = u"áçéîñöüÿÅÉÎÖÜ"_s;
        const QString text = QString::fromUtf8(source);
        QString result;
        for (qsizetype i = 0; i < text.size(); ++i) {
            // The n of "%n" and "%Ln" stays a placeholder.
            const bool count = text.at(i) == u'n'
                && (text.left(i).endsWith(u'%') || text.left(i).endsWith(u"%L"_s));
            const qsizetype at = plain.indexOf(text.at(i));
            result += at >= 0 && !count ? accented.at(at) : text.at(i);
        }
        // Padding in short words, as a long translation has them: it may wrap between them.
        while (result.size() < text.size() * 7 / 5)
            result += u" ŵŵŵ"_s;
        m_made.insert(result);
        return result;
    }

    // A text is a whole translated sentence, with no names or figures put in.
    [[nodiscard]] bool made(const QString &text) const { return m_made.contains(text); }

private:
    mutable QSet<QString> m_made;
};

QList<QQuickItem *> visibleTexts(QQuickItem *item)
{
    QList<QQuickItem *> texts;
    if (!item->isVisible() || item->opacity() == 0)
        return texts;
    if (item->metaObject()->indexOfProperty("truncated") >= 0
        && !item->property("text").toString().isEmpty())
        texts.append(item);
    for (QQuickItem *child : item->childItems())
        texts.append(visibleTexts(child));
    return texts;
}
} // namespace

// The tray panel in a long language: in each of its main states, no text is cut where it should
// wrap, and none sticks out of the panel.
class PanelTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        QCoreApplication::installTranslator(&m_pseudo);
        QVERIFY(m_shop.isRunning());
        m_shopCa = m_shop.shop().caPath();
    }

    void signedOutAndLoading()
    {
        // No session: the sign-in invitation, after the loading message.
        useShop(m_shop.baseUrl());
        AppDelegate app({ .atLogin = true, .selfTest = true });
        app.start();
        const auto view = panel(app);
        QCOMPARE(app.library()->state(), LibraryStatus::State::Loading);
        checkTexts(*view, u"loading"_s);
        awaitTask(app.account()->load());
        QCOMPARE(app.library()->state(), LibraryStatus::State::SignedOut);
        checkTexts(*view, u"signed-out"_s);
        QVERIFY(finish(Keychain(applicationFolder())
                           .save(m_shop.issueToken(), QString(Keychain::sessionToken)))
                    .value.value_or(false));
    }

    void unreachable()
    {
        useShop(withClosedPort(m_shop.baseUrl()));
        AppDelegate app({ .atLogin = true, .selfTest = true });
        app.start();
        awaitTask(app.account()->load());
        const auto view = panel(app);
        awaitTask(app.shop()->start());
        QCOMPARE(app.library()->state(), LibraryStatus::State::Unreachable);
        checkTexts(*view, u"unreachable"_s);
    }

    void packsAndNotice()
    {
        useShop(m_shop.baseUrl());
        AppDelegate app({ .atLogin = true, .selfTest = true });
        app.start();
        awaitTask(app.account()->load());
        const auto view = panel(app);
        awaitTask(app.shop()->start());
        QCOMPARE(app.library()->state(), LibraryStatus::State::Ready);
        checkTexts(*view, u"packs"_s);
        app.notice()->showFailure(Defaults::NotSaved().description());
        checkTexts(*view, u"notice"_s);
    }

private:
    void useShop(const QUrl &base)
    {
        QSettings settings(Defaults::defaultPath(), QSettings::IniFormat);
        settings.setValue(u"shopBaseURL"_s, base.toString());
        settings.setValue(u"shopCertificates"_s, m_shopCa);
    }

    static std::unique_ptr<QQuickView> panel(AppDelegate &app)
    {
        auto view = std::make_unique<QQuickView>();
        view->engine()->addImportPath(u"qrc:/qt/qml"_s);
        view->setInitialProperties({ { u"app"_s, QVariant::fromValue(&app) } });
        view->setResizeMode(QQuickView::SizeViewToRootObject);
        view->setSource(QUrl(u"qrc:/qt/qml/Quennet/qml/Panel.qml"_s));
        if (view->status() != QQuickView::Ready)
            qWarning() << view->errors();
        view->show();
        return view;
    }

    // Texts may elide only where they hold names and figures rather than sentences.
    void checkTexts(QQuickView &view, const QString &state)
    {
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QTest::qWait(100);
        QQuickItem *root = view.rootObject();
        QVERIFY(root);
        const QList<QQuickItem *> texts = visibleTexts(root);
        QVERIFY2(texts.size() > 1, qPrintable(state));
        for (QQuickItem *text : texts) {
            const QString shown = text->property("text").toString();
            const QRectF box = text->mapRectToItem(root, text->boundingRect());
            const QString where = u"%1: \"%2\" at %3,%4 %5x%6"_s.arg(state, shown)
                                      .arg(box.x())
                                      .arg(box.y())
                                      .arg(box.width())
                                      .arg(box.height());
            QVERIFY2(box.left() >= 0 && box.right() <= root->width() + 0.5,
                     qPrintable(u"sticks out of the panel: "_s + where));
            const bool elides = text->property("elide").toInt() != 0;
            const bool wraps = text->property("wrapMode").toInt() != 0;
            // A list of names may elide; a sentence must find room.
            QVERIFY2(!text->property("truncated").toBool()
                         || (elides && !wraps && !m_pseudo.made(shown)),
                     qPrintable(u"cut: "_s + where));
            if (!elides && !wraps) {
                QVERIFY2(text->property("contentWidth").toReal() <= text->width() + 0.5,
                         qPrintable(u"wider than its place: "_s + where));
            }
        }
        const QString file =
            QCoreApplication::applicationDirPath() + u"/panel-pseudo-"_s + state + u".png"_s;
        QVERIFY(view.grabWindow().save(file));
    }

    PseudoTranslator m_pseudo;
    ContentShop m_shop { { { .slug = u"aurora"_s,
                             .files = { { u"emerald"_s, u"light"_s, 20'000 },
                                        { u"violet"_s, u"dark"_s, 20'000 } } } } };
    QString m_shopCa;
};

QTEST_MAIN(PanelTextTest)
#include "test_panel_text.moc"
