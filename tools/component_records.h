// Derives the catalogue's records of window components from the generator's tables.
#pragma once

#include <QJsonArray>
#include <QJsonObject>

// A record for each property, method and event of each type of component: of the classic forms and,
// under names of their own, of the self-drawn ones. `members` and `events` are the contents of
// component_members.json and events.json. A record has no "parameters" when one of them is not
// explained.
QJsonArray componentRecords(const QJsonObject &members, const QJsonObject &events);
