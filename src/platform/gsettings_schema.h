#pragma once

#include <gio/gio.h>

// The schema with this id when it is installed and, if a key is named, has that key; null
// otherwise. GLib aborts the process on a schema or key it does not know, so every use of
// GSettings starts here. The caller unrefs it.
[[nodiscard]] GSettingsSchema *installedSchema(const char *id, const char *key = nullptr);
