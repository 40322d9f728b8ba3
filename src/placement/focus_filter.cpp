#include "focus_filter.h"

#include "defaults.h"
#include "do_not_disturb.h"
#include "edition_option.h"
#include "focus_wallpaper.h"
#include "logging.h"
#include "shuffle_store.h"

using namespace Qt::Literals::StringLiterals;

namespace {
// Empty text is "automatic"; anything unknown is none.
std::optional<EditionOption> editionOption(const QString &raw)
{
    return raw.isEmpty() ? EditionOption::Automatic : optionFromRawValue<EditionOption>(raw);
}
} // namespace

FocusFilter::FocusFilter(Defaults *defaults, DoNotDisturb *watcher, FocusWallpaper *focus,
                         ShuffleStore *store, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_watcher(watcher)
    , m_focus(focus)
    , m_store(store)
    , m_wallpaper(defaults->focusFilterWallpaper())
    , m_edition(defaults->focusFilterEdition())
{
    if (!editionOption(m_edition))
        m_edition.clear();
    if (m_edition.isEmpty())
        m_edition = optionRawValue(EditionOption::Automatic);
    connect(m_watcher, &DoNotDisturb::changed, this, [this] {
        Q_EMIT doNotDisturbChanged();
        apply();
    });
    connect(m_store, &ShuffleStore::choicesChanged, this, &FocusFilter::summaryChanged);
}

void FocusFilter::start()
{
    m_started = true;
    apply();
}

bool FocusFilter::isDoNotDisturbOn() const
{
    return m_watcher && m_watcher->isOn();
}

void FocusFilter::setWallpaper(const QString &key)
{
    const auto edition = editionOption(m_edition).value_or(EditionOption::Automatic);
    if (!setFilter(key, edition)) {
        // The pickers show the setting as it still is.
        Q_EMIT filterChanged();
        Q_EMIT notSaved();
    }
}

void FocusFilter::setEdition(const QString &option)
{
    const auto chosen = editionOption(option);
    if (chosen && !setFilter(m_wallpaper, *chosen)) {
        Q_EMIT filterChanged();
        Q_EMIT notSaved();
    }
}

bool FocusFilter::setFilter(const QString &wallpaper, EditionOption edition)
{
    const QString option = optionRawValue(edition);
    if (wallpaper == m_wallpaper && option == m_edition)
        return true;
    if (!m_defaults->setFocusFilter(wallpaper, option)) {
        qCWarning(lcDoNotDisturb) << "Couldn't save the Do Not Disturb wallpaper; it stays"
                                  << m_wallpaper;
        return false;
    }
    m_wallpaper = wallpaper;
    m_edition = option;
    Q_EMIT filterChanged();
    Q_EMIT summaryChanged();
    apply();
    return true;
}

void FocusFilter::apply()
{
    // Not before the desktop has said: a relaunch under Do Not Disturb keeps its wallpaper on.
    if (!m_started || !m_focus || !m_watcher || !m_watcher->isKnown())
        return;
    if (m_watcher->isOn() && !m_wallpaper.isEmpty())
        m_focus->setWallpaper(
            m_wallpaper, toEdition(editionOption(m_edition).value_or(EditionOption::Automatic)));
    else
        m_focus->setWallpaper(std::nullopt);
}

QString FocusFilter::summary() const
{
    if (m_wallpaper.isEmpty())
        return tr("No wallpaper");
    QString text = m_wallpaper;
    const auto choices = m_store ? m_store->choices() : QList<ShuffleChoice>();
    for (const auto &choice : choices) {
        if (choice.key() == m_wallpaper)
            text = u"%1 (%2)"_s.arg(choice.colourway.name, choice.pack.name);
    }
    const EditionOption edition = editionOption(m_edition).value_or(EditionOption::Automatic);
    if (edition != EditionOption::Automatic)
        text += u", "_s + optionLabel(edition);
    return text;
}

QVariantList FocusFilter::wallpaperOptions() const
{
    QVariantList options;
    for (const auto &choice : m_store ? m_store->choices() : QList<ShuffleChoice>()) {
        options.append(QVariantMap { { u"key"_s, choice.key() },
                                     { u"name"_s, choice.colourway.name },
                                     { u"packName"_s, choice.pack.name } });
    }
    return options;
}

QVariantList FocusFilter::editionOptions()
{
    QVariantList options;
    for (const auto &option : OptionTraits<EditionOption>::cases) {
        options.append(QVariantMap { { u"value"_s, QString(option.rawValue) },
                                     { u"label"_s, optionLabel(option.value) } });
    }
    return options;
}
