#include "desktop_backend.h"

#include <QGuiApplication>
#include <QScreen>

using namespace Qt::Literals::StringLiterals;

DesktopError::DesktopError(QString description, QStringList changedConnectors)
    : m_description(std::move(description))
    , m_changed(std::move(changedConnectors))
{
}

DesktopBackend::DesktopBackend(QObject *parent)
    : QObject(parent)
{
}

DesktopBackend::~DesktopBackend() = default;

QStringList DesktopBackend::imageFormats() const
{
    return { u"png"_s, u"jpg"_s, u"jpeg"_s };
}

QList<DesktopScreen> DesktopBackend::screens() const
{
    QList<DesktopScreen> result;
    QList<QScreen *> screens = QGuiApplication::screens();
    // Qt lists the primary screen first on X11 but not on every platform.
    if (auto *const primary = QGuiApplication::primaryScreen(); primary && !screens.isEmpty())
        screens.move(screens.indexOf(primary), 0);
    for (const QScreen *screen : std::as_const(screens)) {
        if (screen->name().isEmpty())
            continue;
        result.append({ .connector = screen->name(),
                        .manufacturer = screen->manufacturer(),
                        .model = screen->model(),
                        .serial = screen->serialNumber(),
                        .geometry = screen->geometry(),
                        .pixels = screen->geometry().size() * screen->devicePixelRatio() });
    }
    return result;
}

void DesktopBackend::followQtScreens()
{
    followQtScreens([this] { Q_EMIT screensChanged(); });
}

void DesktopBackend::followQtScreens(const std::function<void()> &changed)
{
    auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    if (!application)
        return;
    const auto watch = [this, changed](QScreen *screen) {
        connect(screen, &QScreen::geometryChanged, this, changed);
    };
    for (QScreen *screen : QGuiApplication::screens())
        watch(screen);
    connect(application, &QGuiApplication::screenAdded, this, [watch, changed](QScreen *screen) {
        watch(screen);
        changed();
    });
    connect(application, &QGuiApplication::screenRemoved, this, changed);
    connect(application, &QGuiApplication::primaryScreenChanged, this, changed);
}
