#pragma once

#include "owned_pack.h"
#include "pixels.h"
#include "shuffle_store.h"
#include "test_files.h"
#include "wallpaper_setter.h"

#include <QDateTime>

// The sample file of each listed colourway in the edition asked for, handed straight to the
// displays: the store's own path (links, downloads) has tests of its own.
class SampleStore : public ShuffleStore {
public:
    SampleStore(WallpaperSetter *setter, const QList<std::pair<QString, QString>> &colourways)
        : m_setter(setter)
    {
        for (const auto &[pack, colourway] : colourways)
            m_choices.append(
                { .pack = { .slug = pack,
                            .name = pack,
                            .colourways = { { .slug = colourway, .name = colourway } } },
                  .colourway = { .slug = colourway, .name = colourway } });
    }

    [[nodiscard]] QList<ShuffleChoice> choices() const override { return m_choices; }
    [[nodiscard]] bool isDownloaded(const ShuffleChoice &, Edition) const override { return true; }

    QCoro::Task<> setWallpaper(ShuffleChoice choice, Edition edition,
                               QStringList displayIds) override
    {
        const WallpaperFile file { .id = QStringLiteral("f_") + choice.colourway.slug + u'_'
                                       + rawValue(edition),
                                   .pack = choice.pack.slug,
                                   .colourway = choice.colourway.slug,
                                   .edition = edition };
        const Placement placement { .pack = file.pack,
                                    .colourway = file.colourway,
                                    .edition = rawValue(file.edition),
                                    .setAt = QDateTime::currentMSecsSinceEpoch() };
        co_await m_setter->setWallpaper(
            file, path(choice.pack.slug, choice.colourway.slug, edition), placement, displayIds);
    }

    [[nodiscard]] ShuffleChoice choice(const QString &colourway) const
    {
        for (const auto &choice : m_choices) {
            if (choice.colourway.slug == colourway)
                return choice;
        }
        return {};
    }

    static QString path(const QString &pack, const QString &colourway, Edition edition)
    {
        return QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/") + pack + u'/' + colourway + u'-'
            + rawValue(edition) + QStringLiteral(".heic");
    }

private:
    WallpaperSetter *m_setter;
    QList<ShuffleChoice> m_choices;
};
