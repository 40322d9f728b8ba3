#include "greeting.h"

#include "defaults.h"
#include "logging.h"
#include "release_notes.h"

#include <QVersionNumber>

Greeting::Greeting(Defaults *defaults, Build build, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_build(std::move(build))
{
}

Greeting::Kind Greeting::greet()
{
    // Recorded before it shows: a setting that can't be saved must not bring it up every time.
    if (!m_defaults->hasLaunchedBefore()) {
        if (!m_defaults->setHasLaunchedBefore(true)
            || !m_defaults->setLastOpenedVersion(m_build.version))
            qCWarning(lcApp) << "Couldn't note that the welcome was shown";
        return Kind::Welcome;
    }
    const QString seen = m_defaults->lastOpenedVersion().value_or(QString());
    if (QVersionNumber::fromString(seen) >= QVersionNumber::fromString(m_build.version))
        return Kind::None;
    if (!m_defaults->setLastOpenedVersion(m_build.version))
        qCWarning(lcApp) << "Couldn't note the version opened";
    if (!m_defaults->showsWhatsNew())
        return Kind::None;
    const QString notes =
        ReleaseNotes::since(m_build.changelog, seen, m_build.version, m_build.development);
    if (notes.isEmpty())
        return Kind::None;
    setNotes(notes);
    return Kind::WhatsNew;
}

void Greeting::showChangelog()
{
    setNotes(ReleaseNotes::all(m_build.changelog));
}

bool Greeting::showsWhatsNew() const
{
    return m_defaults->showsWhatsNew();
}

void Greeting::setShowsWhatsNew(bool on)
{
    if (on == showsWhatsNew())
        return;
    if (!m_defaults->setShowsWhatsNew(on))
        Q_EMIT notSaved();
    // Either way the switch shows what is saved.
    Q_EMIT showsWhatsNewChanged();
}

void Greeting::setNotes(const QString &notes)
{
    if (notes != m_notes) {
        m_notes = notes;
        Q_EMIT notesChanged();
    }
}
