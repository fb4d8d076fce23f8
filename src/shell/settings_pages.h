// The pages of the settings dialog that are plain forms.
#pragma once

#include "shell/settings_form.h"

namespace SettingsPages {

QVector<SettingRow> editorRows();
QVector<SettingRow> compilerRows();
QVector<SettingRow> generalRows();

} // namespace SettingsPages
