#pragma once

#include "error.h"
#include "placement.h"

#include <QDateTime>
#include <QMap>
#include <optional>

// What the Do Not Disturb wallpaper was put over, display by display, so that it can be put back
// when Do Not Disturb ends. Stored as JSON under "focusWallpaper" while the wallpaper is on; its
// entries under "focusRestores" while they wait to be put back.
struct FocusRecord {
    // What a display showed before: one of the user's wallpapers, or a picture of its own. Both
    // absent: nothing is known to put back.
    struct Previous {
        std::optional<Placement> placement;
        std::optional<QString> path;

        bool operator==(const Previous &) const = default;
    };

    struct Entry {
        Previous previous;
        // When the Do Not Disturb wallpaper was set on the display; invalid while it never was.
        QDateTime focusSetAt;

        bool operator==(const Entry &) const = default;
    };

    // By display id.
    using Entries = QMap<QString, Entry>;

    // A saved picture cannot be put back: its file is gone and it is none of the user's
    // wallpapers, or the store no longer has it.
    class CannotRestore : public Error {
    public:
        explicit CannotRestore(QString description);

        [[nodiscard]] QString description() const override { return m_description; }

        bool operator==(const CannotRestore &other) const
        {
            return m_description == other.m_description;
        }

    private:
        QString m_description;
    };

    QString wallpaper; // the colourway key the Do Not Disturb setting names
    QString edition; // the Edition raw value it was set with
    Entries entries;

    // None for empty or damaged data: there is then nothing to go on.
    [[nodiscard]] static std::optional<FocusRecord> decode(const QByteArray &json);
    [[nodiscard]] QByteArray encode() const;
    // "focusRestores": empty for empty or damaged data; empty data for no entries.
    [[nodiscard]] static Entries decodeEntries(const QByteArray &json);
    [[nodiscard]] static QByteArray encode(const Entries &entries);

    bool operator==(const FocusRecord &) const = default;
};
