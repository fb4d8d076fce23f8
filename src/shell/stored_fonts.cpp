#include "shell/stored_fonts.h"

#include "settings/settings_store.h"

#include <QFontDatabase>

namespace {

// A family that is not installed gets a substitute with letters of one width.
QFont fixedFont(const QString &family, int size)
{
    QFont font(family, size);
    font.setStyleHint(QFont::Monospace);
    return font;
}

} // namespace

QFont StoredFonts::editor(const SettingsStore &store)
{
    return fixedFont(store.get(Setting::Editor::fontFamily), store.get(Setting::Editor::fontSize));
}

QFont StoredFonts::compilerOutput(const SettingsStore &store)
{
    const QString family = store.get(Setting::Compiler::outputFontFamily);
    return fixedFont(family.isEmpty() ? QFontDatabase::systemFont(QFontDatabase::FixedFont).family()
                                      : family,
                     store.get(Setting::Compiler::outputFontSize));
}
