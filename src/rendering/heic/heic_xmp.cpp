#include "heic_xmp.h"

#include <QXmlStreamReader>
#include <limits>
#include <memory>
#include <plist/plist.h>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto desktopNamespace = "http://ns.apple.com/namespace/1.0/"_L1;

using Plist = std::unique_ptr<void, decltype(&plist_free)>;

Plist parsePlist(const QString &base64)
{
    const QByteArray bytes = QByteArray::fromBase64(base64.toLatin1());
    plist_t root = nullptr;
    if (bytes.startsWith("bplist") && bytes.size() < std::numeric_limits<uint32_t>::max())
        plist_from_bin(bytes.constData(), uint32_t(bytes.size()), &root);
    return { root, plist_free };
}

std::optional<int> integer(plist_t node)
{
    if (!node)
        return std::nullopt;
    switch (plist_get_node_type(node)) {
    case PLIST_UINT: {
        uint64_t value = 0;
        plist_get_uint_val(node, &value);
        // Binary plists keep negative integers as huge unsigned ones.
        if (value > uint64_t(std::numeric_limits<int>::max()))
            return std::nullopt;
        return int(value);
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        if (value >= 0 && value <= std::numeric_limits<int>::max() && value == int(value))
            return int(value);
        return std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

std::optional<double> real(plist_t node)
{
    if (!node)
        return std::nullopt;
    if (plist_get_node_type(node) == PLIST_REAL) {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    if (const auto value = integer(node))
        return double(*value);
    return std::nullopt;
}

plist_t dictItem(plist_t dict, const char *key)
{
    return dict && plist_get_node_type(dict) == PLIST_DICT ? plist_dict_get_item(dict, key)
                                                           : nullptr;
}

HeicMetadata::LightAndDark lightAndDark(plist_t dict)
{
    return { integer(dictItem(dict, "l")), integer(dictItem(dict, "d")) };
}

// Each entry is a dictionary; entries that lack a field are skipped.
template<typename Entry, typename Read> QList<Entry> entries(plist_t array, Read read)
{
    QList<Entry> result;
    if (!array || plist_get_node_type(array) != PLIST_ARRAY)
        return result;
    for (uint32_t i = 0; i < plist_array_get_size(array); ++i) {
        if (const auto entry = read(plist_array_get_item(array, i)))
            result.append(*entry);
    }
    return result;
}
} // namespace

namespace HeicXmp {
HeicMetadata metadata(const QByteArray &xmp)
{
    HeicMetadata::LightAndDark appearance;
    HeicMetadata::LightAndDark solarAppearance;
    HeicMetadata::LightAndDark timeAppearance;
    QList<HeicMetadata::TimedPicture> times;
    QList<HeicMetadata::SolarPicture> solar;
    const auto apply = [&](QStringView tag, const QString &value) {
        const Plist root = parsePlist(value);
        if (!root)
            return;
        if (tag == u"apr") {
            appearance = lightAndDark(root.get());
        } else if (tag == u"h24") {
            timeAppearance = lightAndDark(dictItem(root.get(), "ap"));
            times = entries<
                HeicMetadata::TimedPicture>(dictItem(root.get(), "ti"), [](plist_t item) {
                const auto t = real(dictItem(item, "t"));
                const auto i = integer(dictItem(item, "i"));
                return t && i ? std::optional(HeicMetadata::TimedPicture { *t, *i }) : std::nullopt;
            });
        } else if (tag == u"solar") {
            solarAppearance = lightAndDark(dictItem(root.get(), "ap"));
            solar =
                entries<HeicMetadata::SolarPicture>(dictItem(root.get(), "si"), [](plist_t item) {
                    const auto a = real(dictItem(item, "a"));
                    const auto z = real(dictItem(item, "z"));
                    const auto i = integer(dictItem(item, "i"));
                    return a && z && i ? std::optional(HeicMetadata::SolarPicture { *a, *z, *i })
                                       : std::nullopt;
                });
        }
    };

    // The entries come as attributes of rdf:Description, or as elements of their own.
    QXmlStreamReader reader(xmp);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        for (const auto &attribute : reader.attributes()) {
            if (attribute.namespaceUri() == desktopNamespace)
                apply(attribute.name(), attribute.value().toString());
        }
        if (reader.namespaceUri() == desktopNamespace) {
            const QString tag = reader.name().toString();
            apply(tag, reader.readElementText(QXmlStreamReader::SkipChildElements).trimmed());
        }
    }
    return { appearance, solarAppearance, timeAppearance, std::move(times), std::move(solar) };
}
} // namespace HeicXmp
