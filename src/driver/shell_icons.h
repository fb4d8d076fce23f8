// Tells the host's file manager that programs may have other icons now.
#pragma once

// Does nothing on a host whose file manager shows no icons of Windows programs.
void refreshShellIcons();
