// What a program does before its first and after its last statement.
#include "90_lifecycle.h"

#include <cstdio>
#include <cstdlib>

void VL_Runtime_Startup()
{
    VL_InitOutput();
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    srand(
        (unsigned)(now.QuadPart ^ (long long)time(NULL) ^ (long long)GetCurrentProcessId() << 16));
}

void VL_Runtime_Shutdown()
{
    fflush(NULL);
}
