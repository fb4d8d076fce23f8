// Programs that were started outside of the IDE and hold a build's output.
#pragma once

#include <QString>

// Ends every process of the executable `name` ("工程.exe") with all that it started, and waits for
// it. True when there was one. Only a system that locks running programs needs it; elsewhere it
// does nothing.
bool endRunningImage(const QString &name);
