#include "shell/scheme_menu.h"

#include "editor/color_schemes.h"
#include "settings/settings_store.h"

#include <QActionGroup>

SchemeMenu::SchemeMenu(SettingsStore &settings, QWidget *parent) : QMenu(parent)
{
    setTitle(QStringLiteral("配色方案"));
    auto *group = new QActionGroup(this);
    const QString current = settings.get(Setting::Editor::colorScheme);
    for (const ColorScheme &scheme : colorSchemes()) {
        QAction *action = addAction(scheme.name);
        action->setCheckable(true);
        action->setChecked(scheme.name == current);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, &settings, &scheme] {
            useColorScheme(settings, scheme);
            settings.set(Setting::Editor::defaultColorScheme, scheme.name);
            emit schemeChosen(scheme.name);
        });
    }
}
