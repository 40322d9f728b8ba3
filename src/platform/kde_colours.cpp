#include "kde_colours.h"

#include <QSettings>
#include <QStandardPaths>
#include <memory>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {
struct Source {
    QPalette::ColorRole role;
    QLatin1StringView key; // a group of KDE's colour scheme and a key in it
};

// Roles that the palette built from the button and window colours would otherwise derive.
constexpr Source sources[] = {
    { QPalette::WindowText, "Colors:Window/ForegroundNormal"_L1 },
    { QPalette::Base, "Colors:View/BackgroundNormal"_L1 },
    { QPalette::AlternateBase, "Colors:View/BackgroundAlternate"_L1 },
    { QPalette::Text, "Colors:View/ForegroundNormal"_L1 },
    { QPalette::PlaceholderText, "Colors:View/ForegroundInactive"_L1 },
    { QPalette::ButtonText, "Colors:Button/ForegroundNormal"_L1 },
    { QPalette::Highlight, "Colors:Selection/BackgroundNormal"_L1 },
    { QPalette::HighlightedText, "Colors:Selection/ForegroundNormal"_L1 },
    { QPalette::ToolTipBase, "Colors:Tooltip/BackgroundNormal"_L1 },
    { QPalette::ToolTipText, "Colors:Tooltip/ForegroundNormal"_L1 },
    { QPalette::Link, "Colors:View/ForegroundLink"_L1 },
    { QPalette::LinkVisited, "Colors:View/ForegroundVisited"_L1 },
};

// KDE writes colours as "red,green,blue", which QSettings reads as a list.
std::optional<QColor> colour(const QVariant &value)
{
    const QStringList parts = value.toStringList();
    if (parts.size() != 3 && parts.size() != 4)
        return std::nullopt;
    int channels[4] = { 0, 0, 0, 255 };
    for (qsizetype i = 0; i < parts.size(); ++i) {
        bool ok = false;
        channels[i] = parts[i].trimmed().toInt(&ok);
        if (!ok || channels[i] < 0 || channels[i] > 255)
            return std::nullopt;
    }
    return QColor(channels[0], channels[1], channels[2], channels[3]);
}
} // namespace

QStringList KdeColours::files()
{
    return QStandardPaths::locateAll(QStandardPaths::GenericConfigLocation, u"kdeglobals"_s);
}

std::optional<QPalette> KdeColours::palette(const QStringList &files)
{
    std::vector<std::unique_ptr<QSettings>> settings;
    for (const QString &file : files)
        settings.push_back(std::make_unique<QSettings>(file, QSettings::IniFormat));
    // A value KDE could not have written counts as missing, so the next file may still have it.
    const auto read = [&](QLatin1StringView key) -> std::optional<QColor> {
        for (const auto &file : settings) {
            if (const auto value = colour(file->value(key)))
                return value;
        }
        return std::nullopt;
    };

    const auto window = read("Colors:Window/BackgroundNormal"_L1);
    if (!window)
        return std::nullopt;
    QPalette palette(read("Colors:Button/BackgroundNormal"_L1).value_or(*window), *window);
    for (const Source &source : sources) {
        if (const auto value = read(source.key))
            palette.setColor(source.role, *value);
    }
    // KDE dims disabled text with effects of its own; its inactive text is close.
    if (const auto inactive = read("Colors:Window/ForegroundInactive"_L1)) {
        for (const auto role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
            palette.setColor(QPalette::Disabled, role, *inactive);
    }
    return palette;
}
