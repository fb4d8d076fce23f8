// The file manager of Windows, which keeps the icons that it once read.
#include "driver/shell_icons.h"

#include <windows.h>

#include <shlobj.h>

void refreshShellIcons()
{
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}
