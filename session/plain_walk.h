#pragma once
// session/plain_walk.h -- the walk over stored expressions of plain numbers.
//
// The descent of the evaluators over again, on doubles or words that are returned in registers. Each function
// declines at what it does not know. The walk alters nothing, so the evaluators can start anew where it
// started. Calls of functions are walked too, in doubles: a parameter is then a number on a frame, and no
// variable.

#include "numbers/dispatch.h"
#include "session/names.h"
#include "session/plain_tokens.h"
#include "session/pset.h"
#include "session/signs.h"
#include "session/words.h"

namespace kelmar {

inline constexpr int deepest_brackets = 100;  // brackets and signs inside each other; beyond: the evaluators
inline constexpr int plain_params = 8;        // parameters of a call that is walked

// A call that is walked.
struct plain_frame {
    const func_node *function;
    const plain_frame *outer;  // the call in whose body it stands; null: the evaluators run that
    int level;                 // 1 for the outermost
    double values[plain_params];
};

// The evaluators run the statement that is walked: its names are those of variables.
struct no_frame {};

// What a walk returns, in registers: the value, and the token behind it; null when the walk declines.
template <class V> struct walked {
    const name_node *at;
    V v;
};

// The value of the call whose name is the token, in a body that runs on the frame.
walked<double> walk_call(const name_node *t, const plain_frame *frame);

// Numbers -------------------------------------------------------------------------------------------------

// *v = the plain number. Words: it must be one.
inline bool to_number(double real, double *v)
{
    *v = real;
    return true;
}

inline bool to_number(double real, std::int32_t *v)
{
    if (!(real > -word_limit && real < word_limit)) return false;
    *v = static_cast<std::int32_t>(real);
    return *v == real;
}

template <class V> inline bool number_of(const quolynode *q, V *v)
{
    return q && q->is_num && to_number(q->num->real, v);
}

inline bool literal_of(const name_node *t, double *v)
{
    *v = t->value;
    return true;
}

inline bool literal_of(const name_node *t, std::int32_t *v)
{
    if (t->form == form_decimal || t->value > INT32_MAX) return false;
    *v = static_cast<std::int32_t>(t->value);
    return true;
}

inline double sum(double a, double b)
{
    return a + b;
}
inline double difference(double a, double b)
{
    return a - b;
}
inline double product(double a, double b)
{
    return a * b;
}
inline double negative(double a)
{
    return 0.0 - a;  // not -a: that would make -0.0
}

// Words wrap.
inline std::int32_t sum(std::int32_t a, std::int32_t b)
{
    return wrap(std::int64_t{a} + b);
}
inline std::int32_t difference(std::int32_t a, std::int32_t b)
{
    return wrap(std::int64_t{a} - b);
}
inline std::int32_t product(std::int32_t a, std::int32_t b)
{
    return wrap(std::int64_t{a} * b);
}
inline std::int32_t negative(std::int32_t a)
{
    return wrap(-std::int64_t{a});
}

// *a = *a op b, for the operators / \ |.
inline bool divide_by(double *a, double b, char op)
{
    if (b == 0.0) return false;
    *a = op == '/' ? *a / b : float_whole(*a, b, op);
    return true;
}

inline bool divide_by(std::int32_t *a, std::int32_t b, char op)
{
    if (b == 0) return false;
    const std::int64_t rest = std::int64_t{*a} % b;
    if (op != '|') {
        *a = wrap(std::int64_t{*a} / b);
    } else {
        *a = wrap(rest < 0 && pos_mod ? rest + (b < 0 ? -std::int64_t{b} : b) : rest);
    }
    return true;
}

// Expressions ---------------------------------------------------------------------------------------------

// F: const plain_frame *, that of the call in whose body the walk is, or no_frame. depth: brackets and signs
// that are open.
template <class V, class F> walked<V> walk_sum(const name_node *t, int depth, F frame);

template <class V, class F> inline walked<V> walk_factor(const name_node *t, int depth, F frame);

// A sign, or a sum in brackets.
template <class V, class F> [[gnu::noinline]] walked<V> walk_nested(const name_node *t, int depth, F frame)
{
    const walked<V> nothing = {nullptr, 0};
    if (depth >= deepest_brackets) return nothing;
    if (t->form == form_open) {
        const walked<V> inner = walk_sum<V, F>(t->next, depth + 1, frame);
        if (!inner.at || inner.at->text[0] != ')') return nothing;
        return {inner.at->next, inner.v};
    }
    const walked<V> factor = walk_factor<V, F>(t->next, depth + 1, frame);
    if (!factor.at || factor.at->form == form_general) return nothing;
    return {factor.at, negative(factor.v)};
}

// *v = the number on the newest frame that has a parameter of the name; false when none has.
inline bool find_on_frames(const name_node *t, const plain_frame *frame, double *v)
{
    if (t->param) {
        *v = frame->values[t->param - 1];
        return true;
    }
    for (frame = frame->outer; frame; frame = frame->outer) {
        int i = 0;
        for (const name_node *p = frame->function->params; p; p = p->next, ++i) {
            if (std::memcmp(p->text, t->text, token_room) != 0) continue;
            *v = frame->values[i];
            return true;
        }
    }
    return false;
}

template <class V> inline bool find_on_frames(const name_node *, no_frame, V *)
{
    return false;
}

inline const plain_frame *outer_frame(const plain_frame *frame)
{
    return frame;
}
inline const plain_frame *outer_frame(no_frame)
{
    return nullptr;
}

// *v = the number that the name has.
template <class V, class F> inline bool name_value(const name_node *t, F frame, V *v)
{
    if (find_on_frames(t, frame, v)) return true;
    quolynode **const slot = stored_slot(t);
    return slot && number_of(*slot, v);
}

template <class V, class F> [[gnu::noinline]] walked<V> call_value(const name_node *t, F frame)
{
    const walked<double> call = walk_call(t, outer_frame(frame));
    walked<V> result = {nullptr, 0};
    if (call.at && to_number(call.v, &result.v)) result.at = call.at;
    return result;
}

template <class V, class F>
[[gnu::always_inline]] inline walked<V> walk_factor(const name_node *t, int depth, F frame)
{
    walked<V> result = {nullptr, 0};
    if (__builtin_expect(t->form == form_name, 1)) {
        if (name_value(t, frame, &result.v)) result.at = t->next;
    } else if (t->form == form_literal || t->form == form_decimal) {
        if (literal_of(t, &result.v)) result.at = static_cast<const name_node *>(t->ptr);
    } else if (t->form == form_open || t->form == form_minus) {
        return walk_nested<V, F>(t, depth, frame);
    } else if (t->form == form_call) {
        return call_value<V, F>(t, frame);
    }
    return result;
}

template <class V, class F>
[[gnu::always_inline]] inline walked<V> walk_term(const name_node *t, int depth, F frame)
{
    V term = 0;
    char op = 0;  // what joins the next factor to the term; 0: it is the first
    for (;;) {
        const walked<V> factor = walk_factor<V, F>(t, depth, frame);
        if (!factor.at) return factor;
        if (op == 0) {
            term = factor.v;
        } else if (op == '*') {
            term = product(term, factor.v);
        } else if (!divide_by(&term, factor.v, op)) {
            return {nullptr, 0};
        }
        t = factor.at;
        if (t->form < form_times) return {t, term};
        if (t->form == form_general) return {nullptr, 0};
        op = '*';  // also of two factors side by side
        if (t->form > form_divide) continue;
        op = t->text[0];
        t = t->next;
    }
}

template <class V, class F> walked<V> walk_sum(const name_node *t, int depth, F frame)
{
    V total = 0;
    token_form sign = form_untold;  // of the next term; untold: it is the first
    for (;;) {
        const walked<V> term = walk_term<V, F>(t, depth, frame);
        if (!term.at) return term;
        if (sign == form_untold) {
            total = term.v;
        } else {
            total = sign == form_minus ? difference(total, term.v) : sum(total, term.v);
        }
        sign = term.at->form;
        if (sign != form_plus && sign != form_minus) return {term.at, total};
        t = term.at->next;
    }
}

// Comparisons -----------------------------------------------------------------------------------------------

// *sign = the sign at the token, of one or two tokens. Returns the token behind it.
inline const name_node *walk_sign(const name_node *t, char *sign)
{
    *sign = t->text[0];
    t = t->next;
    const char both = fused_sign(*sign, t->text[0]);
    if (!both) return t;
    *sign = both;
    return t->next;
}

inline bool is_end(const name_node *t)
{
    return t->text[0] == endlist[0];
}

// Returns the token behind the comparison; null when the walk declines.
template <class V, class F> const name_node *walk_comparison(const name_node *t, F frame, int *result)
{
    const walked<V> left = walk_sum<V, F>(t, 0, frame);
    if (!left.at) return nullptr;
    const char c = left.at->text[0];
    if (!in_set(cond_set, c)) {
        *result = left.v == 1;
        return is_end(left.at) || c == ']' || is_lower(c) ? left.at : nullptr;
    }
    char sign;
    const walked<V> right = walk_sum<V, F>(walk_sign(left.at, &sign), 0, frame);
    *result = compare_words(left.v, right.v, sign);
    return right.at;
}

// The token is the word of two or three letters; texts are padded with zeros.
inline bool is_word(const name_node *t, const char *word)
{
    return std::memcmp(t->text, word, 4) == 0;
}

// A comparison behind any number of `not`.
template <class V, class F> inline const name_node *walk_fact(const name_node *t, F frame, int *result)
{
    bool turned = false;
    for (; is_word(t, "not"); t = t->next) turned = !turned;
    t = walk_comparison<V, F>(t, frame, result);
    if (turned) *result = !*result;
    return t;
}

// Comparisons joined by `and`.
template <class V, class F> inline const name_node *walk_conjunction(const name_node *t, F frame, int *result)
{
    t = walk_fact<V, F>(t, frame, result);
    while (t && is_word(t, "and")) {
        int right = 0;
        t = walk_fact<V, F>(t->next, frame, &right);
        *result &= right;
    }
    return t;
}

// A whole condition, without brackets. All of it is walked, as all of it is evaluated.
template <class V, class F> const name_node *walk_condition(const name_node *t, F frame, int *result)
{
    *result = 0;
    t = walk_conjunction<V, F>(t, frame, result);
    while (t && is_word(t, "or\0")) {
        int right = 0;
        t = walk_conjunction<V, F>(t->next, frame, &right);
        *result |= right;
    }
    return t;
}

}  // namespace kelmar
