// session/start.cpp -- the start of a session, in a fixed order of steps.
//
// Tables are read in the digit view; then the start-up file runs; then the ground ring of the session is set.
// The ring is set again after every panic stop, because whatever was abandoned may have left it.
#include "session/start.h"
#include "matrix/array.h"
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>
#include "numbers/mode.h"
#include "numbers/random.h"
#include "numbers/startup.h"
#include "poly/div_fast.h"
#include "quoly/charpoly_data.h"
#include "poly/ring_change.h"
#include "poly/variables.h"
#include "quoly/owned.h"
#include "session/change_prec.h"
#include "session/errors.h"
#include "session/evaluator.h"
#include "session/execname.h"
#include "session/func_records.h"
#include "session/interrupt.h"
#include "session/names.h"
#include "session/loop.h"
#include "session/output.h"
#include "session/prompt.h"
#include "session/pset.h"
#include "session/report.h"
#include "session/statement.h"
#include "session/timing.h"
#include "session/trace.h"
#include "session/unwind.h"
#include "storage/accounting.h"
#include "storage/low_memory.h"
#include "storage/sizes.h"

namespace kelmar {

// The process -------------------------------------------------------------------------------------------

#ifdef KELMAR_MALLOC_RECORDS
// the sanitizer cleans no more than 64 MiB at a jump
static constexpr rlim_t wanted_stack = rlim_t{56} << 20;
#else
static constexpr rlim_t wanted_stack = rlim_t{1} << 30;  // bytes
#endif
static constexpr rlim_t stack_reserve = 262144;  // bytes that check_stack keeps for a report

// Where the stack is smaller than it may be, raise its limit and start the program once more: the room
// below a stack is laid out when a program starts.
static void raise_stack_limit(char **argv)
{
    struct rlimit limit;
    if (getrlimit(RLIMIT_STACK, &limit) != 0) return;
    const struct rlimit before = limit;
    limit.rlim_cur = limit.rlim_max < wanted_stack ? limit.rlim_max : wanted_stack;
    if (before.rlim_cur >= limit.rlim_cur) return;
    const int result = setrlimit(RLIMIT_STACK, &limit);
    if (result != 0) {
        std::fprintf(stderr, "setrlimit returned result = %d\n", result);
        return;
    }
    execv("/proc/self/exe", argv);
    setrlimit(RLIMIT_STACK, &before);  // it could not be started again: this is the stack there is
}

// Set the floor that check_stack asks for.
static void set_stack_floor()
{
    struct rlimit limit;
    if (getrlimit(RLIMIT_STACK, &limit) != 0) return;
    const rlim_t usable = limit.rlim_cur < wanted_stack ? limit.rlim_cur : wanted_stack;
    char *here = static_cast<char *>(__builtin_frame_address(0));
    stack_floor = usable > stack_reserve ? here - (usable - stack_reserve) : here;
}

#ifndef KELMAR_MALLOC_RECORDS
static constexpr int primed_nodes = 5001;  // on the free list of polynomial terms before the first prompt
#endif

static void write_banner(const char *directory)
{
    std::fprintf(Output, "\n%s, a computer algebra system for polynomials and matrices.\n",
                 exact_session ? "Kelmar-exact" : "Kelmar");
    std::fputs("This software comes with no warranty of any kind.\n", Output);
    std::fprintf(Output, "Reading initialization data from directory %s\n initializing...\n", directory);
    std::fflush(Output);
}

// The free lists of the session's own records, for the memory report.
static void register_free_lists()
{
    record_kinds[row_var].count = count_free_vars;
    record_kinds[row_name].count = count_free_names;
    record_kinds[row_name].list = list_free_names;
    record_kinds[row_form].count = [](std::int64_t limit) {
        return count_list<form_node, &form_node::next>(formhead, limit);
    };
    record_kinds[row_cond].count = [](std::int64_t limit) {
        return count_list<cond_node, &cond_node::link>(condhead, limit);
    };
}

void prepare_session(const char *data_directory)
{
    set_stack_floor();
    open_stashes();
    keep_reserve();
    register_free_lists();
    register_poly_records();
    register_array_records();
    register_fix_records();
    make_ring();
    make_trace();
    make_owned();
    init_psets();
    initialize(data_directory);
    load_char_data();
#ifndef KELMAR_MALLOC_RECORDS
    prime_polygarb(primed_nodes);
#endif
    srandom(1);
    Set_prods_for_char();
    initial_memory = static_cast<std::int64_t>(memavail()) / 4;
    virtual_cut = static_cast<std::int64_t>(memavail()) / 5;
}

// The start-up file -----------------------------------------------------------------------------------------

// default none; the start-up file while it runs; load_startup; reset: unwind
static input_stream kelstartup = {-1, 1, nullptr, 0, 0};
static std::int32_t startup_integerflag = 0;

static int open_startup(const char *directory)
{
    char path[path_room + 16];
    const int here = open("kelstart.txt", O_RDONLY);
    if (here >= 0) return here;
    std::snprintf(path, sizeof path, "%skelstart.txt", directory);
    return open(path, O_RDONLY);
}

// Read the first item of the start-up file, the memory that the user grants.
static void read_memory_grant(input_stream *in)
{
    int megabytes = 0;
    int c = peek_char(in);
    while (in_set(throwaways, static_cast<char>(c)) && c != end_of_input) {
        get_char(in);
        c = peek_char(in);
    }
    for (; c >= '0' && c <= '9'; c = peek_char(in)) {
        if (megabytes < 100000000) megabytes = megabytes * 10 + (c - '0');
        get_char(in);
    }
    std::fprintf(Output, " Amount of RAM you specified (mbytes): %d.\n", megabytes);
    initial_memory = std::int64_t{225000} * megabytes;
    virtual_cut = initial_memory / 5;
    totalavailablememory = 4 * initial_memory;
    drop_line(in);
}

// Run one statement of the start-up file; its value is not shown, and so ":" does not end it. The line's tail
// is ignored.
static void run_startup_statement(input_stream **stream)
{
    quolynode *value = nullptr;
    own(&value);
    warn_cnt = 0;
    scanner(stream, &token, &zilch);
    reset_statement();
    parse(stream, &value, &zilch);
    disown();
    free_quoly(&value);
    if (!ends_statement(&token) || token.text[0] == ':') error(err_bad_end, token.text);
    leftover[0] = 0;
    drop_line(*stream);
}

static void close_startup()
{
    if (kelstartup.fd < 0) return;
    close_input(&kelstartup);
    tt_flag = 1;
    integerflag = startup_integerflag;
}

static void load_startup(const char *directory)
{
    const int fd = open_startup(directory);
    if (fd < 0) {
        std::fputs("No kelstart.txt file.\n", stderr);
        return;
    }
    startup_integerflag = integerflag;
    tt_flag = 0;
    leftover[0] = 0;
    open_input(&kelstartup, fd);
    read_memory_grant(&kelstartup);
    input_stream *stream = &kelstartup;
    while (peek_char(stream) != end_of_input) run_startup_statement(&stream);
    close_startup();
    leftover[0] = 0;
    totalavailablememory = 4 * initial_memory;
}

// The session -----------------------------------------------------------------------------------------------

// The last step before the first prompt, and before that after a panic stop. The start-up file has run over
// the integers; its values go over to doubles once. An exact session goes on in whatever ring is in force.
static void set_ground_ring()
{
    try_rat = rat_yes = 0;
    const bool floats_already = session_flote || flotemode;
    if (!floats_already || exact_session) put_ring(&session_ring);
    if (exact_session) return;
    if (!floats_already) enter_floats();
    session_flote = flotemode = lintmode = 1;
    modularmode = 0;
}

static void start_session(char **argv)
{
    char directory[path_room];
    start_timing_of_start_up();
    raise_stack_limit(argv);
    find_data_directory(argv[0], directory);
    write_banner(directory);
    prepare_session(directory);
    std::fputs("\n ", Output);
    showtime();
    load_startup(directory);
    stop_timing();
    if (timerflag) write_timing();
}

// The common end of the start and of every panic stop: the first prompt, and then statements for ever.
[[noreturn]] static void serve()
{
    std::fputc('\n', Output);
    leftover[0] = 0;
    clear_ring();
    restart_prompt();
    set_ground_ring();
    for (;;) statement_loop();
}

// The exit status: 1 when what was written got lost.
static int farewell()
{
    std::fputs("\n bye\n", Output);
    return std::fflush(Output) == 0 && !std::ferror(Output) ? 0 : 1;
}

int run_session(char **argv, int exact)
{
    static input_stream standard_input;
    exact_session = exact;
    open_input(&standard_input, 0);
    Input = &standard_input;
    Output = stdout;
    find_watchers();
    install_interrupt();
    if (sigsetjmp(buf98, 1)) return farewell();
    if (sigsetjmp(buf9999, 1)) {
        close_startup();
    } else {
        start_session(argv);
    }
    serve();
}

void run_text(const unsigned char *bytes, std::size_t n)
{
    static input_stream text;
    open_text(&text, bytes, n);
    Input = &text;
    if (sigsetjmp(buf98, 1)) {
        farewell();
        abandon_session();
        return;
    }
    sigsetjmp(buf9999, 1);
    serve();
}

}  // namespace kelmar
