// session/interrupt.cpp -- the keyboard interrupt.
//
// The handler sets one flag. It is answered at the next safe point: a new command level stands on top of the
// computation. While an operand is altered in place nothing is answered; the next safe point is never far.
#include "session/interrupt.h"
#include <csignal>
#include "session/report.h"
#include "storage/undo.h"

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
}

void answer_interrupt()
{
    if (undo_depth > 0) return;
    interrupt_flag = 0;
    error(new_level, " ");
}

}  // namespace kelmar
