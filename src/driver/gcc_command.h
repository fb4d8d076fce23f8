// The arguments with which GCC builds generated programs; the same for every host.
#pragma once

#include <QString>
#include <QStringList>

namespace GccCommand {

// Language and code generation. A precompiled header is only taken when these agree.
QStringList compileFlags(bool isDebug);
// The C++ runtime goes into the executable, names of functions do not.
QStringList linkFlags();
// Bytes, as the linker takes them. Functions that call themselves are a beginner's first loops: a
// deep stack lets them.
QString stackSize();
// "-l" arguments for every system library that the emitted text needs, ahead of them `extra`.
QStringList libraryFlags(const QStringList &extra);

} // namespace GccCommand
