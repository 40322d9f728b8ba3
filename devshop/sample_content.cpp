#include "sample_content.h"

#include "atomic_file.h"
#include "desktop_metadata.h"
#include "file_digest.h"
#include "heic_writer.h"
#include "sample_archives.h"
#include "sample_catalogue.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QtConcurrent/QtConcurrentMap>
#include <QtEndian>
#include <algorithm>
#include <atomic>
#include <functional>

Q_LOGGING_CATEGORY(lcSample, "app.quennet.Quennet.DevShop.Sample")

using namespace Qt::Literals::StringLiterals;
using ScenePainter::Moment;

namespace SampleContent {
namespace {
struct Sizes {
    QSize wallpaper;
    QSize desktop;
    QSize thumbnail;
};

const QStringList editions { u"light"_s, u"dark"_s, u"appearance"_s, u"time-of-day"_s };
// A camera pack's pictures: a phone's twelve megapixels, one to a file. Editions of several
// pictures would make files of tens of megabytes.
const QSize cameraSize { 4032, 3024 };
const QStringList cameraEditions { u"light"_s, u"dark"_s };

// Sensor grain, the same on every run: it is what makes a camera's file several megabytes where
// the smooth painted scene alone compresses to a few hundred kilobytes.
QImage withGrain(QImage picture, quint32 seed)
{
    picture = picture.convertToFormat(QImage::Format_RGB888);
    quint32 state = seed | 1;
    for (int y = 0; y < picture.height(); ++y) {
        uchar *line = picture.scanLine(y);
        for (int x = 0; x < picture.width() * 3; x += 3) {
            // xorshift32: quick, and the same bytes everywhere.
            state ^= state << 13;
            state ^= state >> 17;
            state ^= state << 5;
            const int luma = int(state & 0x0f) - 8;
            for (int channel = 0; channel < 3; ++channel) {
                const int chroma = int((state >> (8 + channel * 4)) & 0x3) - 2;
                line[x + channel] = uchar(std::clamp(line[x + channel] + luma + chroma, 0, 255));
            }
        }
    }
    return picture;
}

// The pictures of an edition, in file order: the primary first.
QList<Moment> momentsOf(const QString &edition)
{
    if (edition == "light"_L1)
        return { Moment::Day };
    if (edition == "dark"_L1)
        return { Moment::Night };
    if (edition == "appearance"_L1)
        return { Moment::Day, Moment::Night };
    return { Moment::Day, Moment::Dawn, Moment::Dusk, Moment::Night };
}

QByteArray metadataOf(const QString &edition, bool solar)
{
    if (edition == "appearance"_L1)
        return DesktopMetadata::appearance(0, 1);
    if (edition != "time-of-day"_L1)
        return {};
    const QList<Moment> order = momentsOf(edition);
    QList<DesktopMetadata::TimeEntry> times;
    QList<DesktopMetadata::SolarEntry> positions;
    for (const SampleCatalogue::Phase &phase : SampleCatalogue::phases()) {
        const int picture = int(order.indexOf(phase.moment));
        times.append({ phase.dayFraction, picture });
        positions.append({ phase.altitude, phase.azimuth, picture });
    }
    const int light = int(order.indexOf(Moment::Day));
    const int dark = int(order.indexOf(Moment::Night));
    return solar ? DesktopMetadata::solar(positions, light, dark)
                 : DesktopMetadata::timeOfDay(times, light, dark);
}

QString identifier(char kind, const QString &name)
{
    const QByteArray digest = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha256);
    return QLatin1Char(kind) + u'_' + QString::fromLatin1(digest.toHex().left(16));
}

// Plans every file of the content as a job, runs the jobs on all cores, then lists the result.
class Generator {
public:
    Generator(const QString &dir, Size size)
        : m_dir(dir)
        , m_size(size)
        , m_sizes(size == Size::Small ? Sizes { { 64, 40 }, { 64, 40 }, { 32, 20 } }
                                      : Sizes { { 1920, 1200 }, { 1280, 800 }, { 320, 200 } })
    {
    }

