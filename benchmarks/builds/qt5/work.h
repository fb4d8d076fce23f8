// What the button starts.
#pragma once

int settleAll(int start);
