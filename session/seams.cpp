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

void load_command(input_stream **, quolynode **, name_node **, char, const char *)
{
    decline();
}

void save_command(input_stream **, name_node **, char, const char *)
{
    decline();
}

void list_functions_command(input_stream **, name_node **)
{
    for (const func_node *bucket : func_store) {
        if (bucket) decline();
    }
    error(err_no_functions, token.text);
}

void global_dump_command()
{
    decline();
}

void check_for_mod_out()
{
}

bool change_laurent(std::int32_t)
{
    if (!lintmode) decline();
    error(err_not_in_this_ring, token.text);
    return false;
}

void arrays_on_adjoin()
{
}

void arrays_on_cancel(std::int32_t)
{
}

bool get_from_array(token_rec *name, char *text, int)
{
    text[0] = 0;
    error(err_no_such_array, name->text);
    return false;
}

void get_cut_from_array(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    error(err_no_such_array, token.text);
}

}  // namespace kelmar
