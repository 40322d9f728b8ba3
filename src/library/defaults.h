#pragma once

#include <QDateTime>
#include <QSettings>
#include <QStringList>
#include <QUrl>

#include <optional>

// The user's settings: the system's keys over an INI file. Each layer adds typed accessors for
// the keys it owns; a missing or malformed value reads as the key's default.
class Defaults
{
public:
    // $XDG_CONFIG_HOME/app.quennet.Quennet/defaults.ini
    Defaults();
    // Tests give each case its own file.
    explicit Defaults(const QString &path);

    [[nodiscard]] static QString defaultPath();
    [[nodiscard]] static QUrl productionShopURL();

    // "shopBaseURL": the service root, for development; the production shop when unset or not an
    // absolute http(s) URL with a host.
    [[nodiscard]] QUrl shopBaseURL() const;

    // "shopCertificates": a PEM file whose certificates are trusted besides the system's.
    [[nodiscard]] std::optional<QString> shopCertificates() const;

    // The shuffle's settings. Interval and source are kept as their raw text; the shuffle reads
    // an unknown text as its default.
    [[nodiscard]] bool shuffleIsOn() const;
    void setShuffleIsOn(bool on);
    [[nodiscard]] QString shuffleInterval() const;
    void setShuffleInterval(const QString &raw);
    [[nodiscard]] QString shuffleSource() const;
    void setShuffleSource(const QString &raw);
    [[nodiscard]] bool shuffleDifferentOnEachDisplay() const;
    void setShuffleDifferentOnEachDisplay(bool on);
    // ISO 8601 text; none when absent or unreadable.
    [[nodiscard]] std::optional<QDateTime> shuffleAnchor() const;
    void setShuffleAnchor(const QDateTime &anchor);
    // Colourway keys played in the current round.
    [[nodiscard]] QStringList shufflePlayed() const;
    void setShufflePlayed(const QStringList &keys);

    // The Do Not Disturb wallpaper's record and the restores still to do, as JSON data; empty
    // data removes the key.
    [[nodiscard]] QByteArray focusWallpaper() const;
    void setFocusWallpaper(const QByteArray &json);
    [[nodiscard]] QByteArray focusRestores() const;
    void setFocusRestores(const QByteArray &json);

    // The Do Not Disturb wallpaper setting: "focusFilterWallpaper", a colourway key (empty: none),
    // and "focusFilterEdition", an edition option's raw value (empty: automatic).
    [[nodiscard]] QString focusFilterWallpaper() const;
    void setFocusFilterWallpaper(const QString &key);
    [[nodiscard]] QString focusFilterEdition() const;
    void setFocusFilterEdition(const QString &raw);

    // "helperStartedByBuild": the build that last registered the workspace helper; none when
    // absent.
    [[nodiscard]] std::optional<QString> helperStartedByBuild() const;
    void setHelperStartedByBuild(const QString &build);

    // "favouriteColourways": colourway keys, newest first. Anything but a list of text reads as
    // empty; INI keeps a one-item list as plain text, which counts when it is a colourway key.
    [[nodiscard]] QStringList favouriteColourways() const;
    void setFavouriteColourways(const QStringList &keys);

    // "checksForNewFiles": whether the library is checked every six hours; on when absent.
    [[nodiscard]] bool checksForNewFiles() const;
    void setChecksForNewFiles(bool on);

    // "showsUnreleasedPacks": whether packs whose files are not out yet are listed; off when absent.
    [[nodiscard]] bool showsUnreleasedPacks() const;
    void setShowsUnreleasedPacks(bool on);

    // "seenColourways": pack slug to the colourway slugs the user has been shown.
    [[nodiscard]] QMap<QString, QStringList> seenColourways() const;
    void setSeenColourways(const QMap<QString, QStringList> &seen);

private:
    [[nodiscard]] std::optional<QString> string(QAnyStringView key) const;
    [[nodiscard]] bool boolean(QAnyStringView key, bool fallback) const;
    [[nodiscard]] QStringList strings(QAnyStringView key) const;

    QSettings m_settings;
};
