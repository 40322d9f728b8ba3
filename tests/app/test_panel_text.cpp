#include "account.h"
#include "app_delegate.h"
#include "application_folder.h"
#include "defaults.h"
#include "keychain.h"
#include "library_status.h"
#include "notice_presenter.h"
#include "quick_views.h"
#include "shop.h"
#include "status_item_controller.h"
#include "test_support.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QQuickWindow>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>
#include <QTranslator>
#include <QtQml/QQmlExtensionPlugin>

Q_IMPORT_QML_PLUGIN(QuennetPlugin)

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

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
            const QStringView before = QStringView(text).left(i);
            const bool count =
                text.at(i) == u'n' && (before.endsWith(u'%') || before.endsWith(u"%L"));
            const qsizetype at = plain.indexOf(text.at(i));
            result += at >= 0 && !count ? accented.at(at) : text.at(i);
        }
        // Padding in short words, as a long translation has them: it may wrap between them.
        while (result.size() < text.size() * 7 / 5)
            result += u" ŵŵŵ"_s;
        made.insert(result);
        return result;
    }

    // Whole translated sentences, with no names or figures put in.
    mutable QSet<QString> made;
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
    void states()
    {
        QStandardPaths::setTestModeEnabled(true);
        QCoreApplication::installTranslator(&m_pseudo);
        QVERIFY(m_shop.isRunning());
        // No session: the loading message, then the sign-in invitation.
        useShop(m_shop.baseUrl());
        {
            AppDelegate app({ .atLogin = true, .selfTest = true });
            app.start();
            const auto view = panel(app);
            checkTexts(*view, app, LibraryStatus::State::Loading, u"loading"_s);
            awaitTask(app.account()->load());
            checkTexts(*view, app, LibraryStatus::State::SignedOut, u"signed-out"_s);
        }
        QVERIFY(finish(Keychain(applicationFolder())
                           .save(m_shop.issueToken(), QString(Keychain::sessionToken)))
                    .value.value_or(false));
        for (const bool reachable : { false, true }) {
            useShop(reachable ? m_shop.baseUrl() : withClosedPort(m_shop.baseUrl()));
            AppDelegate app({ .atLogin = true, .selfTest = true });
            app.start();
            awaitTask(app.account()->load());
            const auto view = panel(app);
            awaitTask(app.shop()->start());
            if (!reachable) {
                checkTexts(*view, app, LibraryStatus::State::Unreachable, u"unreachable"_s);
                continue;
            }
            checkTexts(*view, app, LibraryStatus::State::Ready, u"packs"_s);
            app.notice()->showFailure(Defaults::NotSaved().description());
            checkTexts(*view, app, LibraryStatus::State::Ready, u"notice"_s);
        }
    }

    // Views hidden for a while are let go with their engine, and made again on the next open;
    // one still showing keeps them all.
    void viewsLetGoWhenHidden()
    {
        int made = 0;
        AppDelegate app({ .atLogin = true,
                          .selfTest = true,
                          .makeViews =
                              [&] {
                                  ++made;
                                  return std::make_unique<QuickViews>();
                              },
                          .viewsIdle = 50ms });
        app.start();
        const auto views = [](bool visibleOnly) {
            QList<QQuickWindow *> found;
            for (QWindow *window : QGuiApplication::topLevelWindows()) {
                if (auto *view = qobject_cast<QQuickWindow *>(window);
                    view && (view->isVisible() || !visibleOnly))
                    found.append(view);
            }
            return found;
        };
        app.statusItem()->showPanel();
        app.openSettings();
        QCOMPARE(views(true).size(), 2);
        app.closePanel();
        QTRY_COMPARE(views(true).size(), 1);
        QTest::qWait(300);
        QCOMPARE(views(false).size(), 2);

        views(true).constFirst()->close();
        QTRY_VERIFY(views(false).isEmpty());
        app.statusItem()->showPanel();
        QVERIFY(app.statusItem()->isShown());
        QCOMPARE(made, 2);
        QCOMPARE(views(true).size(), 1);
        // Going with a window still open, as at quitting.
        app.closePanel();
        app.openSettings();
    }

private:
    void useShop(const QUrl &base)
    {
        QSettings settings(Defaults::defaultPath(), QSettings::IniFormat);
        settings.setValue(u"shopBaseURL"_s, base.toString());
        settings.setValue(u"shopCertificates"_s, m_shop.shop().caPath());
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

    // Texts may elide only where they hold names and figures rather than sentences. Each state
    // leaves a screenshot, panel-pseudo-STATE.png, beside the test.
    void checkTexts(QQuickView &view, AppDelegate &app, LibraryStatus::State expected,
                    const QString &state)
    {
        QCOMPARE(app.library()->state(), expected);
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QTest::qWait(100);
        QQuickItem *root = view.rootObject();
        QVERIFY(root);
        const QList<QQuickItem *> texts = visibleTexts(root);
        QVERIFY2(texts.size() > 1, qPrintable(state));
        for (QQuickItem *text : texts) {
            const QString shown = text->property("text").toString();
            const QRectF box = text->mapRectToItem(root, text->boundingRect());
            QString where;
            QDebug(&where) << state << shown << box;
            QVERIFY2(box.left() >= 0 && box.right() <= root->width() + 0.5,
                     qPrintable(u"sticks out of the panel: "_s + where));
            const bool elides = text->property("elide").toInt() != 0;
            const bool wraps = text->property("wrapMode").toInt() != 0;
            // A list of names may elide; a sentence must find room.
            QVERIFY2(!text->property("truncated").toBool()
                         || (elides && !wraps && !m_pseudo.made.contains(shown)),
                     qPrintable(u"cut: "_s + where));
            QVERIFY2(elides || wraps
                         || text->property("contentWidth").toReal() <= text->width() + 0.5,
                     qPrintable(u"wider than its place: "_s + where));
        }
        QVERIFY(view.grabWindow().save(QCoreApplication::applicationDirPath() + u"/panel-pseudo-"_s
                                       + state + u".png"_s));
    }

    PseudoTranslator m_pseudo;
    ContentShop m_shop { { { .slug = u"aurora"_s,
                             .files = { { u"emerald"_s, u"light"_s, 20'000 },
                                        { u"violet"_s, u"dark"_s, 20'000 } } } } };
};

QTEST_MAIN(PanelTextTest)
#include "test_panel_text.moc"
