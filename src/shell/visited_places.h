// VisitedPlaces: where the user was before he jumped elsewhere.
#pragma once

#include <QString>
#include <QVector>

#include <optional>

struct TextPlace
{
    QString file;
    int line = 0; // from 1
    int column = 0;
};

// The last places, the latest at the end; two in a row are never the same.
class VisitedPlaces
{
public:
    static constexpr int maxPlaces = 100;

    void add(const TextPlace &place);
    // The place before the latest jump, which is forgotten; none when there was no jump.
    std::optional<TextPlace> takeLast();
    bool isEmpty() const { return m_places.isEmpty(); }

private:
    QVector<TextPlace> m_places;
};
