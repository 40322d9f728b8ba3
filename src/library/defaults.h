#pragma once

#include "error.h"

#include <QDateTime>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>
#include <optional>

// The user's settings: the system's keys over an INI file. Each layer adds typed accessors for
// the keys it owns; a missing or malformed value reads as the key's default.
//
// The file is read once and every change is written at once, whole, through writeAtomically():
// QSettings' own writing reports a short write on a full disk as success. A setter returns
// whether its change was saved; when it wasn't, the file and this object both keep the values
// from before, so a later save cannot bring back a change the user was told failed. A save
// builds on the file as it is when someone else (another Defaults, a person) has changed it;
// until then, this object still reads the values it last read or wrote.
class Defaults {
public:
    // What the user is told when a setting couldn't be saved.
    class NotSaved : public Error {
    public:
        [[nodiscard]] QString description() const override;
    };

    // $XDG_CONFIG_HOME/app.quennet.Quennet/defaults.ini
    Defaults();
    // Tests give each case its own file.
    explicit Defaults(QString path);

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
    [[nodiscard]] bool setShuffleIsOn(bool on);
    [[nodiscard]] QString shuffleInterval() const;
    [[nodiscard]] bool setShuffleInterval(const QString &raw);
    [[nodiscard]] QString shuffleSource() const;
    [[nodiscard]] bool setShuffleSource(const QString &raw);
    [[nodiscard]] bool shuffleDifferentOnEachDisplay() const;
    [[nodiscard]] bool setShuffleDifferentOnEachDisplay(bool on);
    // ISO 8601 text; none when absent or unreadable.
    [[nodiscard]] std::optional<QDateTime> shuffleAnchor() const;
    [[nodiscard]] bool setShuffleAnchor(const QDateTime &anchor);
    // Colourway keys played in the current round.
    [[nodiscard]] QStringList shufflePlayed() const;
    [[nodiscard]] bool setShufflePlayed(const QStringList &keys);

    // The Do Not Disturb wallpaper's record and the restores still to do, as JSON data; empty
    // data removes the key.
    [[nodiscard]] QByteArray focusWallpaper() const;
    [[nodiscard]] bool setFocusWallpaper(const QByteArray &json);
    [[nodiscard]] QByteArray focusRestores() const;
    [[nodiscard]] bool setFocusRestores(const QByteArray &json);

    // The Do Not Disturb wallpaper setting: "focusFilterWallpaper", a colourway key (empty: none),
    // and "focusFilterEdition", an edition option's raw value (empty: automatic).
    [[nodiscard]] QString focusFilterWallpaper() const;
    [[nodiscard]] QString focusFilterEdition() const;
    // Both in one save.
    [[nodiscard]] bool setFocusFilter(const QString &key, const QString &edition);

    // "helperStartedByBuild": the build that last registered the workspace helper; none when
    // absent.
    [[nodiscard]] std::optional<QString> helperStartedByBuild() const;
    [[nodiscard]] bool setHelperStartedByBuild(const QString &build);

    // "favouriteColourways": colourway keys, newest first. Anything but a list of text reads as
    // empty; INI keeps a one-item list as plain text, which counts when it is a colourway key.
    [[nodiscard]] QStringList favouriteColourways() const;
    [[nodiscard]] bool setFavouriteColourways(const QStringList &keys);

    // "checksForNewFiles": whether the library is checked every six hours; on when absent.
    [[nodiscard]] bool checksForNewFiles() const;
    [[nodiscard]] bool setChecksForNewFiles(bool on);

    // "showsUnreleasedPacks": whether packs whose files are not out yet are listed; off when
    // absent.
    [[nodiscard]] bool showsUnreleasedPacks() const;
    [[nodiscard]] bool setShowsUnreleasedPacks(bool on);

    // "hasLaunchedBefore": whether the user has opened Quennet and been welcomed; off when absent.
    [[nodiscard]] bool hasLaunchedBefore() const;
    [[nodiscard]] bool setHasLaunchedBefore(bool launched);
    // "lastOpenedVersion": the version the user last opened; none when absent.
    [[nodiscard]] std::optional<QString> lastOpenedVersion() const;
    [[nodiscard]] bool setLastOpenedVersion(const QString &version);
    // "showsWhatsNew": whether the changes come up after an update; on when absent.
    [[nodiscard]] bool showsWhatsNew() const;
    [[nodiscard]] bool setShowsWhatsNew(bool on);
    // "playsFeedbackSounds": whether a set, a failure or a sign-in is heard; on when absent.
    [[nodiscard]] bool playsFeedbackSounds() const;
    [[nodiscard]] bool setPlaysFeedbackSounds(bool on);

    // "seenColourways": pack slug to the colourway slugs the user has been shown.
    [[nodiscard]] QMap<QString, QStringList> seenColourways() const;
    [[nodiscard]] bool setSeenColourways(const QMap<QString, QStringList> &seen);

private:
    void load();
    // Applies the changes (an invalid value removes its key) and writes the whole file.
    [[nodiscard]] bool save(const QVariantMap &changes);
    [[nodiscard]] bool save(const QString &key, const QVariant &value)
    {
        return save({ { key, value } });
    }

    [[nodiscard]] std::optional<QString> string(const QString &key) const;
    [[nodiscard]] bool boolean(const QString &key, bool fallback) const;
    [[nodiscard]] QStringList strings(const QString &key) const;

    QString m_path;
    // As QSettings reads them from the file.
    QVariantMap m_values;
    // The file's content when last read or written.
    QByteArray m_known;
};
