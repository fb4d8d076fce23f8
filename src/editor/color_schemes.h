// The colour schemes that a user can choose from, each a file of ":/editor/schemes".
#pragma once

#include "editor/syntax_colors.h"

#include <QList>
#include <QString>

struct ColorScheme
{
    QString name; // as the user sees it and as the settings store it
    SyntaxColors colors;
};

// All schemes in the order of their "position". A file that cannot be read is logged and left out;
// a colour that is missing in it has the default of its key.
const QList<ColorScheme> &colorSchemes();

// Null if there is no scheme of that name.
const ColorScheme *findColorScheme(const QString &name);

// Makes the scheme the one in use, with all of its colours. The caller saves the store.
void useColorScheme(SettingsStore &store, const ColorScheme &scheme);
// At the start: the scheme that each start begins with, if another one was in use. Colours that the
// user changed in it stay.
void useDefaultColorScheme(SettingsStore &store);
