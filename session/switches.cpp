// session/switches.cpp -- the commands that begin with & .
#include "session/switches.h"
#include "session/levels.h"
#include "session/loop.h"
#include "session/output.h"
#include "session/report.h"
#include "session/unwind.h"

namespace kelmar {

void switch_statement(input_stream **stream, quolynode **result, name_node **cursor)
{
    scanner(stream, &token, cursor);
    quoly_set(0, result);
    switch (token.text[0]) {
    case 'q':
        jump_to_exit();
    case '@':
        error(panic_stop, " ");
        break;
    default:
        error(err_unknown_switch, token.text);
    }
    scanner(stream, &token, cursor);
}

}  // namespace kelmar
