// What the system adds to a window without a frame of its own: shadow, corners, dark or light edge.
#pragma once

#include <cstdint>

namespace NativeFrame {

// `window` as the system knows it. Does nothing where the window manager decides alone.
void dress(std::uintptr_t window, bool isDark);

} // namespace NativeFrame
