// The dark look of the application.
#pragma once

class QApplication;

// Style, palette, font and style sheet of ":/shell/dark.qss"; for the start, before the first
// window.
void applyDarkTheme(QApplication &application);
