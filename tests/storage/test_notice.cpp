#include "notice.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class NoticeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void identity()
    {
        // Progress is an update of the same notice, not a new one.
        QCOMPARE(Notice::downloading(1, 0.1).identifier(),
                 Notice::downloading(3, 0.9).identifier());
        QCOMPARE(Notice::downloading(2, 1.5).fraction(), 1.0);

        QCOMPARE(Notice::failed(u"a"_s).identifier(), Notice::failed(u"a"_s).identifier());
        QVERIFY(Notice::failed(u"a"_s).identifier() != Notice::failed(u"b"_s).identifier());
        // A failure whose message looks like a path is still not a saved notice.
        QVERIFY(Notice::failed(u"/x"_s).identifier()
                != Notice::saved(QUrl::fromLocalFile(u"/x"_s)).identifier());
    }
};

QTEST_GUILESS_MAIN(NoticeTest)
#include "test_notice.moc"
