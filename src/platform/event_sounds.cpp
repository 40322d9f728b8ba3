#include "event_sounds.h"

#include "gnome_backend.h"
#include "gsettings_schema.h"
#include "logging.h"
#include "opened_library.h"

#include <canberra.h>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {
// libcanberra, opened at the first sound rather than linked: most sessions never play one, and
// it brings vorbis, tdb and ltdl into every start. Left open once opened.
struct Canberra {
    decltype(&ca_context_create) create = nullptr;
    decltype(&ca_context_destroy) destroy = nullptr;
    decltype(&ca_context_change_props) changeProps = nullptr;
    decltype(&ca_context_open) open = nullptr;
    decltype(&ca_context_play) play = nullptr;
    decltype(&ca_strerror) strerror = nullptr;

    // None, with the reason logged, when the library or one of its functions is missing.
    static std::optional<Canberra> load()
    {
        void *library = dlopen("libcanberra.so.0", RTLD_NOW | RTLD_LOCAL);
        if (!library) {
            qCWarning(lcSounds) << "No event sounds:" << dlerror();
            return std::nullopt;
        }
        Canberra found;
        if (resolveFunction(library, found.create, "ca_context_create")
            && resolveFunction(library, found.destroy, "ca_context_destroy")
            && resolveFunction(library, found.changeProps, "ca_context_change_props")
            && resolveFunction(library, found.open, "ca_context_open")
            && resolveFunction(library, found.play, "ca_context_play")
            && resolveFunction(library, found.strerror, "ca_strerror"))
            return found;
        qCWarning(lcSounds) << "No event sounds:" << dlerror();
        dlclose(library);
        return std::nullopt;
    }
};
} // namespace

// Lives on the player's thread, with the libcanberra context it opens at the first sound.
class CanberraWorker : public QObject {
public:
    ~CanberraWorker() override
    {
        if (m_context)
            m_canberra->destroy(m_context);
    }

    void play(const QByteArray &eventId)
    {
        if (m_unavailable || !open())
            return;
        const int result = m_canberra->play(m_context, 0, CA_PROP_EVENT_ID, eventId.constData(),
                                            CA_PROP_CANBERRA_CACHE_CONTROL, "volatile", nullptr);
        if (result != CA_SUCCESS && !m_failedOnce) {
            // Once is enough: the next sound would fail the same way.
            m_failedOnce = true;
            qCInfo(lcSounds) << "Couldn't play an event sound:" << m_canberra->strerror(result);
        }
    }

private:
    bool open()
    {
        if (m_context)
            return true;
        m_canberra = Canberra::load();
        if (!m_canberra) {
            m_unavailable = true;
            return false;
        }
        int result = m_canberra->create(&m_context);
        if (result == CA_SUCCESS) {
            m_canberra->changeProps(m_context, CA_PROP_APPLICATION_NAME, "Quennet",
                                    CA_PROP_APPLICATION_ID, "app.quennet.Quennet",
                                    CA_PROP_APPLICATION_ICON_NAME, "app.quennet.Quennet", nullptr);
            result = m_canberra->open(m_context);
        }
        if (result == CA_SUCCESS)
            return true;
        m_unavailable = true;
        qCInfo(lcSounds) << "No event sounds:" << m_canberra->strerror(result);
        if (m_context)
            m_canberra->destroy(m_context);
        m_context = nullptr;
        return false;
    }

    std::optional<Canberra> m_canberra;
    ca_context *m_context = nullptr;
    bool m_unavailable = false;
    bool m_failedOnce = false;
};

CanberraSoundPlayer::CanberraSoundPlayer()
    : m_worker(new CanberraWorker)
{
    m_worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.setObjectName(u"Event sounds"_s);
}

CanberraSoundPlayer::~CanberraSoundPlayer()
{
    if (!m_thread.isRunning()) {
        // Never started, so nothing else holds the worker or will delete it.
        delete m_worker;
        return;
    }
    m_thread.quit();
    m_thread.wait();
}

void CanberraSoundPlayer::play(const QString &eventId)
{
    // Started at the first sound, not at start-up: many sessions never play one.
    if (!m_thread.isRunning())
        m_thread.start(QThread::LowPriority);
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker, id = eventId.toUtf8()] { worker->play(id); },
        Qt::QueuedConnection);
}

namespace EventSounds {
bool desktopPlays(const QString &currentDesktop)
{
    if (!GnomeBackend::familyOf(currentDesktop))
        return true;
    GSettingsSchema *schema = installedSchema("org.gnome.desktop.sound", "event-sounds");
    if (!schema)
        return true;
    GSettings *settings = g_settings_new_full(schema, nullptr, nullptr);
    const bool on = g_settings_get_boolean(settings, "event-sounds");
    g_object_unref(settings);
    g_settings_schema_unref(schema);
    return on;
}
} // namespace EventSounds
