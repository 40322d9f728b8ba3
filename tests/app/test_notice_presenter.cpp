#include "notice_presenter.h"
#include "translations.h"

#include <QDBusConnection>
#include <QDesktopServices>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

Q_IMPORT_QML_PLUGIN(QuennetPlugin)

using namespace Qt::Literals::StringLiterals;

// A file manager with the freedesktop interface, answering from the test's own thread: a
// presenter that waited for it would never hear it.
class FileManagerStandIn : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown;

public Q_SLOTS:
    void ShowItems(const QStringList &uris, const QString &) { shown += uris; }
};

// The words of the panel's notice line, and how its view shows them.
class NoticePresenterTest : public QObject {
    Q_OBJECT

    QList<QUrl> m_opened;

public Q_SLOTS:
    void open(const QUrl &url) { m_opened.append(url); }

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale::c());
        // A language Quennet has no translation of: English, with its plural forms.
        Translations::install(*QCoreApplication::instance(), QLocale(QLocale::Spanish));
        QDesktopServices::setUrlHandler(u"file"_s, this, "open");
    }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(u"file"_s); }

    // The words of each notice. The view redraws on every change of the notice, and only then;
    // progress is an update of the same notice, another failure a new one.
    void wordsAndChanges()
    {
        NoticePresenter presenter;
        QSignalSpy changed(&presenter, &NoticePresenter::changed);
        QSignalSpy arrived(&presenter, &NoticePresenter::arrived);
        presenter.setNotice(Notice::downloading(1, 0.42));
        QCOMPARE(presenter.text(), u"Downloading"_s);
        presenter.setNotice(Notice::downloading(1, 0.42));
        presenter.setNotice(Notice::downloading(2, 0.996));
        QCOMPARE(presenter.kind(), NoticePresenter::Kind::Downloading);
        QCOMPARE(presenter.text(), u"Downloading 2 files"_s);
        QCOMPARE(presenter.percent(), u"100%"_s);
        QCOMPARE(QCoreApplication::translate("MainWindow", "%n colourway(s)", nullptr, 1),
                 u"1 colourway"_s);
        QCOMPARE(QCoreApplication::translate("MainWindow", "%n colourway(s)", nullptr, 2),
                 u"2 colourways"_s);
        presenter.setNotice(Notice::failed(u"a"_s));
        presenter.setNotice(Notice::failed(u"b"_s));
        presenter.setNotice(Notice::saved(QUrl(u"file:///home/sam/Downloads/pack.zip"_s)));
        QCOMPARE(presenter.text(), u"Saved pack.zip to Downloads"_s);
        QVERIFY(presenter.percent().isEmpty());
        presenter.setNotice(std::nullopt);
        QCOMPARE(changed.size(), 6);
        QCOMPARE(arrived.size(), 4);
    }

    // "Show in Folder" asks the file manager to select the file, and opens the folder where
    // there is none.
    void showInFolder()
    {
        NoticePresenter presenter;
        presenter.setNotice(Notice::saved(QUrl(u"file:///home/sam/Downloads/pack.zip"_s)));
        FileManagerStandIn fileManager;
        QDBusConnection bus =
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"files"_s);
        QVERIFY(bus.registerObject(u"/org/freedesktop/FileManager1"_s, &fileManager,
                                   QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService(u"org.freedesktop.FileManager1"_s));
        presenter.showInFolder();
        QTRY_COMPARE(fileManager.shown, QStringList { u"file:///home/sam/Downloads/pack.zip"_s });
        QTest::qWait(50); // for a folder that should not open
        QVERIFY(m_opened.isEmpty());

        bus.unregisterService(u"org.freedesktop.FileManager1"_s);
        presenter.showInFolder();
        QTRY_COMPARE(m_opened, QList<QUrl> { QUrl(u"file:///home/sam/Downloads"_s) });
        QCOMPARE(fileManager.shown.size(), 1);
        QDBusConnection::disconnectFromBus(u"files"_s);
    }

    // What the shop wrote is shown as it reads: markup in it is neither styled nor followed.
    void shopTextIsPlain()
    {
        const QString sentence = uR"(<img src="http://127.0.0.1:9/x.png"><b>Busy</b>)"_s;
        NoticePresenter presenter;
        presenter.setNotice(Notice::failed(sentence));
        QQmlEngine engine;
        engine.addImportPath(u"qrc:/qt/qml"_s);
        QQmlComponent component(&engine);
        component.setData(R"(
            import QtQuick
            import Quennet
            Window {
                visible: true
                property alias names: names
                NoticeView { notice: presenter }
                NameChoice {
                    id: names
                    textRole: "name"
                    model: [{ name: sentence }]
                }
            })"_ba,
                          QUrl());
        engine.rootContext()->setContextProperty(u"presenter"_s, &presenter);
        engine.rootContext()->setContextProperty(u"sentence"_s, sentence);
        const std::unique_ptr<QObject> shown(component.create());
        QVERIFY2(shown, qPrintable(component.errorString()));
        // The list of names exists only while it is open.
        QQuickItem *names = shown->property("names").value<QQuickItem *>();
        QMetaObject::invokeMethod(names->property("popup").value<QObject *>(), "open");
        QQuickItem *content = qobject_cast<QQuickWindow *>(shown.get())->contentItem();
        QTRY_VERIFY(texts(content, sentence).size() >= 2);
        for (const QQuickItem *text : texts(content, sentence))
            QCOMPARE(text->property("textFormat").toInt(), int(Qt::PlainText));
    }

private:
    // Every text item of the window, its popups included, that reads this.
    static QList<QQuickItem *> texts(QQuickItem *item, const QString &reading)
    {
        QList<QQuickItem *> found;
        if (item->property("text").toString() == reading && item->property("textFormat").isValid())
            found.append(item);
        for (QQuickItem *child : item->childItems())
            found += texts(child, reading);
        return found;
    }
};

QTEST_MAIN(NoticePresenterTest)
#include "test_notice_presenter.moc"
