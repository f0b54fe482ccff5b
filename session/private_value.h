#pragma once
// session/private_value.h -- readers of operands as readers of private values.
//
// An operand may stand in storage; what is to be kept, or changed, must be private. While a reader runs, what
// it has computed is announced.

#include "quoly/owned.h"
#include "session/evaluator.h"

namespace kelmar {

using operand_reader = void (*)(input_stream **stream, operand *v, name_node **cursor);

// *n = what `read` reads. *n replaced.
template <operand_reader read> void read_private(input_stream **stream, quolynode **n, name_node **cursor)
{
    operand v = {};
    free_quoly(n);
    own(&v.n);
    read(stream, &v, cursor);
    make_private(&v);
    disown();
    *n = v.n;
}

// Go on from the operand in *n, which is replaced.
template <operand_reader rest> void continue_private(input_stream **stream, quolynode **n, name_node **cursor)
{
    operand v = {};
    v.n = *n;
    v.p = &v.n;
    *n = nullptr;
    own(&v.n);
    rest(stream, &v, cursor);
    disown();
    *n = v.n;
}

}  // namespace kelmar
