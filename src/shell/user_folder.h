// Where the user's own data lies.
#pragma once

#include <QString>

// The folder "voreldesk" among the user's data. It may not exist yet.
QString userDataFolder();
