#include "logging.h"

Q_LOGGING_CATEGORY(lcPlacements, "app.quennet.Quennet.Placements")

Q_LOGGING_CATEGORY(lcAccount, "app.quennet.Quennet.Account")
Q_LOGGING_CATEGORY(lcKeychain, "app.quennet.Quennet.Keychain")
Q_LOGGING_CATEGORY(lcNetwork, "app.quennet.Quennet.Network")
Q_LOGGING_CATEGORY(lcShop, "app.quennet.Quennet.Shop")

Q_LOGGING_CATEGORY(lcDownloads, "app.quennet.Quennet.Downloads")
Q_LOGGING_CATEGORY(lcRendering, "app.quennet.Quennet.Rendering")

Q_LOGGING_CATEGORY(lcDesktop, "app.quennet.Quennet.Desktop")
Q_LOGGING_CATEGORY(lcDesktopRecord, "app.quennet.Quennet.Desktop.Record")
Q_LOGGING_CATEGORY(lcGSettings, "app.quennet.Quennet.Desktop.GSettings")
Q_LOGGING_CATEGORY(lcHyprland, "app.quennet.Quennet.Desktop.Hyprland")
Q_LOGGING_CATEGORY(lcPlasma, "app.quennet.Quennet.Desktop.Plasma")
Q_LOGGING_CATEGORY(lcPortal, "app.quennet.Quennet.Desktop.Portal")
Q_LOGGING_CATEGORY(lcSway, "app.quennet.Quennet.Desktop.Sway")
Q_LOGGING_CATEGORY(lcX11, "app.quennet.Quennet.Desktop.X11")
Q_LOGGING_CATEGORY(lcXfce, "app.quennet.Quennet.Desktop.Xfce")
Q_LOGGING_CATEGORY(lcDoNotDisturb, "app.quennet.Quennet.DoNotDisturb")
Q_LOGGING_CATEGORY(lcNotifications, "app.quennet.Quennet.Notifications")
Q_LOGGING_CATEGORY(lcSleep, "app.quennet.Quennet.Sleep")
Q_LOGGING_CATEGORY(lcSounds, "app.quennet.Quennet.Sounds")
Q_LOGGING_CATEGORY(lcSpacesProcess, "app.quennet.Quennet.Spaces.Process")

Q_LOGGING_CATEGORY(lcDisplays, "app.quennet.Quennet.Displays")
Q_LOGGING_CATEGORY(lcFavourites, "app.quennet.Quennet.Favourites")
Q_LOGGING_CATEGORY(lcFollowing, "app.quennet.Quennet.Following")
Q_LOGGING_CATEGORY(lcShuffle, "app.quennet.Quennet.Shuffle")
Q_LOGGING_CATEGORY(lcSpaces, "app.quennet.Quennet.Spaces")
Q_LOGGING_CATEGORY(lcSpacesHelper, "app.quennet.Quennet.Spaces.Helper")
Q_LOGGING_CATEGORY(lcWallpaper, "app.quennet.Quennet.Wallpaper")

Q_LOGGING_CATEGORY(lcAutomation, "app.quennet.Quennet.Automation")

Q_LOGGING_CATEGORY(lcApp, "app.quennet.Quennet.App")
Q_LOGGING_CATEGORY(lcApplication, "app.quennet.Quennet.Application")
Q_LOGGING_CATEGORY(lcArt, "app.quennet.Quennet.Art")
Q_LOGGING_CATEGORY(lcInstance, "app.quennet.Quennet.Instance")
Q_LOGGING_CATEGORY(lcLoginItem, "app.quennet.Quennet.LoginItem")
Q_LOGGING_CATEGORY(lcShuffleView, "app.quennet.Quennet.ShuffleView")
Q_LOGGING_CATEGORY(lcViews, "app.quennet.Quennet.Views")
