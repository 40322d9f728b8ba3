#include "gsettings_schema.h"

GSettingsSchema *installedSchema(const char *id, const char *key)
{
    GSettingsSchemaSource *source = g_settings_schema_source_get_default();
    GSettingsSchema *schema = source ? g_settings_schema_source_lookup(source, id, TRUE) : nullptr;
    if (schema && key && !g_settings_schema_has_key(schema, key)) {
        g_settings_schema_unref(schema);
        return nullptr;
    }
    return schema;
}
