#pragma once

#include <QObject>

// Whether the desktop's Do Not Disturb is on, and a signal when that changes: the Linux form of
// a Focus. One subclass per way desktops keep it; DoNotDisturbWatchers::make picks one.
class DoNotDisturb : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isOn READ isOn NOTIFY changed)

public:
    explicit DoNotDisturb(QObject *parent = nullptr);

    [[nodiscard]] virtual QString name() const = 0;
    [[nodiscard]] bool isOn() const { return m_on; }
    // False until the desktop has answered once; isOn() is false meanwhile.
    [[nodiscard]] bool isKnown() const { return m_known; }

Q_SIGNALS:
    void changed();

protected:
    // Emits changed() for a change, and for the first answer.
    void setOn(bool on);

private:
    bool m_on = false;
    bool m_known = false;
};

// A desktop without a Do Not Disturb Quennet knows: it never turns on.
class NoDoNotDisturb : public DoNotDisturb {
    Q_OBJECT

public:
    explicit NoDoNotDisturb(QObject *parent = nullptr);

    [[nodiscard]] QString name() const override;
};
