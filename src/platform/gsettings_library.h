#pragma once

#include <gio/gio.h>

// GIO's settings and GObject's signals, opened at the first use rather than linked: with what
// they pull in they are seven libraries that every start would load before its tray icon shows,
// and only the GNOME family's desktops need them.
struct GSettingsLibrary {
    decltype(&g_settings_schema_source_get_default) schemaSource = nullptr;
    decltype(&g_settings_schema_source_lookup) lookUpSchema = nullptr;
    decltype(&g_settings_schema_has_key) schemaHasKey = nullptr;
    decltype(&g_settings_schema_unref) unrefSchema = nullptr;
    decltype(&g_settings_new_full) newSettings = nullptr;
    decltype(&g_settings_get_string) getString = nullptr;
    decltype(&g_settings_set_string) setString = nullptr;
    decltype(&g_settings_get_boolean) getBoolean = nullptr;
    decltype(&g_settings_delay) delay = nullptr;
    decltype(&g_settings_apply) apply = nullptr;
    decltype(&g_settings_sync) sync = nullptr;
    decltype(&g_signal_connect_data) connectSignal = nullptr;
    decltype(&g_signal_handler_disconnect) disconnectSignal = nullptr;
    decltype(&g_object_unref) unrefObject = nullptr;

    // Null when GIO cannot be opened (logged once), which reads as no schema being installed.
    [[nodiscard]] static const GSettingsLibrary *get();

    // The schema when it is installed and, given a key, has it; the caller unrefs it.
    [[nodiscard]] GSettingsSchema *lookUp(const char *schema, const char *key = nullptr) const;
};
