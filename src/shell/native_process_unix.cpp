#include "shell/native_process.h"

void NativeProcess::useMonitorScaling() {}
