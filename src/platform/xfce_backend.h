#pragma once

#include "desktop_backend.h"

#include <QDBusConnection>
// Complete, so that D-Bus can match the slot that takes it.
#include <QDBusMessage>
#include <QHash>

class X11RootWindow;

// XFCE: xfdesktop's backdrop settings in xfconf, over D-Bus. One picture per monitor and per
// workspace; Quennet sets every workspace of a monitor and reads back the one shown: the
// single-workspace mode's workspace, else the current one, as the window manager tells on X11.
// The backdrop settings are read without waiting, at start and before each set, and kept
// current from xfconf's change signals; picture() answers from them.
class XfceBackend : public DesktopBackend {
    Q_OBJECT

public:
    explicit XfceBackend(QDBusConnection bus, QObject *parent = nullptr);

    [[nodiscard]] static bool isXfce(const QString &currentDesktop);

    [[nodiscard]] QString name() const override;
    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] std::optional<QString> picture(const DesktopScreen &screen) const override;
    // Without xfdesktop's single-workspace mode ("/backdrop/single-workspace-mode" false).
    [[nodiscard]] bool keepsPicturePerWorkspace() const override;
    QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) override;
    // Emits picturesChanged when the answer differs from what was known.
    QCoro::Task<> readBack() override;

private Q_SLOTS:
    void propertyChanged(const QDBusMessage &message);
    void propertyRemoved(const QDBusMessage &message);

private:
    void take(QVariantMap backdrop);
    // The "last-image" properties of a monitor's workspaces: those xfconf has, and those of every
    // workspace the window manager counts, the shown one included.
    [[nodiscard]] QStringList imageProperties(const QString &connector) const;
    // The workspace whose picture shows.
    [[nodiscard]] int shownWorkspace() const;

    QDBusConnection m_bus;
    X11RootWindow *m_root;
    // Every property under "/backdrop", as last heard.
    QVariantMap m_backdrop;
};
