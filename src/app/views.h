#pragma once

#include <QVariantMap>
#include <QtPlugin>
#include <functional>

class QObject;
class QWindow;

// The tray panel's window as its controller drives it.
class PanelSurface {
public:
    struct Events {
        std::function<void()> focusTaken;
        std::function<void()> resignedFocus;
        // Escape, or a click beside the panel where it covers the work area.
        std::function<void()> cancelled;
        // The content asked to close, after a choice made in it.
        std::function<void()> closeRequested;
        std::function<void(double height)> contentHeightChanged;
    };

    virtual ~PanelSurface() = default;

    [[nodiscard]] virtual QWindow *window() = 0;
    // What fades where the window has no opacity of its own (Wayland).
    [[nodiscard]] virtual QObject *content() = 0;
    // The panel is as tall as its content, and only the content changes that.
    virtual void fitHeight(int height) = 0;
    // Shown maximised over the work area, clear but for the panel at its top right, so that a
    // click anywhere else closes it: for a shell that places windows itself and tells a window
    // nothing of a click on the desktop.
    virtual void setOverWorkArea(bool over) = 0;
};

// What draws Quennet's windows and its panel. It lives in a module of its own, loaded at the
// first view: a session that only sits in the tray never maps Qt Quick. Deleting it lets go of
// its engine; the windows it made must be gone by then.
class Views {
public:
    virtual ~Views() = default;

    // The named view (MainWindow, SettingsWindow, ...) as a hidden window the caller owns, its
    // root given roots; nullptr, with the reason logged, when it does not load.
    [[nodiscard]] virtual QWindow *window(const QString &view, const QVariantMap &roots) = 0;
    // The tray panel, hidden, which the caller owns; nullptr, with the reason logged, when it
    // does not load.
    [[nodiscard]] virtual PanelSurface *panel(const QVariantMap &roots,
                                              PanelSurface::Events events) = 0;
};

// The module's entry: makes the views.
class ViewsFactory {
public:
    virtual ~ViewsFactory() = default;
    [[nodiscard]] virtual Views *makeViews() = 0;
};

#define ViewsFactory_iid "app.quennet.Quennet.ViewsFactory/1"
Q_DECLARE_INTERFACE(ViewsFactory, ViewsFactory_iid)
