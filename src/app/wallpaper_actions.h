#pragma once

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QUrl>

class Displays;
class Favourites;
class NoticePresenter;
class Shop;
class WallpaperRequests;

// What the views ask of the store, the set requests, the displays and the favourites: setting a
// colourway, going back, hearts, saving and removing files. Each failure is worded on the notice
// line.
class WallpaperActions : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool canGoBack READ canGoBack NOTIFY historyChanged)
    Q_PROPERTY(bool isGoingBack READ isGoingBack NOTIFY historyChanged)
    // Colourway keys being set now, while their files download.
    Q_PROPERTY(QStringList setting READ setting NOTIFY settingChanged)
    Q_PROPERTY(bool canRemoveDownloads READ canRemoveDownloads NOTIFY downloadsChanged)
    Q_PROPERTY(bool isRemoving READ isRemoving NOTIFY downloadsChanged)
    // "Downloaded wallpapers": the room the downloads take, in the user's units.
    Q_PROPERTY(QString downloadedSize READ downloadedSize NOTIFY downloadsChanged)
    Q_PROPERTY(bool hasDownloads READ hasDownloads NOTIFY downloadsChanged)
    Q_PROPERTY(bool usesOnAllWorkspaces READ usesOnAllWorkspaces WRITE setUsesOnAllWorkspaces NOTIFY
                   usesOnAllWorkspacesChanged)

public:
    struct Services {
        Shop *shop = nullptr;
        WallpaperRequests *requests = nullptr;
        Displays *displays = nullptr;
        Favourites *favourites = nullptr;
        NoticePresenter *notice = nullptr;
    };

    explicit WallpaperActions(Services services, QObject *parent = nullptr);

    [[nodiscard]] bool canGoBack() const;
    [[nodiscard]] bool isGoingBack() const;
    [[nodiscard]] QStringList setting() const { return m_setting; }
    [[nodiscard]] bool canRemoveDownloads() const;
    [[nodiscard]] bool isRemoving() const { return m_removing; }
    [[nodiscard]] QString downloadedSize() const;
    [[nodiscard]] bool hasDownloads() const { return m_downloadedBytes > 0; }
    [[nodiscard]] bool usesOnAllWorkspaces() const;
    void setUsesOnAllWorkspaces(bool on);

    // Sets a colourway on the displays listed (none: every display). An empty edition is the one
    // the first of them shows now, else "appearance".
    Q_INVOKABLE void setWallpaper(const QString &pack, const QString &colourway,
                                  const QString &edition, const QStringList &displayIds);
    // Puts what one display shows on every display.
    Q_INVOKABLE void setOnAllDisplays(const QString &displayId);
    Q_INVOKABLE void goBack();
    Q_INVOKABLE void toggleFavourite(const QString &pack, const QString &colourway);
    Q_INVOKABLE void markSeen(const QString &pack);
    Q_INVOKABLE void saveDesktopFiles(const QString &pack);
    Q_INVOKABLE void removeDownloads();
    Q_INVOKABLE void openPage(const QUrl &url);

Q_SIGNALS:
    void historyChanged();
    void settingChanged();
    void downloadsChanged();
    void usesOnAllWorkspacesChanged();
    // A set asked for in a view reached its displays, or failed (its download included).
    void wallpaperSet();
    void setFailed();

private:
    static QCoro::Task<> set(QPointer<WallpaperActions> self, QString pack, QString colourway,
                             QString edition, QStringList displayIds);
    static QCoro::Task<> goBack(QPointer<WallpaperActions> self);
    static QCoro::Task<> removeDownloads(QPointer<WallpaperActions> self);
    // Sums the downloads off the main thread; the folder may hold gigabytes in many files.
    void measure();
    void failed(const std::exception &error, const char *what);

    QPointer<Shop> m_shop;
    QPointer<WallpaperRequests> m_requests;
    QPointer<Displays> m_displays;
    QPointer<Favourites> m_favourites;
    NoticePresenter *m_notice;
    QStringList m_setting;
    bool m_removing = false;
    qint64 m_downloadedBytes = 0;
    int m_measuring = 0; // the latest measurement wins
};
