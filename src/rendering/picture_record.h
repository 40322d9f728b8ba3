#pragma once

#include "picture_choice.h"

#include <QJsonObject>
#include <optional>

// A file's pictures as they are kept beside its renderings, so that which picture shows when is
// known without opening the file again. Read strictly: anything unexpected reads as nothing, and
// the file is then opened.
namespace PictureRecord {
[[nodiscard]] QJsonObject toJson(const PictureChoice::Pictures &pictures);
[[nodiscard]] std::optional<PictureChoice::Pictures> fromJson(const QJsonValue &value);
} // namespace PictureRecord