    bool run()
    {
        for (const QString &folder : { u"files"_s, u"art"_s, u"archives"_s })
            if (!QDir(m_dir.filePath(folder)).removeRecursively())
                return false;
        QJsonArray packs;
        for (const SampleCatalogue::Pack &pack : catalogue())
            packs.append(plan(pack));

        std::atomic<bool> ok = true;
        QtConcurrent::blockingMap(m_jobs, [&ok](const std::function<bool()> &job) {
            if (!job())
                ok = false;
        });
        if (!ok || !m_archives.make())
            return false;
        return complete(packs) && writeManifest(packs);
    }

private:
    // Camera packs take minutes and hundreds of megabytes to make: tests do without them.
    [[nodiscard]] QList<SampleCatalogue::Pack> catalogue() const
    {
        QList<SampleCatalogue::Pack> packs = SampleCatalogue::packs();
        if (m_size == Size::Small)
            packs.removeIf([](const SampleCatalogue::Pack &pack) { return pack.camera; });
        return packs;
    }

    QString path(const QString &relative)
    {
        QDir().mkpath(QFileInfo(m_dir.filePath(relative)).path());
        return m_dir.filePath(relative);
    }

    // A PNG of one moment of a colourway, as a job.
    QString picture(const QString &relative, const ScenePainter::Palette &palette, Moment moment,
                    QSize size)
    {
        const QString file = path(relative);
        m_jobs.append([=] { return ScenePainter::paint(palette, moment, size).save(file, "PNG"); });
        return relative;
    }

    QJsonObject plan(const SampleCatalogue::Pack &pack)
    {
        QJsonArray colourways;
        for (const SampleCatalogue::Colourway &colourway : pack.colourways) {
            const QString art = u"art/%1/%2/"_s.arg(pack.slug, colourway.slug);
            const auto &palette = colourway.palette;
            QJsonObject phases;
            for (const SampleCatalogue::Phase &phase : SampleCatalogue::phases())
                phases.insert(
                    phase.id,
                    picture(art + phase.id + u".png"_s, palette, phase.moment, m_sizes.thumbnail));
            const QJsonObject artwork {
                { u"light"_s,
                  picture(art + u"light.png"_s, palette, Moment::Day, m_sizes.thumbnail) },
                { u"dark"_s,
                  picture(art + u"dark.png"_s, palette, Moment::Night, m_sizes.thumbnail) },
                { "desktop"_L1,
                  QJsonObject { { u"light"_s,
                                  picture(art + u"desktop-light.png"_s, palette, Moment::Day,
                                          m_sizes.desktop) },
                                { u"dark"_s,
                                  picture(art + u"desktop-dark.png"_s, palette, Moment::Night,
                                          m_sizes.desktop) } } },
                { u"phases"_s, phases },
            };
            QJsonArray files;
            if (pack.released)
                files = planFiles(pack, colourway);
            colourways.append(QJsonObject { { u"slug"_s, colourway.slug },
                                            { u"name"_s, colourway.name },
                                            { u"art"_s, artwork },
                                            { u"files"_s, files } });
        }
        QJsonObject entry { { u"slug"_s, pack.slug },
                            { u"name"_s, pack.name },
                            { u"line"_s, pack.line },
                            { u"price"_s, pack.price },
                            { u"onSale"_s, pack.onSale },
                            { u"free"_s, pack.free },
                            { u"released"_s, pack.released },
                            { u"colourways"_s, colourways },
                            { u"updatedAt"_s, SampleCatalogue::updatedAt() } };
        if (pack.released)
            entry.insert("archives"_L1, m_archives.plan(m_dir, pack, m_size, m_jobs));
        return entry;
    }

