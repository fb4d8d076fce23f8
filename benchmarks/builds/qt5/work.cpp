#include "work.h"

int settleAll(int start)
{
    return start % 1000003;
}
