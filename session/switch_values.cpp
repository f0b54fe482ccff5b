// session/switch_values.cpp -- switches that hold a number or a text.
//
// Every question is one bracket: the terminal becomes the source, one expression is read there with true
// integers, and what was in hand comes back. An answer that is no proper number is reported while its own
// tokens are in hand. Texts of a question are always written, since somebody answered it.
#include "session/switch_values.h"
#include <cmath>
#include "numbers/decimal.h"
#include "numbers/dispatch.h"
#include "numbers/random.h"
#include "poly/mul.h"
#include "session/arr_access.h"
#include "session/change_prec.h"
#include "session/evaluator.h"
#include "session/expr.h"
#include "session/levels.h"
#include "session/load.h"
#include "session/output.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/save.h"
#include "session/settings.h"

namespace kelmar {

// Numbers and questions ---------------------------------------------------------------------------------

bool quoly_to_word(const quolynode *q, std::int32_t *v)
{
    if (!q->is_num) return false;
    if (num_to_int(q->num, v)) return true;
    if (!flotemode || !(std::fabs(q->num->real) < 2147483648.0)) return false;
    *v = static_cast<std::int32_t>(q->num->real);
    return true;
}

void begin_question(asking *a, const char *question, quolynode **answer, bool true_integers)
{
    std::int32_t saved = 0;
    std::fputs(question, Output);
    begin_answer(a);
    await_answer();
    scanner(&Input, &token, &zilch);
    if (true_integers) check_modular(&saved);
    old_expre(&Input, answer, &zilch);
    restore_modular(&saved);
}

// Ask for a whole number: *answer as it was entered, *v as a word. Errors: not_number. Declines (0) after it.
static bool ask_word(const char *question, error_number not_number, quolynode **answer, std::int32_t *v)
{
    asking a;
    begin_question(&a, question, answer, true);
    const bool is_word = quoly_to_word(*answer, v);
    if (!is_word) error(not_number, token.text);
    end_answer(&a);
    return is_word;
}

// The same for a number from low to high.
static bool ask_range(const char *question, error_number bad, std::int32_t low, std::int32_t high,
                      quolynode **answer, std::int32_t *v)
{
    asking a;
    begin_question(&a, question, answer, true);
    const bool good = quoly_to_word(*answer, v) && *v >= low && *v <= high;
    if (!good) error(bad, token.text);
    end_answer(&a);
    return good;
}

// v is from low to high; else error `bad`.
static bool in_range(const setting *s, error_number bad, std::int32_t low, std::int32_t high)
{
    if (s->v >= low && s->v <= high) return true;
    error(bad, token.text);
    return false;
}

void refuse_assign(const setting *)
{
    error(err_switch_not_settable, token.text);
}

// Cutoffs of polynomials --------------------------------------------------------------------------------

static constexpr std::int32_t smallest_poly_cutoff = 6;

void ask_poly_cutoff(input_stream **, quolynode **result, name_node **)
{
    std::int32_t v;
    if (!ask_word(" Enter poly_cutoff (usually 10-90):\n", err_bad_switch_range, result, &v)) return;
    if (v < smallest_poly_cutoff) {
        std::fputs(" *** smallest legal value is 6. will use 6.\n", Output);
        v = smallest_poly_cutoff;
    }
    reset_cutoffs(v);
    std::fprintf(Output, " poly_cutoff: %1d\n", poly_cutoff);
    quoly_set(0, result);
}

void assign_poly_cutoff(const setting *s)
{
    std::int32_t v = s->v;
    if (v < smallest_poly_cutoff) {
        if (s->talk) std::fputs(" Value entered is too small; will use 6.\n", Output);
        v = smallest_poly_cutoff;
    }
    reset_cutoffs(v);
    if (s->talk) std::fprintf(Output, " poly_cutoff now %1d.\n", poly_cutoff);
}

void ask_karatsuba_cutoff(input_stream **, quolynode **result, name_node **)
{
    std::int32_t v;
    if (!ask_word(" Enter Karatsuba cutoff:\n", err_not_a_number, result, &v)) return;
    simplest_poly_cutoff = v;
    std::fprintf(Output, " Karatsuba cutoff is now: \n%d\n", simplest_poly_cutoff);
    quoly_set(0, result);
}

// Auxiliary primes --------------------------------------------------------------------------------------

static constexpr std::int32_t first_factor_low = 300;
static constexpr std::int32_t first_factor_high = 4587;  // accepted, though no more candidates are used
static constexpr std::int32_t second_factor_low = 10;
static constexpr std::int32_t second_factor_high = 20000;

static void set_first_factor(std::int32_t v)
{
    aux_num_1factor = v < largest_first_factor ? v : largest_first_factor;
}

void ask_first_factor(input_stream **, quolynode **result, name_node **)
{
    std::int32_t v;
    if (!ask_range(" Enter first auxiliary prime search factor:\n", err_bad_prime_factor, first_factor_low,
                   first_factor_high, result, &v)) {
        return;
    }
    set_first_factor(v);
    std::fprintf(Output, " first auxiliary prime search factor: %1d\n", aux_num_1factor);
    quoly_set(0, result);
}

void assign_first_factor(const setting *s)
{
    if (!in_range(s, err_bad_prime_factor, first_factor_low, first_factor_high)) return;
    set_first_factor(s->v);
    if (s->talk) std::fprintf(Output, " first auxiliary prime search factor now %1d.\n", aux_num_1factor);
}

// The value is the number entered.
void ask_second_factor(input_stream **, quolynode **result, name_node **)
{
    std::int32_t v;
    if (!ask_range(" Enter second auxiliary prime search factor:\n", err_bad_switch_range, second_factor_low,
                   second_factor_high, result, &v)) {
        return;
    }
    aux_num_2factor = v;
    std::fprintf(Output, " second auxiliary prime search factor: %1d\n", aux_num_2factor);
}

void assign_second_factor(const setting *s)
{
    if (!in_range(s, err_bad_switch_range, second_factor_low, second_factor_high)) return;
    aux_num_2factor = s->v;
    if (s->talk) std::fprintf(Output, " second auxiliary prime search factor now %1d.\n", aux_num_2factor);
}

// Determinants ------------------------------------------------------------------------------------------

static constexpr std::int32_t largest_minors = 40;  // rows of an ordinary array that minors can take

static void set_detcutoff(std::int32_t v, bool talk)
{
    detcutoff = v == 1 ? 0 : v;
    if (!talk) return;
    if (detcutoff < 0) {
        std::fputs(" Will set detcutoff using defaults.\n", Output);
        return;
    }
    std::fprintf(Output, " Detcutoff now %1d.\n", detcutoff);
    if (detcutoff <= largest_minors) return;
    std::fprintf(Output, " Note: This value for sparse arrays only. For ordinary arrays, max value is %1d.\n",
                 largest_minors);
}

// The value is the number entered.
void ask_detcutoff(input_stream **, quolynode **result, name_node **)
{
    std::int32_t v;
    if (ask_word(" Enter detcutoff:\n", err_cutoff_not_number, result, &v)) set_detcutoff(v, true);
}

void assign_detcutoff(const setting *s)
{
    set_detcutoff(s->v, s->talk);
}

void ask_gauss_cutoff(input_stream **, quolynode **result, name_node **)
{
    std::int32_t v;
    if (!ask_word(" Enter Gauss-Bareiss switch:\n", err_not_a_number, result, &v)) return;
    gauss_cutoff = v;
    std::fprintf(Output, " Gauss-Bareiss: %1d means", gauss_cutoff);
    std::fputs(gauss_cutoff == 1 ? " will try Gauss-Bareiss.\n" : " will not use Gauss-Bareiss.\n", Output);
    quoly_set(0, result);
}

void assign_gauss_cutoff(const setting *s)
{
    gauss_cutoff = s->v;
    if (s->talk) std::fprintf(Output, " Gauss-Bareiss switch: %1d\n", gauss_cutoff);
}

static constexpr std::int32_t modular_share = 33;  // how much sooner interpolation pays modulo a prime

static void set_lagrange_cutoff(std::int32_t v, bool talk)
{
    rat_det_method_cut = v < 0 ? 2147483647 : v;
    mod_det_method_cut = rat_det_method_cut / modular_share;
    if (talk) std::fprintf(Output, " LaGrange cut off \"mass\": %1d\n", rat_det_method_cut);
}

void ask_lagrange_cutoff(input_stream **, quolynode **result, name_node **)
{
    std::int32_t v;
    if (!ask_word(" Enter LaGrange cut off:\n", err_not_a_number, result, &v)) return;
    set_lagrange_cutoff(v, true);
    quoly_set(0, result);
}

void assign_lagrange_cutoff(const setting *s)
{
    set_lagrange_cutoff(s->v, s->talk);
}

static constexpr std::int32_t last_heuristic = 5;

static void set_pivot_heuristic(std::int32_t v, bool talk, const char *refusal)
{
    const bool known = v >= 0 && v <= last_heuristic;
    pseudet_heur = known ? v : 0;
    if (!talk) return;
    if (!known) std::fputs(refusal, Output);
    std::fprintf(Output, " Sparse pivot heuristic now %1d.\n", pseudet_heur);
}

void ask_pivot_heuristic(input_stream **, quolynode **result, name_node **)
{
    std::int32_t v;
    if (!ask_word(" Enter sparse pivot heuristic:\n", err_not_a_number, result, &v)) return;
    set_pivot_heuristic(v, true, " Value entered is too big or too small; will use 0.\n");
    quoly_set(0, result);
}

void assign_pivot_heuristic(const setting *s)
{
    set_pivot_heuristic(s->v, s->talk, " Value entered is too large; will use 0.\n");
}

// Arrays ------------------------------------------------------------------------------------------------

// The value is the new index.
void flip_first_index(input_stream **, quolynode **result, name_node **cursor)
{
    addresser = addresser ? 0 : 1;
    if (!*cursor) std::fprintf(Output, " Array initial index now %1d.\n", addresser);
    quoly_set(addresser, result);
}

void assign_first_index(const setting *s)
{
    if (addresser == s->v) {
        if (s->talk) tell_unchanged(" in error pushing.");  // on purpose: the words of another switch
        return;
    }
    addresser = s->v;
    if (s->talk) std::fprintf(Output, " Array initial index now %1d\n", addresser);
}

// Display -----------------------------------------------------------------------------------------------

static constexpr std::int32_t huge_disp_size = 999;  // groups; more draw a warning

void ask_display_size(input_stream **, quolynode **result, name_node **)
{
    std::int32_t v;
    if (!ask_word(" Enter display size. \n", err_not_a_number, result, &v)) return;
    disp_size = v < 0 ? 0 : v;
    calc_disp();
    if (disp_size > huge_disp_size) std::fputs("Warning.  Very large disp_size.\n", Output);
    std::fprintf(Output, "new display size: %2d\n", disp_size);
    quoly_set(0, result);
}

static constexpr std::int32_t most_columns = 32767;

void ask_columns(input_stream **, quolynode **result, name_node **)
{
    asking a;
    std::int32_t v = 0;
    begin_question(&a, " Enter number of columns to display:\n", result, true);
    const bool is_word = quoly_to_word(*result, &v);
    const bool good = is_word && v >= 1 && v <= most_columns;
    if (!good) error(is_word ? err_negative_switch : err_denominator_number, token.text);
    end_answer(&a);
    if (!good) return;
    dispcutoff = v;
    std::fprintf(Output, " Number of columns to display is now: \n%d\n", dispcutoff);
    quoly_set(0, result);
}

void assign_columns(const setting *s)
{
    if (!in_range(s, err_negative_switch, 1, most_columns)) return;
    dispcutoff = s->v;
    if (s->talk) std::fprintf(Output, " Columns to display is now: \n%d\n", dispcutoff);
}

// Interrupts --------------------------------------------------------------------------------------------

static void set_interrupt_level(std::int32_t level, bool talk)
{
    static const char *const names[] = {"off.\n", "on, level 1.\n", "on, level 2.\n"};
    m_interrupt = level;
    command_int = level > 0;
    if (level > 0) cmd_modder = level == 1 ? 32 : 2;
    if (talk) std::fprintf(Output, " Command interrupt now %s", names[level]);
}

// The value is the number entered.
void ask_interrupt_level(input_stream **, quolynode **result, name_node **)
{
    std::int32_t v;
    if (ask_range(" Enter command interrupt level:\n", err_bad_interrupt_level, 0, 2, result, &v)) {
        set_interrupt_level(v, true);
    }
}

void assign_interrupt_level(const setting *s)
{
    if (!in_range(s, err_bad_interrupt_level, 0, 2)) return;
    if (m_interrupt != s->v) {
        set_interrupt_level(s->v, s->talk);
    } else if (s->talk) {
        tell_unchanged(" in command interrupt.");
    }
}

// Random numbers ----------------------------------------------------------------------------------------

static void set_random_denominator(const quolynode *value, bool talk)
{
    num_assign(value->num, &rand_denom_n);
    if (!talk) return;
    std::int32_t col = 0;
    std::fputs(" Denominator for random is now: \n", Output);
    display(Output, 1, 0, &rand_denom_n, &col, 0);
    std::fputc('\n', Output);
}

// A number that is no NaN and not infinite.
static bool is_number(const quolynode *value)
{
    return value->is_num && (!flotemode || std::isfinite(value->num->real));
}

// The value is the number entered. It is a number of the present ring, not a true integer.
void ask_random_denominator(input_stream **, quolynode **result, name_node **)
{
    asking a;
    begin_question(&a, " Enter new denominator for random:\n", result, false);
    const bool good = is_number(*result);
    if (!good) error(err_denominator_number, token.text);
    end_answer(&a);
    if (good) set_random_denominator(*result, true);
}

void assign_random_denominator(const setting *s)
{
    if (!is_number(s->value)) {
        error(err_denominator_number, token.text);
        return;
    }
    set_random_denominator(s->value, s->talk);
}

// Texts -------------------------------------------------------------------------------------------------

static constexpr int longest_prompt = 10;
static constexpr int answer_room = 256;

// prompt = the text. A single blank stands for no prompt but a return, an empty text for a blank that asks
// nothing.
static void set_prompt(const char *text)
{
    std::size_t length = std::strlen(text);
    if (length > longest_prompt) {
        std::fputs("*** Warning.  prompt name truncated to 10 characters.\n", Output);
        length = longest_prompt;
    }
    const bool asks = length > 1 || (length == 1 && text[0] != ' ');
    std::memset(prompt, 0, sizeof prompt);
    if (asks) {
        std::memcpy(prompt, text, length);
    } else {
        prompt[0] = length == 0 ? ' ' : '\r';
    }
    promptsize = asks ? static_cast<std::int32_t>(length) : 0;
}

// text = the rest of the terminal's line, whose line end stays unread; what has no room is dropped.
static void read_raw_line(char *text)
{
    int length = 0;
    for (int c = peek_char(Input); c != '\n' && c != end_of_input; c = peek_char(Input)) {
        get_char(Input);
        if (length < answer_room - 1) text[length++] = static_cast<char>(c);
    }
    if (length > 0 && text[length - 1] == '\r') --length;
    text[length] = 0;
}

void ask_prompt(input_stream **, quolynode **, name_node **)
{
    asking a;
    char text[answer_room];
    std::fputs(" Enter prompt:\n", Output);
    begin_answer(&a);
    await_answer();
    read_raw_line(text);
    end_answer(&a);
    set_prompt(text);
    std::fprintf(Output, " Prompt now:%s\n", prompt[0] == '\r' ? " <cr>" : prompt);
}

void take_prompt(const char *text, input_stream **, quolynode **, name_node **)
{
    set_prompt(text);
}

// The letter in hand tells how: R from the beginning, r from where reading stopped.
void load_switch(input_stream **, quolynode **result, name_node **)
{
    load_command(result, token.text[0], nullptr);
}

void take_input_name(const char *text, input_stream **, quolynode **result, name_node **)
{
    if (text[0] == 0) {
        error(err_bad_quoted_text, token.text);
        return;
    }
    load_command(result, 'R', text);
}

// The letter in hand tells what: s everything, S what the next tokens name.
void save_switch(input_stream **stream, quolynode **, name_node **cursor)
{
    save_command(stream, cursor, token.text[0], nullptr);
}

void take_output_name(const char *text, input_stream **stream, quolynode **, name_node **cursor)
{
    if (text[0] == 0) {
        error(err_bad_quoted_text, token.text);
        return;
    }
    save_command(stream, cursor, 'S', text);
}

}  // namespace kelmar
