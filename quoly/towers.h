#pragma once
// quoly/towers.h -- values in a tower of fields, whose variables are defined by relations.
//
// No relation can be set, so field_depth is 0 and modout_above_field is 0: what is here is not reached.

#include "quoly/quoly.h"

namespace kelmar {

// *top / *den without the denominator, which lies wholly in the field. Faults: no relation makes a field.
void convert_field_denominator(polynode **top, polynode **den);

// *p reduced by all relations above the field. Faults: there is none.
void above_field_modout(polynode **p);

}  // namespace kelmar
