#pragma once

#include "desktop_backend.h"

#include <QHash>

// A desktop whose screens and pictures the test decides, two side by side unless it says;
// set requests are recorded.
class FakeDesktop : public DesktopBackend {
    Q_OBJECT

public:
    explicit FakeDesktop(QHash<QString, QString> shown = {})
        : shown(std::move(shown))
    {
    }

    QList<DesktopScreen> shownScreens {
        { .connector = QStringLiteral("A"), .geometry = QRect(0, 0, 1920, 1080) },
        { .connector = QStringLiteral("B"), .geometry = QRect(1920, 0, 1920, 1080) }
    };
    QHash<QString, QString> shown; // connector -> picture the desktop reports
    bool reportsAtOnce = true; // whether a set shows up in picture() straight away
    std::optional<QString> refusal; // set fails with this
    qsizetype changesBeforeRefusal = 0; // screens that take the picture before it fails
    QList<std::pair<DesktopPicture, QStringList>> requests;

    [[nodiscard]] QString name() const override { return QStringLiteral("fake"); }
    [[nodiscard]] Capabilities capabilities() const override { return Capability::PerDisplay; }
    [[nodiscard]] QList<DesktopScreen> screens() const override { return shownScreens; }
    [[nodiscard]] std::optional<QString> picture(const DesktopScreen &screen) const override
    {
        const auto it = shown.constFind(screen.connector);
        return it == shown.cend() ? std::nullopt : std::optional(*it);
    }
    QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) override;
};