    QJsonArray planFiles(const SampleCatalogue::Pack &pack,
                         const SampleCatalogue::Colourway &colourway)
    {
        QJsonArray files;
        const bool camera = pack.camera && m_size == Size::Large;
        for (const QString &edition : camera ? cameraEditions : editions) {
            const QString relative =
                u"files/%1/%2-%3.heic"_s.arg(pack.slug, colourway.slug, edition);
            const QString file = path(relative);
            const QList<Moment> moments = momentsOf(edition);
            const QByteArray xmp = metadataOf(
                edition, pack.slug + u'/' + colourway.slug == SampleCatalogue::solarColourway());
            const auto palette = colourway.palette;
            const QSize size = camera ? cameraSize : m_sizes.wallpaper;
            const QByteArray digest =
                QCryptographicHash::hash(relative.toUtf8(), QCryptographicHash::Sha256);
            const quint32 seed = qFromBigEndian<quint32>(digest.constData());
            m_jobs.append([=] {
                QList<QImage> pictures;
                for (const Moment moment : moments) {
                    QImage picture = ScenePainter::paint(palette, moment, size);
                    pictures.append(camera ? withGrain(std::move(picture), seed + quint32(moment))
                                           : picture);
                }
                return HeicWriter::write(file, pictures, xmp);
            });
            m_archives.addMacFile(pack.slug, file);
            files.append(QJsonObject {
                { u"id"_s, identifier('f', pack.slug + u'/' + colourway.slug + u'/' + edition) },
                { u"edition"_s, edition },
                { u"path"_s, relative } });
        }
        return files;
    }

    // Fills in the size and digest of every file and archive.
    bool complete(QJsonArray &packs) const
    {
        bool ok = true;
        const auto measure = [&](QJsonArray entries) {
            for (auto it = entries.begin(); it != entries.end(); ++it) {
                QJsonObject entry = it->toObject();
                const QString file = m_dir.filePath(entry.value("path"_L1).toString());
                const auto digest = FileDigest::sha256(file);
                ok = ok && digest.has_value();
                entry.insert("bytes"_L1, QFileInfo(file).size());
                entry.insert("sha256"_L1, digest.value_or(QString()));
                *it = entry;
            }
            return entries;
        };
        for (auto pack = packs.begin(); pack != packs.end(); ++pack) {
            QJsonObject object = pack->toObject();
            QJsonArray colourways = object.value("colourways"_L1).toArray();
            for (auto colourway = colourways.begin(); colourway != colourways.end(); ++colourway) {
                QJsonObject inner = colourway->toObject();
                inner.insert("files"_L1, measure(inner.value("files"_L1).toArray()));
                *colourway = inner;
            }
            object.insert("colourways"_L1, colourways);
            object.insert("archives"_L1, measure(object.value("archives"_L1).toArray()));
            *pack = object;
        }
        return ok;
    }

    bool writeManifest(const QJsonArray &packs) const
    {
        QJsonArray owned;
        QJsonArray phases;
        for (const SampleCatalogue::Pack &pack : catalogue())
            if (!pack.ownedSince.isEmpty())
                owned.append(
                    QJsonObject { { u"slug"_s, pack.slug }, { u"since"_s, pack.ownedSince } });
        for (const SampleCatalogue::Phase &phase : SampleCatalogue::phases())
            phases.append(QJsonObject { { u"id"_s, phase.id }, { u"label"_s, phase.label } });
        const QJsonObject manifest {
            { u"account"_s,
              QJsonObject { { u"email"_s, SampleCatalogue::email() }, { u"packs"_s, owned } } },
            { u"phases"_s, phases },
            { u"packs"_s, packs },
        };
        return writeAtomically(m_dir.filePath(u"content.json"_s), QJsonDocument(manifest).toJson());
    }

    QDir m_dir;
    Size m_size;
    Sizes m_sizes;
    QList<std::function<bool()>> m_jobs;
    SampleArchives m_archives;
};
} // namespace

bool make(const QString &dir, Size size)
{
    if (!QDir().mkpath(dir)) {
        qCWarning(lcSample) << "Could not create" << dir;
        return false;
    }
    // Whatever was there is not complete until the new list is written.
    QFile::remove(QDir(dir).filePath(u"content.json"_s));
    const bool made = Generator(dir, size).run();
    if (!made)
        qCWarning(lcSample) << "Could not make the sample content in" << dir;
    return made;
}
} // namespace SampleContent
