#pragma once

#include "placement.h"

#include <QList>
#include <QMap>

// Earlier placements, newest last, for going back: each entry holds what the displays of one
// change showed before it, by display id. Only the latest changes are kept.
class PlacementHistory {
public:
    using Entry = QMap<QString, Placement>;

    static constexpr qsizetype limit = 20;

    [[nodiscard]] const QList<Entry> &entries() const { return m_entries; }
    [[nodiscard]] bool isEmpty() const { return m_entries.isEmpty(); }

    // An empty entry (nothing was shown before) is not kept.
    void push(Entry entry);
    [[nodiscard]] Entry takeLast();

private:
    QList<Entry> m_entries;
};
