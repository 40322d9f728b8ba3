#pragma once

#include "owned_pack.h"
#include "shuffle_store.h"
#include "wallpaper_setter.h"

#include <QColor>
#include <QDateTime>
#include <QImage>
#include <QProcess>

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

// The colour in the middle of a picture the desktop was given.
inline QColor middleOf(const QString &picture)
{
    const QImage image(picture);
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

// Close enough for a picture scaled to the screen.
inline bool near(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) < 24 && qAbs(a.green() - b.green()) < 24
        && qAbs(a.blue() - b.blue()) < 24;
}

// A key of org.gnome.desktop.background as another program reads it.
inline QString gsettings(const QString &key)
{
    QProcess process;
    process.start(QStringLiteral("gsettings"),
                  { QStringLiteral("get"), QStringLiteral("org.gnome.desktop.background"), key });
    process.waitForFinished(30000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed().remove(u'\'');
}
