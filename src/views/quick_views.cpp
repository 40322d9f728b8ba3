#include "quick_views.h"

#include "logging.h"
#include "panel_window.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QThread>
#include <QTimer>

#ifdef __GLIBC__
#    include <malloc.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {
QUrl viewUrl(const QString &view)
{
    return QUrl(u"qrc:/qt/qml/Quennet/qml/"_s + view + u".qml"_s);
}
} // namespace

QuickViews::QuickViews()
    : m_engine(new QQmlEngine)
{
}

QuickViews::~QuickViews()
{
    // At quitting, no event loop is left to run a deferred delete: the engine goes now.
    if (QThread::currentThread()->loopLevel() == 0) {
        delete m_engine;
        return;
    }
    // What the windows' destruction posted may still reach the engine: it goes after that.
#ifdef __GLIBC__
    // The freed pages go back to the system, not only to glibc's free lists.
    QObject::connect(m_engine, &QObject::destroyed,
                     [] { QTimer::singleShot(0, [] { malloc_trim(0); }); });
#endif
    m_engine->deleteLater();
}

QWindow *QuickViews::window(const QString &view, const QVariantMap &roots)
{
    QQmlComponent component(m_engine, viewUrl(view));
    QObject *made = component.createWithInitialProperties(roots);
    auto *window = qobject_cast<QQuickWindow *>(made);
    if (!window) {
        qCCritical(lcApp).noquote() << "Couldn't load" << view << component.errorString();
        delete made;
    }
    return window;
}

PanelSurface *QuickViews::panel(const QVariantMap &roots, PanelSurface::Events events)
{
    auto panel = std::make_unique<PanelWindow>(m_engine, std::move(events));
    if (!panel->load(viewUrl(u"Panel"_s), roots)) {
        return nullptr;
    }
    return panel.release();
}
