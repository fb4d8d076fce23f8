#include "shell/build_choices.h"

#include "settings/settings_store.h"

BuildChoices storedBuildChoices(const SettingsStore &settings)
{
    BuildChoices choices;
    choices.buildConfig = settings.get(Setting::Compiler::buildConfig);
    choices.chineseError = settings.get(Setting::Compiler::chineseError);
    choices.staticLink = settings.get(Setting::Compiler::staticLink);
    choices.defaultCompiler = settings.get(Setting::Compiler::defaultCompiler);
#ifndef Q_OS_WIN
    choices.defaultCompiler = QStringLiteral("MinGW");
#endif
    return choices;
}
