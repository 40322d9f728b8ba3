#include "sample_archives.h"

#include <QCryptographicHash>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QProcess>

Q_LOGGING_CATEGORY(lcArchives, "app.quennet.Quennet.DevShop.Archives")

using namespace Qt::Literals::StringLiterals;

namespace {
struct Device {
    QString key;
    QString label;
    QSize small;
    QSize large;
};

const QList<Device> devices {
    { u"mac"_s, u"Mac"_s, {}, {} },
    { u"ipad"_s, u"iPad"_s, { 30, 40 }, { 1024, 1366 } },
    { u"iphone"_s, u"iPhone"_s, { 20, 44 }, { 750, 1624 } },
    { u"iphone-duo"_s, u"iPhone Duo"_s, { 40, 44 }, { 1500, 1624 } },
};

QString archiveId(const QString &pack, const QString &device)
{
    const QByteArray digest =
        QCryptographicHash::hash((pack + u'/' + device).toUtf8(), QCryptographicHash::Sha256);
    return u"a_"_s + QString::fromLatin1(digest.toHex().left(16));
}
} // namespace

void SampleArchives::addMacFile(const QString &pack, const QString &file)
{
    m_macFiles[pack].append(file);
}

QJsonArray SampleArchives::plan(const QDir &dir, const SampleCatalogue::Pack &pack,
                                SampleContent::Size size, QList<std::function<bool()>> &jobs)
{
    QJsonArray entries;
    for (const Device &device : devices) {
        const QString filename = u"%1 (%2).zip"_s.arg(pack.name, device.label);
        const QString relative = u"archives/%1/%2"_s.arg(pack.slug, filename);
        Archive archive { dir.filePath(relative), {}, pack.slug };
        if (device.key != "mac"_L1) {
            archive.staging = dir.filePath(u"archives/%1/%2"_s.arg(pack.slug, device.key));
            QDir().mkpath(archive.staging);
            const QSize screen = size == SampleContent::Size::Small ? device.small : device.large;
            for (const SampleCatalogue::Colourway &colourway : pack.colourways) {
                for (const auto &picture : { std::pair(u"Light"_s, ScenePainter::Moment::Day),
                                             std::pair(u"Dark"_s, ScenePainter::Moment::Night) }) {
                    const QString file =
                        QDir(archive.staging)
                            .filePath(u"%1 %2.png"_s.arg(colourway.name, picture.first));
                    jobs.append(
                        [file, palette = colourway.palette, moment = picture.second, screen] {
                            return ScenePainter::paint(palette, moment, screen).save(file, "PNG");
                        });
                }
            }
        }
        m_archives.append(archive);
        entries.append(QJsonObject { { u"id"_s, archiveId(pack.slug, device.key) },
                                     { u"device"_s, device.key },
                                     { u"filename"_s, filename },
                                     { u"path"_s, relative } });
    }
    return entries;
}

bool SampleArchives::make() const
{
    for (const Archive &archive : m_archives) {
        QStringList members = m_macFiles.value(archive.pack);
        if (!archive.staging.isEmpty()) {
            members.clear();
            for (const QString &name : QDir(archive.staging).entryList(QDir::Files, QDir::Name))
                members.append(QDir(archive.staging).filePath(name));
        }
        QFile::remove(archive.path);
        QProcess zip;
        // Pictures are compressed already: storing them is as small and much quicker.
        zip.start(u"zip"_s,
                  QStringList { u"-q"_s, u"-X"_s, u"-j"_s, u"-0"_s, archive.path } + members);
        if (!zip.waitForFinished(-1) || zip.exitStatus() != QProcess::NormalExit
            || zip.exitCode() != 0) {
            qCWarning(lcArchives) << "zip failed for" << archive.path << zip.errorString()
                                  << zip.readAllStandardError();
            return false;
        }
        if (!archive.staging.isEmpty())
            QDir(archive.staging).removeRecursively();
    }
    return true;
}
