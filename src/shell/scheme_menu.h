// SchemeMenu: the colour schemes as a menu, for the button in the title bar.
#pragma once

#include <QMenu>

class SettingsStore;

// Choosing one stores its colours.
class SchemeMenu : public QMenu
{
    Q_OBJECT

public:
    explicit SchemeMenu(SettingsStore &settings, QWidget *parent = nullptr);

signals:
    void schemeChosen(const QString &name);
};
