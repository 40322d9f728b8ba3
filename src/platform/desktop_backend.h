#pragma once

#include "error.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <QRect>
#include <functional>
#include <optional>

// One screen as the desktop lists it. Qt's screen geometry already has a top-left origin.
struct DesktopScreen {
    QString connector; // "DP-1", "DUMMY0"
    QString manufacturer; // from the EDID, empty when the screen has none
    QString model;
    QString serial;
    QRect geometry; // in the virtual desktop
    QSize pixels; // in device pixels; empty where they are geometry's own

    bool operator==(const DesktopScreen &) const = default;
};

// What the desktop is given to show: a picture, or a timed slideshow file, with an optional
// picture for dark mode on desktops that keep a light/dark pair.
struct DesktopPicture {
    QString path;
    std::optional<QString> dark;
    // For a slideshow: the picture due now, for desktops that must draw it themselves.
    std::optional<QString> still;

    [[nodiscard]] QString stillPath() const { return still.value_or(path); }

    bool operator==(const DesktopPicture &) const = default;
};

// The desktop refused a picture, or its settings could not be reached; the desktop's own words.
// A desktop asked screen by screen may have taken the picture on some before it refused.
class DesktopError : public Error {
public:
    explicit DesktopError(QString description, QStringList changedConnectors = {});

    [[nodiscard]] QString description() const override { return m_description; }
    // The screens that show the new picture all the same.
    [[nodiscard]] QStringList changedConnectors() const { return m_changed; }

    bool operator==(const DesktopError &other) const
    {
        return m_description == other.m_description;
    }

private:
    QString m_description;
    QStringList m_changed;
};

// The one way to the desktop's wallpaper: which screens there are, what each shows, setting a
// picture on some of them, and hearing about changes made elsewhere. One subclass per desktop
// family; capabilities() says what that family can do.
class DesktopBackend : public QObject {
    Q_OBJECT

public:
    enum class Capability {
        PerDisplay = 0x1, // a different picture on each screen
        ReadBack = 0x2, // the desktop tells what it shows, whoever set it
        LightDarkPair = 0x4, // the desktop switches between a light and a dark picture itself
        TimedSlideshow = 0x8, // the desktop follows a timed slideshow file itself
        Workspaces = 0x10, // reports workspace switches
    };
    Q_DECLARE_FLAGS(Capabilities, Capability)

    explicit DesktopBackend(QObject *parent = nullptr);
    ~DesktopBackend() override;

    [[nodiscard]] virtual QString name() const = 0;
    [[nodiscard]] virtual Capabilities capabilities() const = 0;
    // File suffixes the desktop draws; anything else is rendered first.
    [[nodiscard]] virtual QStringList imageFormats() const;

    // In the desktop's order, the primary screen first. By default Qt's list.
    [[nodiscard]] virtual QList<DesktopScreen> screens() const;

    // The file a screen shows as far as the desktop can tell: read back where it can, else the
    // last picture this backend set there while nothing has changed it since. None when it shows
    // something else or nothing is known.
    [[nodiscard]] virtual std::optional<QString> picture(const DesktopScreen &screen) const = 0;

    // What a thumbnail of the screen shows in light or dark: where the desktop switches a
    // light/dark pair or follows a slideshow itself, the picture it puts up, not the file it
    // was given. By default picture().
    [[nodiscard]] virtual std::optional<QString> thumbnail(const DesktopScreen &screen,
                                                           bool dark) const
    {
        Q_UNUSED(dark);
        return picture(screen);
    }

    // Whether the desktop keeps a picture of its own for each workspace, so that what Quennet set
    // can be lost on a switch: the workspace helper keeps it then. False by default.
    [[nodiscard]] virtual bool keepsPicturePerWorkspace() const { return false; }

    // Throws DesktopError.
    virtual QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) = 0;

    // Reads again what the desktop shows, where picture() answers from the last reading (Plasma,
    // XFCE); done when the answer is in. Never throws. Elsewhere there is nothing to read.
    virtual QCoro::Task<> readBack() { co_return; }

Q_SIGNALS:
    void screensChanged();
    // Something may have changed a picture: another program or the desktop's own settings.
    void picturesChanged();
    void workspaceChanged();

protected:
    // Emits screensChanged for Qt's screen signals; backends that list screens otherwise don't.
    void followQtScreens();
    // Calls changed instead: backends that ask their desktop for its screens ask again then.
    void followQtScreens(const std::function<void()> &changed);
};

Q_DECLARE_OPERATORS_FOR_FLAGS(DesktopBackend::Capabilities)
