#pragma once

#include "edition_option.h"

#include <QObject>
#include <QPointer>
#include <QVariantList>

class Defaults;
class DoNotDisturb;
class FocusWallpaper;
class ShuffleStore;

// The Do Not Disturb wallpaper: the setting ("focusFilterWallpaper", "focusFilterEdition") and
// what carries it out. While the desktop's Do Not Disturb is on, the focus wallpaper shows the
// chosen wallpaper; when it turns off, or the setting is cleared, it puts back what was there.
class FocusFilter : public QObject {
    Q_OBJECT
    // The chosen colourway's key; empty for none.
    Q_PROPERTY(QString wallpaper READ wallpaper WRITE setWallpaper NOTIFY filterChanged)
    // An edition option's raw value: "automatic", "timeOfDay", "light" or "dark".
    Q_PROPERTY(QString edition READ edition WRITE setEdition NOTIFY filterChanged)
    // "No wallpaper", or the chosen colourway with its pack (and edition).
    Q_PROPERTY(QString summary READ summary NOTIFY summaryChanged)
    // What the pickers offer: {key, name, packName} per colourway, and {value, label} per edition.
    Q_PROPERTY(QVariantList wallpaperOptions READ wallpaperOptions NOTIFY summaryChanged)
    Q_PROPERTY(QVariantList editionOptions READ editionOptions CONSTANT)
    Q_PROPERTY(bool isDoNotDisturbOn READ isDoNotDisturbOn NOTIFY doNotDisturbChanged)

public:
    FocusFilter(Defaults *defaults, DoNotDisturb *watcher, FocusWallpaper *focus,
                ShuffleStore *store, QObject *parent = nullptr);

    // Tells the focus wallpaper the state Do Not Disturb is in now, and follows it from then on.
    void start();

    [[nodiscard]] QString wallpaper() const { return m_wallpaper; }
    [[nodiscard]] QString edition() const { return m_edition; }
    [[nodiscard]] QString summary() const;
    [[nodiscard]] QVariantList wallpaperOptions() const;
    [[nodiscard]] static QVariantList editionOptions();
    [[nodiscard]] bool isDoNotDisturbOn() const;

    // As the settings pane sets them: notSaved() when the setting couldn't be saved.
    void setWallpaper(const QString &key);
    // An unknown option is ignored.
    void setEdition(const QString &option);
    // Both at once, as automation sets them: "" wallpaper is none. False, changing nothing, when
    // the setting couldn't be saved.
    [[nodiscard]] bool setFilter(const QString &wallpaper, EditionOption edition);

Q_SIGNALS:
    void filterChanged();
    void notSaved();
    void summaryChanged();
    void doNotDisturbChanged();

private:
    void apply();

    Defaults *m_defaults;
    QPointer<DoNotDisturb> m_watcher;
    QPointer<FocusWallpaper> m_focus;
    QPointer<ShuffleStore> m_store;
    QString m_wallpaper;
    QString m_edition;
    bool m_started = false;
};
