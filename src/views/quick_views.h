#pragma once

#include "views.h"

class QQmlEngine;

// The views in Qt Quick, all from one engine.
class QuickViews : public Views {
public:
    QuickViews();
    ~QuickViews() override;

    [[nodiscard]] QWindow *window(const QString &view, const QVariantMap &roots) override;
    [[nodiscard]] PanelSurface *panel(const QVariantMap &roots,
                                      PanelSurface::Events events) override;

private:
    QQmlEngine *m_engine;
};
