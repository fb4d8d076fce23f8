// Traces of what the shell does, for whoever looks for the reason of something strange.
#pragma once

#include <QString>

namespace TraceFile {

inline constexpr char buildSteps[] = "vl_run_trace.txt";
inline constexpr char saving[] = "VL_IDE_save_trace.log";

// One line at the end of the file of that name in the temporary folder; a file that has grown large
// is begun anew. Failures are not told.
void append(const char *fileName, const QString &step);

} // namespace TraceFile
