#pragma once

#include <QString>

// Generates the sample content the development shop serves: HEIC wallpapers with their desktop
// metadata, artwork, per-device archives, and the "content.json" that lists them with sizes and
// SHA-256 digests. "content.json" is written last, so a folder that has it is complete.
namespace SampleContent {
enum class Size {
    Small, // tiny pictures, made in seconds: for tests
    Large, // desktop-sized pictures for the demo
};

bool make(const QString &dir, Size size = Size::Small);
} // namespace SampleContent
