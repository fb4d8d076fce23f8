// What the system must know of the process before its first window.
#pragma once

namespace NativeProcess {

// Windows are drawn for the scale of the monitor that they are on. Does nothing where the system
// knows no such thing.
void useMonitorScaling();

} // namespace NativeProcess
