#pragma once
// numbers/mode.h -- the ground ring: the mode flags and the view of a number that they make live.
//
// A number has no tag. What it means is told by these flags alone, which are always tested in one order:
// flotemode, modularmode, lintmode, integerflag. live_view() is that order. Code outside the number layer
// asks for the intent (exact_integers, prime_field), never for a flag.

#include <cstdint>

namespace kelmar {

// default 0; numbers are doubles; the session start and exact stretches; reset: mode
inline std::int32_t flotemode = 0;
// default 0; numbers are words (or doubles): digit chains are not used; the mode changes; reset: mode
inline std::int32_t lintmode = 0;
// default 0; word arithmetic reduces by modulus; the mode changes and internal excursions; reset: mode
inline std::int32_t modularmode = 0;
// default 0; exact mode on the first digit alone, with no carry; the statement Integer; reset: unwind
inline std::int32_t integerflag = 0;

// default -1; 2 .. 2147483646, -1 outside modular mode; the mode changes; reset: mode
inline std::int32_t modulus = -1;
// default 0; modulus / 2; written with modulus
inline std::int32_t half_modulus = 0;
// default 0; 1 when modulus < 65535: a product of two residues fits 32 bits; written with modulus
inline std::int32_t smallmodulus = 0;
// default 0; modulus is a prime, or a table field is on; written with modulus
inline std::int32_t mod_is_prime = 0;
// default 0; 2^28 mod modulus; written with modulus
inline std::int32_t two28_mod = 0;
// default 0; a table field of characteristic two is on; written with modulus
inline std::int32_t finf = 0;
// default 0; the table field has 2^8, or 2^16, elements; written with modulus
inline std::int32_t f256 = 0;
inline std::int32_t f2t16 = 0;

// default 0; the numbers of the session are doubles: what a statement of the user expects; the start, when it
// sets the ground ring; reset: never
inline std::int32_t session_flote = 0;

// default 1; remainders are made non-negative; the switch &|
inline std::int32_t pos_mod = 1;
// default 1; residues above half_modulus are shown as negative values; the switch &H
inline std::int32_t alt_form_display = 1;

enum num_view {
    view_float,    // real
    view_field,    // word: an element code of a table field
    view_modular,  // word: a residue 0 .. modulus-1
    view_word,     // word: a signed machine word that wraps
    view_small,    // the first digit alone, no carry
    view_digits    // the whole digit chain
};

// The view that is live. The order of the tests is the meaning of the flags.
inline num_view live_view()
{
    if (flotemode) return view_float;
    if (modularmode) return finf ? view_field : view_modular;
    if (lintmode) return view_word;
    return integerflag ? view_small : view_digits;
}

// True where numbers are digit chains, so that integers are exact.
inline bool exact_integers()
{
    return !flotemode && !modularmode && !lintmode;
}

// True where every nonzero number has an inverse among the numbers.
inline bool ground_field()
{
    return flotemode || (modularmode && mod_is_prime);
}

// True in modular mode over a prime, table fields left out.
inline bool prime_field()
{
    return !flotemode && modularmode && !finf && mod_is_prime;
}

// The modulus -------------------------------------------------------------------------------------------

// modulus = m, 2 .. 2147483646, and with it half_modulus, smallmodulus, two28_mod, mod_is_prime; no table
// field. The view stays. Cost: a primality test; not for set_prime_modulus, where m is known to be a prime.
void set_modulus(std::int32_t m);
void set_prime_modulus(std::int32_t p);

// The table field of 256 or 65536 elements stands for the modulus, which has that value. The view stays.
void set_table_field(std::int32_t order);

// Everything that tells the ground ring, kept while a routine works over another one.
struct ground_ring {
    std::int32_t flote, modular, lint, integer;
    std::int32_t modulus, half, small, prime, two28;
    std::int32_t field, field_256, field_2t16;
};
void keep_ring(ground_ring *r);       // *r = what is live
void put_ring(const ground_ring *r);  // make that live

// The view -----------------------------------------------------------------------------------------------

// The flags that choose the view, kept while a routine works in another one.
struct saved_view {
    std::int32_t flote, modular, lint, integer;
};

// Make the digit view live; what was live is kept in *saved. No error may be raised before leave_view.
inline void enter_digits(saved_view *saved)
{
    *saved = {flotemode, modularmode, lintmode, integerflag};
    flotemode = modularmode = lintmode = integerflag = 0;
}

// Make live again what enter_digits kept.
inline void leave_view(const saved_view *saved)
{
    flotemode = saved->flote;
    modularmode = saved->modular;
    lintmode = saved->lint;
    integerflag = saved->integer;
}

}  // namespace kelmar
