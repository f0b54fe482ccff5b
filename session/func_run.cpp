// session/func_run.cpp -- calls of user functions, while none can be defined.
#include "session/func_run.h"
#include "session/report.h"

namespace kelmar {

void evaluate(input_stream **, token_rec *name, quolynode **n, name_node **)
{
    quoly_set(0, n);
    error(err_unknown_function, name->text);
}

void release_params(func_node *)
{
}

void run_control_statement(token_rec *word, input_stream **, quolynode **n, name_node **)
{
    quoly_set(0, n);
    error(err_unknown_function, word->text);
}

}  // namespace kelmar
