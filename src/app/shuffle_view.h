#pragma once

#include <QCoroTask>
#include <QDateTime>
#include <QLocale>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVariantList>

class NoticePresenter;
class Shuffle;

// The shuffle as the panel's block and the settings pane show it: the switch and the choices by
// their labels, the status sentence, when the next shuffle is, and what comes next.
class ShuffleView : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isOn READ isOn WRITE setOn NOTIFY changed)
    Q_PROPERTY(int interval READ interval WRITE setInterval NOTIFY changed)
    Q_PROPERTY(int source READ source WRITE setSource NOTIFY changed)
    Q_PROPERTY(bool differentOnEachDisplay READ differentOnEachDisplay WRITE
                   setDifferentOnEachDisplay NOTIFY changed)
    Q_PROPERTY(QStringList intervals READ intervals CONSTANT)
    Q_PROPERTY(QStringList sources READ sources CONSTANT)
    Q_PROPERTY(QString status READ status NOTIFY changed)
    Q_PROPERTY(QString next READ next NOTIFY changed)
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(QVariantList upNext READ upNext NOTIFY changed)
    Q_PROPERTY(bool isShuffling READ isShuffling NOTIFY changed)

public:
    ShuffleView(Shuffle *shuffle, NoticePresenter *notice, QObject *parent = nullptr);

    // "today at 15:00", "tomorrow at 00:00", "Monday at 00:00", or a date further on.
    [[nodiscard]] static QString describeNext(const QDateTime &next, const QDateTime &now,
                                              const QLocale &locale = {});

    [[nodiscard]] bool isOn() const;
    void setOn(bool on);
    [[nodiscard]] int interval() const;
    void setInterval(int interval);
    [[nodiscard]] int source() const;
    void setSource(int source);
    [[nodiscard]] bool differentOnEachDisplay() const;
    void setDifferentOnEachDisplay(bool different);
    [[nodiscard]] static QStringList intervals();
    [[nodiscard]] static QStringList sources();
    [[nodiscard]] QString status() const;
    // "Next shuffle tomorrow at 00:00"; empty while off.
    [[nodiscard]] QString next() const;
    // "Every day from all your packs".
    [[nodiscard]] QString summary() const;
    // [{display, name, pack}] of the picks prepared for the next shuffle.
    [[nodiscard]] QVariantList upNext() const;
    [[nodiscard]] bool isShuffling() const;

    Q_INVOKABLE void shuffleNow();

Q_SIGNALS:
    void changed();

private:
    static QCoro::Task<> shuffleNow(QPointer<ShuffleView> self);
    // Tells the user when a setting wasn't saved (the shuffle logs it).
    void saved(bool saved);

    QPointer<Shuffle> m_shuffle;
    NoticePresenter *m_notice;
    // "today" turns into "tomorrow" at midnight without the date changing.
    QTimer m_clock;
};
