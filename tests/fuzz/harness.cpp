// tests/fuzz/harness.cpp -- clearing what a session has left, and limiting its polls.
//
// Values and names go by statements that cancel them, as a user would; settings are numbers in globals, found
// through the table of switches, and are put back to what they were when the process began.
#include "tests/fuzz/harness.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>
#include <sys/stat.h>
#include <unistd.h>
#include "poly/variables.h"
#include "session/change_prec.h"
#include "session/files.h"
#include "session/names.h"
#include "session/output.h"
#include "session/prompt.h"
#include "session/start.h"
#include "session/storm.h"
#include "session/switches.h"

namespace kelmar_fuzz {

using namespace kelmar;

static constexpr std::int64_t first_stop = 20000;  // polls before a statement is given up
static constexpr std::int64_t next_stop = 1000;    // polls from there on
static constexpr unsigned history_length = 400;

struct kept_setting {
    std::int32_t *global;
    std::int32_t value;
};

static std::vector<kept_setting> settings;
static ground_ring first_ring;

static void keep_settings()
{
    int count = 0;
    const switch_row *rows = all_switches(&count);
    for (int k = 0; k < count; ++k) {
        if (rows[k].global) settings.push_back({rows[k].global, *rows[k].global});
    }
    first_ring = session_ring;
}

static void restore_settings()
{
    for (const kept_setting &s : settings) *s.global = s.value;
    session_ring = first_ring;
}

// Blanks are left out: behind a name they mean more than that in a session whose output is ugly.
static void cancel_names(std::string *text)
{
    *text += "&(U=0)\n";
    for (const var_node *v : sca_store) {
        for (; v; v = v->next) *text += "@" + std::string(v->text) + "\n";
    }
    for (const func_node *f : func_store) {
        for (; f; f = f->next) *text += "@" + std::string(f->text) + "\n";
    }
    for (int k = 0; k < number_polys; ++k) *text += "&(J=-" + std::string(polyvar[k]) + ")\n";
    *text += "@[**]\n&(l=0)\n";
    if (modularmode) *text += "&(p=_i)\n";
}

static void run_bytes(const std::uint8_t *bytes, std::size_t n)
{
    storm_stop_at = storm_polls + first_stop;
    storm_stop_every = next_stop;
    run_text(bytes, n);
}

static void clear_session()
{
    std::string text;
    close_input_file();
    close_output_file();
    promptsize = 1;       // a longer prompt would swallow the first letters
    cancel_names(&text);  // in the ring that the values are in
    run_bytes(reinterpret_cast<const std::uint8_t *>(text.data()), text.size());
    if (number_polys != 0 || (modularmode && !flotemode)) std::abort();  // the next session would suffer
    restore_settings();
}

void prepare(int exact)
{
    Output = std::fopen("/dev/null", "w");
    exact_session = exact;
    prepare_session(KELMAR_SOURCE_DIR "/BACKWARD/");
    keep_settings();
    mkdir("history", 0777);
}

bool write_file(const char *name, const std::uint8_t *bytes, std::size_t n)
{
    std::FILE *f = std::fopen(name, "wb");
    if (!f) return false;
    const bool written = std::fwrite(bytes, 1, n, f) == n;
    return std::fclose(f) == 0 && written;
}

void note_input(const std::uint8_t *bytes, std::size_t n)
{
    static unsigned count = 0;
    char name[32];
    std::snprintf(name, sizeof name, "history/%06u", count);
    write_file(name, bytes, n);
    std::snprintf(name, sizeof name, "history/%06u", count++ - history_length);
    unlink(name);
}

void run(const std::uint8_t *bytes, std::size_t n)
{
    run_bytes(bytes, n);
    clear_session();
}

}  // namespace kelmar_fuzz
