// Who the application is: its names, its version, its icon.
#pragma once

#include <QIcon>

namespace AppIdentity {

// "voreldesk.ico" or "vl.ico" in the program's folder, else the one built in.
QIcon icon();

// Tells Qt names, version and icon; after the application object is made.
void apply();

} // namespace AppIdentity
