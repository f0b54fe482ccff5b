#pragma once
// tests/support/variables.h -- variables of polynomials for tests, and how they come into force.

#include <initializer_list>
#include "numbers/stash.h"
#include "poly/variables.h"

namespace kelmar_test {

// Records of six variables, the outermost first.
struct six_variables {
    kelmar::pt record[6] = {};
    six_variables()
    {
        for (int k = 0; k < 6; ++k) {
            record[k].level = static_cast<std::int16_t>(k + 1);
            record[k].cut = 20;
            record[k].next = k < 5 ? &record[k + 1] : nullptr;
        }
    }
    const kelmar::pt *first() const
    {
        return record;
    }
};

// Six variables are in force until the end of the block.
struct six_in_force : six_variables {
    kelmar::pt *saved_names = kelmar::polynames;
    std::int32_t saved_count = kelmar::number_polys;
    six_in_force()
    {
        kelmar::polynames = record;
        kelmar::number_polys = 6;
    }
    six_in_force(const six_in_force &) = delete;
    ~six_in_force()
    {
        kelmar::polynames = saved_names;
        kelmar::number_polys = saved_count;
    }
    kelmar::pt *names()
    {
        return record;
    }
};

// Variables that a session adjoined, until the end of the block; the first is the outermost.
struct adjoined {
    adjoined(std::initializer_list<const char *> names)
    {
        if (!kelmar::numstash) kelmar::open_stashes();
        for (const char *const *name = names.end(); name != names.begin();) {
            kelmar::insert_poly_name(*--name, 0, 0);
        }
    }
    adjoined(const adjoined &) = delete;
    ~adjoined()
    {
        while (kelmar::polynames) kelmar::delete_poly_name(1);
    }
};

}  // namespace kelmar_test
