#include "driver/toolchain.h"

#include "driver/cross_toolchain.h"
#include "driver/mingw_toolchain.h"

std::unique_ptr<Toolchain> Toolchain::forHost(bool wantsMinGW)
{
#ifdef Q_OS_WIN
    Q_UNUSED(wantsMinGW)
    return std::make_unique<MinGwToolchain>();
#else
    return std::make_unique<CrossToolchain>(!wantsMinGW);
#endif
}
