#pragma once
// tests/support/gcds.h -- what tests of gcds share: the tables of primes, and where problems ended.

#include <algorithm>
#include <string>
#include "gcd/driver.h"
#include "numbers/startup.h"
#include "tests/support/data_files.h"
#include "tests/support/views.h"

namespace kelmar_test {

// Have the primes of the number layer, which images are taken modulo.
inline void load_primes()
{
    if (kelmar::prime[0].word > 0) return;
    const kept_view kept;
    kelmar::flotemode = kelmar::modularmode = kelmar::lintmode = kelmar::integerflag = 0;
    output_of([] { kelmar::initialize(data_directory.c_str()); });
}

// Where problems ended since this was made.
struct exits_since {
    std::int64_t before[kelmar::gcd_exit_count];
    exits_since()
    {
        std::copy(kelmar::gcd_exits, kelmar::gcd_exits + kelmar::gcd_exit_count, before);
    }
    std::int64_t count(kelmar::gcd_exit k) const
    {
        return kelmar::gcd_exits[k] - before[k];
    }
    std::string text() const
    {
        std::string s = "exits:";
        for (int k = 0; k < kelmar::gcd_exit_count; ++k) {
            if (kelmar::gcd_exits[k] > before[k]) s += " " + std::to_string(k);
        }
        return s;
    }
};

}  // namespace kelmar_test
