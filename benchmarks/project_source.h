// Generated projects for measurements: sources of any length that look like real ones.
#pragma once

#include <QString>

// A valid Vorel source of about `lines` lines, always the same for the same number: functions with
// declarations, branches, loops, arrays, commands and comments, and a class now and then.
QString projectSource(int lines);
