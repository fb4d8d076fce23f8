// What all tool bars need.
#pragma once

class QToolBar;

// Names the button behind which a narrow bar hides its rest: Qt gives it no name.
void nameExtension(QToolBar &bar);
