// The built-in constants need no code of their own: their header defines them.
#include "20_constants.h"
