#include "cli/interrupts.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t interrupted = 0;

void onSignal(int)
{
    interrupted = 1;
}

} // namespace

namespace Interrupts {

void install()
{
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
#ifdef SIGHUP
    std::signal(SIGHUP, onSignal);
#endif
#ifdef SIGPIPE
    // Whoever reads us may go away; writing then fails, and what runs is ended in order.
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

bool happened()
{
    return interrupted != 0;
}

} // namespace Interrupts
