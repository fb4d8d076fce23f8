// What a program does before its first and after its last statement.
#pragma once
#include "30_output.h"

// Output mode and the seed of random numbers.
void VL_Runtime_Startup();
// Hands on what the C library has not written yet.
void VL_Runtime_Shutdown();
