// A host whose file manager has nothing to refresh.
#include "driver/shell_icons.h"

void refreshShellIcons() {}
