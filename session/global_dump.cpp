// session/global_dump.cpp -- the settings, one a line.
//
// A switch that is on or off has a pair of texts; one with a number has a format. The lines stand in the
// order of their topics: numbers, display, errors, methods, storage.
#include "session/global_dump.h"
#include "gcd/polygcd.h"
#include "numbers/decimal.h"
#include "numbers/mode.h"
#include "poly/display.h"
#include "poly/div_fast.h"
#include "poly/mul.h"
#include "session/arr_access.h"
#include "session/errors.h"
#include "session/files.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/poly_readin.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/settings.h"
#include "session/timing.h"
#include "storage/low_memory.h"

namespace kelmar {

// Lines that are no plain pair or number ----------------------------------------------------------------

static void write_ground_ring(std::FILE *out)
{
    std::fputs(" Basic arithmetic ring: ", out);
    if (flotemode) {
        std::fputs("floating point arithmetic\n", out);
    } else if (finf) {
        std::fprintf(out, "the field of %d elements\n", f256 ? 256 : 65536);
    } else if (modularmode) {
        std::fprintf(out, "integers modulo %d\n", modulus);
    } else {
        std::fputs("rational arithmetic\n", out);
    }
}

static void write_variables(std::FILE *out)
{
    if (!polynames) {
        std::fputs(" There are no polynomial variables.\n", out);
        return;
    }
    std::fputs(" Polynomial variables, level 1 first:", out);
    for (const pt *r = polynames; r; r = r->next) std::fprintf(out, " %s", r->name);
    std::fputc('\n', out);
}

static void write_gcd_stash(std::FILE *out)
{
    if (lookupgcd > 0) {
        std::fprintf(out, " GCD stashing level is %0d, so it's on. table mass: %d\n", lookupgcd,
                     static_cast<int>(gcdmass));
    } else {
        std::fprintf(out, " GCD stashing level is %0d, so it's off. table mass: %d\n", lookupgcd,
                     static_cast<int>(gcdmass));
    }
}

static void write_detcutoff(std::FILE *out)
{
    if (detcutoff >= 0) {
        std::fprintf(out, " Detcutoff is %1d.\n", detcutoff);
    } else {
        std::fputs(" Detcutoff is the default.\n", out);
    }
}

static void write_determinant_method(std::FILE *out)
{
    std::fputs(gauss_cutoff == 1 ? " Determinants try fraction-free elimination.\n"
                                 : " Determinants do not try fraction-free elimination.\n",
               out);
    std::fprintf(out, " Determinants are interpolated above mass %d, modulo a prime above %d.\n",
                 rat_det_method_cut, mod_det_method_cut);
}

static void write_first_index(std::FILE *out)
{
    std::fputs(" Array initial index is ", out);
    std::fputs(addresser ? "1.\n" : "0.\n", out);
}

static void write_prompt(std::FILE *out)
{
    std::fprintf(out, " Prompt is:%s\n", prompt[0] == '\r' ? " <cr>" : prompt);
}

static void write_files(std::FILE *out)
{
    std::fprintf(out, " Input file: %s\n", inpuf ? input_file_name : "none");
    std::fprintf(out, " Output file: %s\n", outpuf ? output_file_name : "none");
}

// Pairs and numbers -------------------------------------------------------------------------------------

struct pair_line {
    const std::int32_t *flag;
    const char *on, *off;
};

struct number_line {
    const std::int32_t *value;
    const char *format;
};

static void write_pairs(std::FILE *out, const pair_line *rows, int n)
{
    for (int i = 0; i < n; ++i) std::fputs(*rows[i].flag ? rows[i].on : rows[i].off, out);
}

template <int n> static void write_pairs(std::FILE *out, const pair_line (&rows)[n])
{
    write_pairs(out, rows, n);
}

template <int n> static void write_numbers(std::FILE *out, const number_line (&rows)[n])
{
    for (const number_line &row : rows) std::fprintf(out, row.format, *row.value);
}

static const pair_line shown_first[] = {
    {&errorpush, " Errors in functions push a new level.\n", " Errors do not push a new level.\n"},
    {&noisy, " Results are displayed.\n", " Displaying results is deactivated.\n"},
    {&chpoly_block, " Chpoly is slowed in modular mode.\n", " Chpoly is optimized in modular mode.\n"},
    {&hen_check, " Hensel gcd answers are double checked.\n", " Hensel gcd answers are single checked.\n"},
};

static const pair_line shown_later[] = {
    {&chinhensel, " Hensel and CRT are used for multivariate GCD.\n", " No Hensel or CRT for GCD.\n"},
    {&mod_matrix_ok, " Integer matrices are inverted by the adjoint-CRT method.\n",
     " Integer matrices are inverted by elimination.\n"},
    {&lagrange_stash, " LaGrange determinants are written to the save file.\n",
     " No writing LaGrange determinants to file.\n"},
    {&try_rat, " Exact polynomial division tries the fastest probabilistic test.\n",
     " No fastest probabilistic test for exact poly division.\n"},
    {&laurent, " Negative exponents enabled.\n", " Negative exponents disabled.\n"},
    {&pos_mod, " Remainders are non-negative.\n", " Remainders can be negative.\n"},
    {&alt_form_display, " Large residues are displayed as negative numbers.\n",
     " Residues are displayed as 0, 1, ..., modulus - 1.\n"},
    {&nomodpolyreadin, " Integers are not reduced while polynomials are read.\n",
     " Integers are reduced while polynomials are read.\n"},
    {&monomial_list, " Polynomials are displayed as list of monomials.\n",
     " Polynomials are displayed in nested form.\n"},
    {&uglyprint, " Display is in ugly style.\n", " Display is in lovely style.\n"},
    {&do_line_sup, " Output of long polys to the terminal is suppressed.\n",
     " No suppression of output of long polys.\n"},
    {&extra_line, " An extra line follows each display.\n", " No extra line after display.\n"},
    {&verbose, " Informative comments are displayed.\n", " Informative comments are suppressed.\n"},
    {&windy, " Extra verbosity is on.\n", " Extra verbosity is off.\n"},
    {&timerflag, " Timing is enabled.\n", " Timing is disabled.\n"},
    {&danger_ok, " Interrupts are answered anytime.\n", " Interrupts wait at dangerous times.\n"},
    {&close_inpuf, " An error while loading closes the input file.\n",
     " An error while loading leaves the input file open.\n"},
    {&diskstore, " Disk space is used for virtual memory.\n", " No disk space for virtual memory.\n"},
};

static const number_line numbers_last[] = {
    {&dispcutoff, " Lines are broken at column %d.\n"},
    {&aux_num_1factor, " Auxiliary primes looked for, first list: %d.\n"},
    {&aux_num_2factor, " Auxiliary primes looked for, second list: %d.\n"},
};

// The list ------------------------------------------------------------------------------------------------

void eglobal_dump(std::FILE *out)
{
    write_ground_ring(out);
    std::fprintf(out, " Display constant is %1d.\n", disp_size);
    write_pairs(out, shown_first);
    write_gcd_stash(out);
    write_detcutoff(out);
    std::fprintf(out, " Kartasuba cutoff for poly multiplication is %1d.\n", poly_cutoff);
    write_determinant_method(out);
    std::fprintf(out, " Sparse pivot heuristic is %d.\n", pseudet_heur);
    write_first_index(out);
    std::fprintf(out, " Command interrupt is %d.\n", m_interrupt);
    write_variables(out);
    write_pairs(out, shown_later);
    write_numbers(out, numbers_last);
    write_prompt(out);
    write_files(out);
}

void global_dump()
{
    eglobal_dump(Output);
}

}  // namespace kelmar
