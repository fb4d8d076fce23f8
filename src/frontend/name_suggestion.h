// Finds the name that a misspelt one probably means.
#pragma once

#include <QString>
#include <QStringList>

// Letters left out, added, changed or swapped with the next that lie between two names; counting
// stops above `limit` and gives `limit` + 1.
int nameDistance(const QString &a, const QString &b, int limit);

// The name among `candidates` that is closest to `name`, the earlier one where several are as
// close; empty when none is close enough to be meant. Case counts for nothing.
QString closestName(const QString &name, const QStringList &candidates);
