// tests/fuzz/data_files.cpp -- damaged data files at the start of a session.
//
// The bytes name one of the files and edit it: cut it short, make it long, write over it. The others are as
// they should be. The tables are then read, and a session runs that uses them: its values may be wrong, but
// it ends in order.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>
#include <unistd.h>
#include "numbers/startup.h"
#include "quoly/charpoly_data.h"
#include "tests/fuzz/harness.h"

static const char *const names[] = {"chdat",   "Qerrs", "pow228", "pprods", "primelist",
                                    "bprimes", "f256d", "f2t16d", "lrgpmes"};
static constexpr unsigned name_count = sizeof names / sizeof names[0];
static const std::string whole_directory = KELMAR_SOURCE_DIR "/BACKWARD/";
static std::vector<std::uint8_t> whole[name_count];

// Statements that look into every table.
static const std::uint8_t session[] =
    "&(J = x)\n&(J = y)\n30!\n21!\nBin(40, 17)\nBin(149, 70)\nBin(200, 100)\n2^300/3^40\n"
    "Prime(91)\nPrime(100, 3)\n"
    "p := (x + y + 1)^3*(x - 7*y)^2:\nq := (x + y + 1)*(x + 2*y + 1234567)^3:\nGCD(p, q)\np/q + 1/p\n"
    "Content(p, x)\nFactor(p)\nIsprime(1000003)\nSqfree(p, x, 1)\nIrred(x^2 + 1)\n"
    "[m] := [[1, 2, 3][4, 5, 6][7, 8, x]]\nDet[m]\nChpoly([m])\n[m]^3\n1/[m]\nMinpoly([m])\nNosuch\n2 +) 3\n"
    "&(p = 7)\np*q\nGCD(p, q)\n&(p = _i)\n&(p = 256)\nx^3*17 + 200\n5/7\n&(p = _i)\n&(p = 65536)\n"
    "x*40000 + 3/7\n&(p = _i)\n&(p = 30011)\nDet[m]\nGCD(p, q)\n&(p = _i)\nRand\n3.14159265358979323846\n";

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    kelmar_fuzz::prepare(1);
    for (unsigned k = 0; k < name_count; ++k) {
        std::FILE *f = std::fopen((whole_directory + names[k]).c_str(), "rb");
        if (!f) return 1;
        for (int c; (c = std::fgetc(f)) != EOF;) whole[k].push_back(static_cast<std::uint8_t>(c));
        std::fclose(f);
        if (symlink((whole_directory + names[k]).c_str(), names[k]) != 0) return 1;
    }
    return 0;
}

// The bytes that are left of the fuzzer's input.
struct reader {
    const std::uint8_t *at, *end;
    std::uint32_t next()
    {
        return at < end ? *at++ : 0;
    }
    std::uint32_t word()
    {
        const std::uint32_t high = next() << 16, middle = next() << 8;
        return high | middle | next();
    }
};

static void edit(reader *r, std::vector<std::uint8_t> *file)
{
    const std::uint32_t what = r->next() % 6, at = file->empty() ? 0 : r->word() % file->size();
    const std::uint32_t n = r->next();
    if (file->empty()) return;
    if (what == 0) {
        file->resize(at);
    } else if (what == 1) {
        file->insert(file->end(), file->begin() + at, file->end());
    } else if (what == 2) {
        (*file)[at] ^= static_cast<std::uint8_t>(1u << n % 8);
    } else if (what == 3) {
        file->erase(file->begin() + at, file->begin() + std::min<std::size_t>(at + n, file->size()));
    } else {
        for (std::uint32_t k = 0; k < n % 24 && at + k < file->size(); ++k) {
            (*file)[at + k] = static_cast<std::uint8_t>(r->next());
        }
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t n)
{
    kelmar_fuzz::note_input(bytes, n);
    reader r = {bytes, bytes + n};
    const unsigned k = r.next() % name_count;
    std::vector<std::uint8_t> file = whole[k];
    while (r.at < r.end) edit(&r, &file);
    unlink(names[k]);
    if (kelmar_fuzz::write_file(names[k], file.data(), file.size())) {
        kelmar::initialize("./");
        kelmar::load_char_data();
        kelmar_fuzz::run(session, sizeof session - 1);
    }
    unlink(names[k]);
    if (symlink((whole_directory + names[k]).c_str(), names[k]) != 0) std::abort();
    return 0;
}
