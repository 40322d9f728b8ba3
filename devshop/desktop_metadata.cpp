#include "desktop_metadata.h"

#include <memory>
#include <plist/plist.h>

namespace DesktopMetadata {
namespace {
using Plist = std::unique_ptr<void, decltype(&plist_free)>;

plist_t lightAndDark(int light, int dark)
{
    plist_t dict = plist_new_dict();
    plist_dict_set_item(dict, "l", plist_new_uint(uint64_t(light)));
    plist_dict_set_item(dict, "d", plist_new_uint(uint64_t(dark)));
    return dict;
}

QByteArray xmp(const char *tag, plist_t root)
{
    const Plist owner(root, plist_free);
    char *binary = nullptr;
    uint32_t length = 0;
    plist_to_bin(root, &binary, &length);
    const QByteArray encoded = QByteArray(binary, qsizetype(length)).toBase64();
    plist_to_bin_free(binary);
    return QByteArray(R"(<x:xmpmeta xmlns:x="adobe:ns:meta/" x:xmptk="Quennet development shop">)"
                      "\n <rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
                      "\n  <rdf:Description rdf:about=\"\""
                      " xmlns:apple_desktop=\"http://ns.apple.com/namespace/1.0/\" apple_desktop:")
        + tag + "=\"" + encoded + "\"/>\n </rdf:RDF>\n</x:xmpmeta>\n";
}
} // namespace

QByteArray appearance(int light, int dark)
{
    return xmp("apr", lightAndDark(light, dark));
}

QByteArray timeOfDay(const QList<TimeEntry> &entries, int light, int dark)
{
    plist_t times = plist_new_array();
    for (const TimeEntry &entry : entries) {
        plist_t item = plist_new_dict();
        plist_dict_set_item(item, "t", plist_new_real(entry.dayFraction));
        plist_dict_set_item(item, "i", plist_new_uint(uint64_t(entry.picture)));
        plist_array_append_item(times, item);
    }
    plist_t root = plist_new_dict();
    plist_dict_set_item(root, "ti", times);
    plist_dict_set_item(root, "ap", lightAndDark(light, dark));
    return xmp("h24", root);
}

QByteArray solar(const QList<SolarEntry> &entries, int light, int dark)
{
    plist_t positions = plist_new_array();
    for (const SolarEntry &entry : entries) {
        plist_t item = plist_new_dict();
        plist_dict_set_item(item, "a", plist_new_real(entry.altitude));
        plist_dict_set_item(item, "z", plist_new_real(entry.azimuth));
        plist_dict_set_item(item, "i", plist_new_uint(uint64_t(entry.picture)));
        plist_array_append_item(positions, item);
    }
    plist_t root = plist_new_dict();
    plist_dict_set_item(root, "si", positions);
    plist_dict_set_item(root, "ap", lightAndDark(light, dark));
    return xmp("solar", root);
}
} // namespace DesktopMetadata
