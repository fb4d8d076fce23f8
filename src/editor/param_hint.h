// The parameter hint: the forms of a call with the current parameter marked.
#pragma once

#include <QString>
#include <QStringList>

// Rich text, one line for each form; the parameter for `argument` (from 0) is bold. Forms that have
// no such parameter are dim if another has one. "（无）" stands for an empty list of parameters.
QString paramHintHtml(const QStringList &forms, int argument);
