#include "view_engine.h"

#include "logging.h"

#include <QQmlEngine>

#ifdef __GLIBC__
#    include <malloc.h>
#endif

ViewEngine::ViewEngine(std::chrono::milliseconds idle, std::function<bool()> shown,
                       std::function<void()> release, QObject *parent)
    : QObject(parent)
    , m_shown(std::move(shown))
    , m_release(std::move(release))
{
    m_idle.setSingleShot(true);
    m_idle.setInterval(idle);
    connect(&m_idle, &QTimer::timeout, this, &ViewEngine::letGo);
}

ViewEngine::~ViewEngine() = default;

QQmlEngine *ViewEngine::engine()
{
    // A session started at login that never opens a view never pays for the QML runtime.
    if (!m_engine) {
        m_engine = new QQmlEngine(this);
    }
    return m_engine;
}

void ViewEngine::viewChanged()
{
    if (m_shown()) {
        m_idle.stop();
    } else if (m_engine) {
        m_idle.start();
    }
}

void ViewEngine::letGo()
{
    if (!m_engine || m_shown()) {
        return;
    }
    qCDebug(lcApp) << "No view shown for" << m_idle.interval() << "ms: letting the views go";
    m_release();
    // The views are gone, but what their destruction posted may still reach the engine: it goes
    // after that. The next view makes a new one.
    QQmlEngine *engine = std::exchange(m_engine, nullptr);
#ifdef __GLIBC__
    // The freed pages go back to the system, not only to glibc's free lists.
    connect(engine, &QObject::destroyed, this,
            [] { QTimer::singleShot(0, [] { malloc_trim(0); }); });
#endif
    engine->deleteLater();
}
