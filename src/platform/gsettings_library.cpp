#include "gsettings_library.h"

#include "logging.h"
#include "opened_library.h"

#include <optional>

namespace {
std::optional<GSettingsLibrary> load()
{
    void *library = dlopen("libgio-2.0.so.0", RTLD_NOW | RTLD_LOCAL);
    GSettingsLibrary found;
    // GObject's functions come with GIO, which links it.
    if (library
        && resolveFunction(library, found.schemaSource, "g_settings_schema_source_get_default")
        && resolveFunction(library, found.lookUpSchema, "g_settings_schema_source_lookup")
        && resolveFunction(library, found.schemaHasKey, "g_settings_schema_has_key")
        && resolveFunction(library, found.unrefSchema, "g_settings_schema_unref")
        && resolveFunction(library, found.newSettings, "g_settings_new_full")
        && resolveFunction(library, found.getString, "g_settings_get_string")
        && resolveFunction(library, found.setString, "g_settings_set_string")
        && resolveFunction(library, found.getBoolean, "g_settings_get_boolean")
        && resolveFunction(library, found.delay, "g_settings_delay")
        && resolveFunction(library, found.apply, "g_settings_apply")
        && resolveFunction(library, found.sync, "g_settings_sync")
        && resolveFunction(library, found.connectSignal, "g_signal_connect_data")
        && resolveFunction(library, found.disconnectSignal, "g_signal_handler_disconnect")
        && resolveFunction(library, found.unrefObject, "g_object_unref"))
        return found;
    qCWarning(lcGSettings) << "GSettings is not available:" << dlerror();
    return std::nullopt;
}
} // namespace

const GSettingsLibrary *GSettingsLibrary::get()
{
    static const std::optional<GSettingsLibrary> library = load();
    return library ? &*library : nullptr;
}

GSettingsSchema *GSettingsLibrary::lookUp(const char *schema, const char *key) const
{
    GSettingsSchemaSource *source = schemaSource();
    GSettingsSchema *found = source ? lookUpSchema(source, schema, TRUE) : nullptr;
    if (found && key && !schemaHasKey(found, key)) {
        unrefSchema(found);
        return nullptr;
    }
    return found;
}
