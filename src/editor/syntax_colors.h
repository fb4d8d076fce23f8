// SyntaxColors: the colours of the code editor.
#pragma once

#include "settings/setting_keys.h"

#include <QColor>
#include <QMetaType>

#include <array>

class SettingsStore;

// One colour for each key of `Setting::colors`; the defaults of the keys at first.
struct SyntaxColors
{
    std::array<QColor, Setting::colorCount> values;

    SyntaxColors();

    // Every colour of the group "Editor"; what is missing or invalid has its default.
    static SyntaxColors stored(const SettingsStore &store);

    QColor &operator[](Setting::Color color) { return values[std::size_t(color)]; }
    const QColor &operator[](Setting::Color color) const { return values[std::size_t(color)]; }

    bool operator==(const SyntaxColors &other) const { return values == other.values; }
    bool operator!=(const SyntaxColors &other) const { return !(*this == other); }
};

Q_DECLARE_METATYPE(SyntaxColors)
