// session/main.cpp -- the two programs. They differ in the ground ring of the session alone.
#include "session/start.h"

#ifdef KELMAR_EXACT
static constexpr int exact = 1;
#else
static constexpr int exact = 0;
#endif

int main(int, char **argv)
{
    return kelmar::run_session(argv, exact);
}
