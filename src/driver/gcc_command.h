// The arguments with which GCC builds generated programs; the same for every host.
#pragma once

#include <QString>
#include <QStringList>

namespace GccCommand {

// Language and code generation. A precompiled header is only taken when these agree.
QStringList compileFlags(bool isDebug);
// For the runtime's own definitions, which no build changes.
QStringList runtimeFlags();
// The C++ runtime goes into the executable.
QStringList linkFlags(bool isDebug);
// "-l" arguments for every system library that the emitted text needs, ahead of them `extra`.
QStringList libraryFlags(const QStringList &extra);

} // namespace GccCommand
