// session/interrupt.cpp -- the keyboard interrupt.
//
// The handler sets one flag. It is answered at the next safe point: a new command level stands on top of the
// computation, which never alters an operand in place.
#include "session/interrupt.h"
#include <csignal>
#include "session/report.h"
#include "storage/low_memory.h"

namespace kelmar {

static void interrupt(int)
{
    interrupt_flag = 1;
}

void install_interrupt()
{
    struct sigaction action = {};
    action.sa_handler = interrupt;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);  // writing past the limit of a file fails then, and is told
}

void answer_interrupt()
{
    if (interrupts_held) return;
    interrupt_flag = 0;
    push_level_here();
    keep_reserve();
}

}  // namespace kelmar
