// The fonts that the user has chosen.
#pragma once

#include <QFont>

class SettingsStore;

namespace StoredFonts {

QFont editor(const SettingsStore &store);
// The system's fixed font while none is chosen.
QFont compilerOutput(const SettingsStore &store);

} // namespace StoredFonts
