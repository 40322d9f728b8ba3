#include "placement_history.h"

void PlacementHistory::push(Entry entry)
{
    if (entry.isEmpty())
        return;
    m_entries.append(std::move(entry));
    if (m_entries.size() > limit)
        m_entries.removeFirst();
}

PlacementHistory::Entry PlacementHistory::takeLast()
{
    return m_entries.isEmpty() ? Entry() : m_entries.takeLast();
}
