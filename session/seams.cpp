// session/seams.cpp -- commands whose modules do not exist yet.
#include "session/seams.h"
#include "session/errors.h"
#include "session/names.h"
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

[[noreturn]] static void decline()
{
    std::fputs("not implemented\n", Output);
    restart_session();
}

void set_mod_out_command(input_stream **, name_node **, bool)
{
    decline();
}

void check_for_mod_out()
{
}

}  // namespace kelmar
