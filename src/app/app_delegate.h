#pragma once

#include "account.h"
#include "login_item.h"
#include "notice_presenter.h"
#include "view_engine.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QVariantList>
#include <memory>

class ArtCache;
class AutomationService;
class Clock;
class ColourScheme;
class Defaults;
class DesktopNotifications;
class Displays;
class DownloadThread;
class Favourites;
class FeedbackSounds;
class FocusFilter;
class FocusWallpaper;
class Greeting;
class Intents;
class Keychain;
class LibraryStatus;
class NetworkAccessManager;
class Shop;
class Shuffle;
class ShuffleStore;
class SpacesHelper;
class WallpaperSetter;
class Following;
class HeicDecoder;
class LogindSleepWatcher;
class QIcon;
class QWindow;
class SessionActions;
class ShuffleView;
class StatusItemController;
class WallpaperActions;
class WallpaperRequests;

// The composition root: builds the long-lived objects in start-up order, owns them for the life
// of the process, and gives the views what they show.
class AppDelegate : public QObject {
    Q_OBJECT
    Q_MOC_INCLUDE("art_cache.h")
    Q_MOC_INCLUDE("displays.h")
    Q_MOC_INCLUDE("library_status.h")
    Q_MOC_INCLUDE("session_actions.h")
    Q_MOC_INCLUDE("favourites.h")
    Q_MOC_INCLUDE("feedback_sounds.h")
    Q_MOC_INCLUDE("greeting.h")
    Q_MOC_INCLUDE("shop.h")
    Q_MOC_INCLUDE("shuffle.h")
    Q_MOC_INCLUDE("spaces_helper.h")
    Q_MOC_INCLUDE("focus_filter.h")
    Q_MOC_INCLUDE("shuffle_view.h")
    Q_MOC_INCLUDE("wallpaper_actions.h")
    Q_PROPERTY(Account *account READ account CONSTANT)
    Q_PROPERTY(LoginItem *loginItem READ loginItem CONSTANT)
    Q_PROPERTY(NoticePresenter *notice READ notice CONSTANT)
    Q_PROPERTY(Shop *shop READ shop CONSTANT)
    Q_PROPERTY(Displays *displays READ displays CONSTANT)
    Q_PROPERTY(Favourites *favourites READ favourites CONSTANT)
    Q_PROPERTY(Shuffle *shuffle READ shuffle CONSTANT)
    Q_PROPERTY(SpacesHelper *spacesHelper READ spacesHelper CONSTANT)
    Q_PROPERTY(FocusFilter *focusFilter READ focusFilter CONSTANT)
    Q_PROPERTY(WallpaperActions *actions READ actions CONSTANT)
    Q_PROPERTY(ShuffleView *shuffleView READ shuffleView CONSTANT)
    Q_PROPERTY(bool dark READ isDark NOTIFY darkChanged)
    Q_PROPERTY(LibraryStatus *library READ library CONSTANT)
    Q_PROPERTY(ArtCache *artCache READ artCache CONSTANT)
    Q_PROPERTY(SessionActions *session READ session CONSTANT)
    Q_PROPERTY(Greeting *greeting READ greeting CONSTANT)
    Q_PROPERTY(FeedbackSounds *sounds READ sounds CONSTANT)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QVariantList acknowledgements READ acknowledgements CONSTANT)
    Q_PROPERTY(
        QString settingsPane READ settingsPane WRITE setSettingsPane NOTIFY settingsPaneChanged)

