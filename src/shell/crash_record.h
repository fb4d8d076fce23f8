// The record that a crash leaves behind.
#pragma once

// Appends, when the process crashes, the time, the fault and its address to "VorelDesk_seh.log" in
// the program's folder, or in the user's data folder where that cannot be written; the system then
// ends the process as it does without. On Unix the calls that led there follow; a thread whose
// stack overflowed leaves a record only if it is the one that called this. To be called once, first
// of all.
void installCrashRecord();
