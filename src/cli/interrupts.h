// Ctrl-C and the wish of the system that vorelc ends, as a flag.
#pragma once

namespace Interrupts {

// From here on such a signal ends nothing by itself.
void install();
bool happened();

} // namespace Interrupts
