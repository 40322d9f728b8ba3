#include "focus_filter.h"

#include "defaults.h"
#include "do_not_disturb.h"
#include "edition_option.h"
#include "shuffle.h"
#include "shuffle_store.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
QString label(Edition edition)
{
    switch (edition) {
    case Edition::Automatic:
        return u"Automatic"_s;
    case Edition::TimeOfDay:
        return u"Time of day"_s;
    case Edition::Light:
        return u"Light"_s;
    case Edition::Dark:
        return u"Dark"_s;
    }
    Q_UNREACHABLE();
    return {};
}
} // namespace

FocusFilter::FocusFilter(Defaults *defaults, DoNotDisturb *watcher, Shuffle *shuffle,
                         ShuffleStore *store, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_watcher(watcher)
    , m_shuffle(shuffle)
    , m_store(store)
    , m_wallpaper(defaults->focusFilterWallpaper())
    , m_edition(defaults->focusFilterEdition())
{
    if (!EditionOption::toEdition(m_edition))
        m_edition.clear();
    if (m_edition.isEmpty())
        m_edition = EditionOption::rawValue(Edition::Automatic);
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
    setFilter(key, m_edition);
}

void FocusFilter::setEdition(const QString &option)
{
    setFilter(m_wallpaper, option);
}

bool FocusFilter::setFilter(const QString &wallpaper, const QString &edition)
{
    const auto chosen = EditionOption::toEdition(edition);
    if (!chosen)
        return false;
    const QString option = EditionOption::rawValue(*chosen);
    if (wallpaper == m_wallpaper && option == m_edition)
        return true;
    m_wallpaper = wallpaper;
    m_edition = option;
    m_defaults->setFocusFilterWallpaper(wallpaper);
    m_defaults->setFocusFilterEdition(option);
    Q_EMIT filterChanged();
    Q_EMIT summaryChanged();
    apply();
    return true;
}

void FocusFilter::apply()
{
    // Not before the desktop has said: a relaunch under Do Not Disturb keeps its wallpaper on.
    if (!m_started || !m_shuffle || !m_watcher || !m_watcher->isKnown())
        return;
    if (m_watcher->isOn() && !m_wallpaper.isEmpty())
        m_shuffle->setFocus(m_wallpaper, EditionOption::toEdition(m_edition).value_or(Edition::Automatic));
    else
        m_shuffle->setFocus(std::nullopt);
}

QString FocusFilter::summary() const
{
    if (m_wallpaper.isEmpty())
        return u"No wallpaper"_s;
    QString text = m_wallpaper;
    const auto choices = m_store ? m_store->choices() : QList<ShuffleChoice>();
    for (const auto &choice : choices) {
        if (choice.key() == m_wallpaper)
            text = u"%1 (%2)"_s.arg(choice.colourway.name, choice.pack.name);
    }
    const Edition edition = EditionOption::toEdition(m_edition).value_or(Edition::Automatic);
    if (edition != Edition::Automatic)
        text += u", "_s + label(edition);
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
    for (const Edition edition : allEditions) {
        options.append(QVariantMap { { u"value"_s, EditionOption::rawValue(edition) },
                                     { u"label"_s, label(edition) } });
    }
    return options;
}
