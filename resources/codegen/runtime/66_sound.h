// Sounds: files and beeps.
#pragma once
#include "00_prelude.h"

// Plays a sound file: WAV, or what the system has a player for (MP3, MIDI, WMA ...). Without
// `wait` it goes on in the background, until the end or the next sound; `loop` repeats it until
// VL_StopSound, and never waits. False when the file is missing or cannot be played.
bool VL_PlaySound(const std::wstring &path, bool wait = false, bool loop = false);
// Stops what this thread has started.
void VL_StopSound();
// A tone of so many hertz (37 to 32767) and milliseconds (at most a minute).
void VL_Beep(intptr_t frequency = 750, intptr_t duration = 300);
