#include "shuffle_view.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

// The panel's words for when the next shuffle comes.
class ShuffleViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void next_data()
    {
        QTest::addColumn<QDateTime>("next");
        QTest::addColumn<QString>("words");
        QTest::newRow("today") << QDateTime(QDate(2025, 3, 12), QTime(15, 0))
                               << u"today at 15:00"_s;
        QTest::newRow("tomorrow") << QDateTime(QDate(2025, 3, 13), QTime(0, 0))
                                  << u"tomorrow at 00:00"_s;
        QTest::newRow("this week")
            << QDateTime(QDate(2025, 3, 17), QTime(0, 0)) << u"Monday at 00:00"_s;
        QTest::newRow("further") << QDateTime(QDate(2025, 3, 19), QTime(6, 0))
                                 << u"19/03/2025 at 06:00"_s;
    }

    void next()
    {
        QFETCH(QDateTime, next);
        const QDateTime now(QDate(2025, 3, 12), QTime(9, 30)); // a Wednesday
        QTEST(
            ShuffleView::describeNext(next, now, QLocale(QLocale::English, QLocale::UnitedKingdom)),
            "words");
    }
};

QTEST_GUILESS_MAIN(ShuffleViewTest)
#include "test_shuffle_view.moc"
