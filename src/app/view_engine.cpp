#include "view_engine.h"

#include "logging.h"
#include "views.h"

ViewEngine::ViewEngine(std::chrono::milliseconds idle, Maker make, std::function<bool()> shown,
                       std::function<void()> release, QObject *parent)
    : QObject(parent)
    , m_make(std::move(make))
    , m_shown(std::move(shown))
    , m_release(std::move(release))
{
    m_idle.setSingleShot(true);
    m_idle.setInterval(idle);
    connect(&m_idle, &QTimer::timeout, this, &ViewEngine::letGo);
}

ViewEngine::~ViewEngine() = default;

Views *ViewEngine::views()
{
    // A session started at login that never opens a view never pays for them.
    if (!m_views && m_make) {
        m_views = m_make();
    }
    return m_views.get();
}

void ViewEngine::viewChanged()
{
    if (m_shown()) {
        m_idle.stop();
    } else if (m_views) {
        m_idle.start();
    }
}

void ViewEngine::letGo()
{
    if (!m_views || m_shown()) {
        return;
    }
    qCDebug(lcApp) << "No view shown for" << m_idle.interval() << "ms: letting the views go";
    m_release();
    m_views.reset();
}
