#pragma once

#include <QColor>

// One pixel of the X desktop as ImageMagick's import reads it: what a person would see there.
[[nodiscard]] QColor rootPixel(int x, int y);