public:
    struct Options {
        bool atLogin = false; // started by the session's autostart or a bus call: no main window
        QString program; // what open-at-login starts
        bool selfTest = false; // the views are made and checked; nothing else starts
        bool sayIfNoTray = false; // started at login: a tray that is missing is worth a word
        // Makes the views at the first of them.
        ViewEngine::Maker makeViews;
        // How long no view may be visible before the views and their engine are let go.
        std::chrono::milliseconds viewsIdle = ViewEngine::defaultIdle;
    };

    explicit AppDelegate(Options options, QObject *parent = nullptr);
    ~AppDelegate() override;

    // The start-up sequence after the instance check.
    void start();
    // Makes every view once, without showing it; false when one fails to load.
    [[nodiscard]] bool selfTest();

    [[nodiscard]] Account *account() const { return m_account; }
    [[nodiscard]] LoginItem *loginItem() const { return m_loginItem; }
    [[nodiscard]] NoticePresenter *notice() const { return m_notice; }
    [[nodiscard]] Shop *shop() const { return m_shop; }
    [[nodiscard]] Displays *displays() const { return m_displays; }
    [[nodiscard]] Favourites *favourites() const { return m_favourites; }
    [[nodiscard]] Shuffle *shuffle() const { return m_shuffle; }
    [[nodiscard]] SpacesHelper *spacesHelper() const { return m_spaces; }
    [[nodiscard]] FocusFilter *focusFilter() const { return m_focusFilter; }
    [[nodiscard]] StatusItemController *statusItem() const { return m_statusItem; }
    [[nodiscard]] WallpaperActions *actions() const { return m_actions; }
    [[nodiscard]] ShuffleView *shuffleView() const { return m_shuffleView; }
    [[nodiscard]] ArtCache *artCache() const { return m_art; }
    // The desktop prefers dark.
    [[nodiscard]] bool isDark() const;
    [[nodiscard]] LibraryStatus *library() const { return m_library; }
    [[nodiscard]] SessionActions *session() const { return m_session; }
    [[nodiscard]] Greeting *greeting() const { return m_greeting; }
    [[nodiscard]] FeedbackSounds *sounds() const { return m_sounds; }
    [[nodiscard]] static QString version();
    [[nodiscard]] static QVariantList acknowledgements();
    [[nodiscard]] QString settingsPane() const { return m_settingsPane; }
    void setSettingsPane(const QString &pane);

    // The main window, after the welcome or what's new when either is due.
    Q_INVOKABLE void openMain();
    Q_INVOKABLE void openWelcome();
    // The whole changelog in the what's-new window.
    Q_INVOKABLE void openChangelog();
    Q_INVOKABLE void openSettings(const QString &pane = {});
    Q_INVOKABLE void closePanel();
    Q_INVOKABLE void quit();

Q_SIGNALS:
    void settingsPaneChanged();
    void darkChanged();

private:
    static QCoro::Task<> restoreSession(QPointer<AppDelegate> self);
    void startPlacement();
    void startStore();
    void startShuffle();
    void startFocusFilter();
    void startViews();
    void startNotifications();
    void startGreetingAndSounds();
    void openWhatsNew();
    void sayIfNoTray();
    void startAutomation();
    // The named view's window in slot, made by the views on first use; nullptr when it fails.
    [[nodiscard]] QWindow *window(QPointer<QWindow> &slot, const QString &view);
    // Made on first use, then shown in front.
    void present(QPointer<QWindow> &slot, const QString &view);
    // The tray's icon for the desktop's panel in the current scheme.
    [[nodiscard]] QIcon trayIcon() const;
    // The windows made so far.
    [[nodiscard]] QList<QWindow *> windows() const;
    [[nodiscard]] bool viewShown() const;
    // Deletes every view, so that the engine can go; the objects they bind to stay.
    void releaseViews();

    Options m_options;
    std::unique_ptr<Defaults> m_defaults;
    Keychain *m_keychain = nullptr;
    NetworkAccessManager *m_network = nullptr;
    Account *m_account = nullptr;
    std::shared_ptr<Clock> m_clock;
    // Loads its module at the first HEIC file, not at start.
    std::shared_ptr<const HeicDecoder> m_heic;
    Displays *m_displays = nullptr;
    ColourScheme *m_scheme = nullptr;
    WallpaperSetter *m_setter = nullptr;
    LogindSleepWatcher *m_sleep = nullptr;
    Following *m_following = nullptr;
    DownloadThread *m_downloads = nullptr;
    Shop *m_shop = nullptr;
    WallpaperRequests *m_requests = nullptr;
    LibraryStatus *m_library = nullptr;
    SessionActions *m_session = nullptr;
    Favourites *m_favourites = nullptr;
    FocusWallpaper *m_focusWallpaper = nullptr;
    Shuffle *m_shuffle = nullptr;
    SpacesHelper *m_spaces = nullptr;
    FocusFilter *m_focusFilter = nullptr;
    ShuffleStore *m_shuffleStore = nullptr;
    AutomationService *m_automation = nullptr;
    LoginItem *m_loginItem = nullptr;
    NoticePresenter *m_notice = nullptr;
    WallpaperActions *m_actions = nullptr;
    ShuffleView *m_shuffleView = nullptr;
    ArtCache *m_art = nullptr;
    ViewEngine *m_views = nullptr;
    StatusItemController *m_statusItem = nullptr;
    DesktopNotifications *m_notifications = nullptr;
    Greeting *m_greeting = nullptr;
    FeedbackSounds *m_sounds = nullptr;
    QPointer<QWindow> m_main;
    QPointer<QWindow> m_settings;
    QPointer<QWindow> m_welcome;
    QPointer<QWindow> m_whatsNew;
    QString m_settingsPane = QStringLiteral("general");
};
