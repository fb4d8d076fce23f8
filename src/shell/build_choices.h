// What the settings say about builds.
#pragma once

#include "project/project_build.h"

class SettingsStore;

// Without a platform, which the tool bar knows. A host without Windows builds with MinGW unless the
// user has chosen otherwise.
BuildChoices storedBuildChoices(const SettingsStore &settings);
