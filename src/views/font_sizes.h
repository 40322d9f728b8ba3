#pragma once

#include <QObject>
#include <QtQmlIntegration>

// Text sizes as parts of the desktop's font, so that its scaling reaches every label. Made in
// C++: a singleton written in QML may not be loaded yet when compiled bindings first ask for it,
// and Qt 6.4's compiled lookups then wait for it forever.
class FontSizes : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(qreal base READ base NOTIFY changed)
    Q_PROPERTY(qreal tiny READ tiny NOTIFY changed)
    Q_PROPERTY(qreal small READ small NOTIFY changed)
    Q_PROPERTY(qreal caption READ caption NOTIFY changed)
    Q_PROPERTY(qreal heading READ heading NOTIFY changed)
    Q_PROPERTY(qreal subtitle READ subtitle NOTIFY changed)
    Q_PROPERTY(qreal title READ title NOTIFY changed)
    Q_PROPERTY(qreal code READ code NOTIFY changed)

public:
    explicit FontSizes(QObject *parent = nullptr);

    [[nodiscard]] qreal base() const;
    [[nodiscard]] qreal tiny() const { return base() * 0.8; }
    [[nodiscard]] qreal small() const { return base() * 0.85; }
    [[nodiscard]] qreal caption() const { return base() * 0.92; }
    [[nodiscard]] qreal heading() const { return base() * 1.15; }
    [[nodiscard]] qreal subtitle() const { return base() * 1.3; }
    [[nodiscard]] qreal title() const { return base() * 1.6; }
    [[nodiscard]] qreal code() const { return base() * 2.1; }

Q_SIGNALS:
    void changed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
