#include "owned_pack.h"

#include "value_hashing.h"

using namespace Qt::Literals::StringLiterals;

QString Archive::deviceLabel() const
{
    static const QHash<QString, QString> labels {
        { u"mac"_s, u"Mac"_s },
        { u"ipad"_s, u"iPad"_s },
        { u"iphone"_s, u"iPhone"_s },
        { u"iphone-duo"_s, u"iPhone Duo"_s },
    };
    return labels.value(device, device);
}

QList<WallpaperFile> OwnedPack::allFiles() const
{
    QList<WallpaperFile> result;
    for (const auto &editions : files)
        for (const auto &file : editions)
            result.append(file);
    return result;
}

std::optional<WallpaperFile> OwnedPack::file(const QString &colourway, Edition edition) const
{
    const auto editions = files.constFind(colourway);
    if (editions == files.cend())
        return std::nullopt;
    const auto it = editions->constFind(edition);
    if (it == editions->cend())
        return std::nullopt;
    return *it;
}

size_t qHash(const WallpaperFile &file, size_t seed)
{
    return qHashMulti(seed, file.id, file.pack, file.colourway, file.edition, file.bytes,
                      file.sha256, file.source);
}

size_t qHash(const Archive &archive, size_t seed)
{
    return qHashMulti(seed, archive.id, archive.pack, archive.device, archive.filename,
                      archive.bytes, archive.sha256, archive.source);
}

size_t qHash(const OwnedPack &pack, size_t seed)
{
    seed = qHashMulti(seed, pack.slug, pack.since, pack.updatedAt);
    for (auto it = pack.files.cbegin(); it != pack.files.cend(); ++it)
        seed = qHashMapEntries(it.value(), qHash(it.key(), seed));
    return qHashRange(pack.archives.cbegin(), pack.archives.cend(), seed);
}
