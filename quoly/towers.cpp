// quoly/towers.cpp -- values in a tower of fields.
#include "quoly/towers.h"
#include "session/report.h"

namespace kelmar {

void convert_field_denominator(polynode **, polynode **)
{
    kelmar_error("poly invertibility failure. bad pp2", 1);
}

void above_field_modout(polynode **)
{
    kelmar_error("no relation above the field.", 1);
}

}  // namespace kelmar
