#include "shell/visited_places.h"

void VisitedPlaces::add(const TextPlace &place)
{
    if (!m_places.isEmpty() && m_places.last().file == place.file &&
        m_places.last().line == place.line)
        return;
    m_places << place;
    if (m_places.size() > maxPlaces)
        m_places.removeFirst();
}

std::optional<TextPlace> VisitedPlaces::takeLast()
{
    if (m_places.isEmpty())
        return std::nullopt;
    return m_places.takeLast();
}
