#include "editor/syntax_colors.h"

#include "settings/settings_store.h"

SyntaxColors::SyntaxColors()
{
    for (const Setting::ColorKey &key : Setting::colors)
        (*this)[key.color] = QColor(QLatin1String(key.fallback));
}

SyntaxColors SyntaxColors::stored(const SettingsStore &store)
{
    SyntaxColors colors;
    for (const Setting::ColorKey &key : Setting::colors)
        colors[key.color] = QColor(store.get(key.color));
    return colors;
}
