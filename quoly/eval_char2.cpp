// quoly/eval_char2.cpp -- polynomials at numbers in characteristic two.
//
// A product of two field elements is a look-up already, so what costs is the making of powers. Each point has
// a table of its powers, up to the degree or to where they repeat, made once and shared by the whole walk.
#include "numbers/word_mod.h"
#include "poly/eval.h"
#include "poly/measure.h"
#include "poly/mul_school.h"
#include "poly/mul_work.h"
#include "poly/scale.h"
#include "quoly/eval.h"
#include "session/report.h"

namespace kelmar {

// The powers of one point: v^0 .. v^(count - 1), which then repeat.
struct power_row {
    std::int32_t at;     // the point
    std::int32_t first;  // where its powers begin in the table
    std::int32_t count;
};

struct power_table {
    power_row *rows;      // one a level
    std::int32_t levels;  // points there are
    std::uint16_t *powers;
    product_work *work;
};

// The powers of v repeat after so many: the order of the group, or less.
static std::int32_t order_of(std::int32_t v)
{
    if (v <= 1) return 2;
    std::int32_t order = 1;
    for (std::int32_t power = v; power != 1; power = modmult(power, v)) ++order;
    return order;
}

static std::int32_t power_at(const power_table *t, std::int32_t level, std::int32_t e)
{
    const power_row *row = &t->rows[level];
    if (row->at <= 1) return e == 0 ? 1 : row->at;
    return t->powers[row->first + e % row->count];
}

// Fill the table. Declines (0): a point is no number, or there is no room.
static int make_table(const quolynode *points, power_table *t)
{
    std::int32_t total = 0;
    t->levels = 0;
    for (const quolynode *v = points; v; v = v->next, ++t->levels) {
        if (!v->is_num) return 0;
        void *room = get_room(t->work, 0, static_cast<std::size_t>(t->levels + 1) * sizeof(power_row));
        if (!room) return 0;
        t->rows = static_cast<power_row *>(room);
        t->rows[t->levels] = {v->num->word, total, order_of(v->num->word)};
        total += t->rows[t->levels].count;
    }
    t->powers = static_cast<std::uint16_t *>(
        get_room(t->work, 1, static_cast<std::size_t>(total) * sizeof(std::uint16_t)));
    if (!t->powers) return 0;
    for (std::int32_t k = 0; k < t->levels; ++k) {
        std::int32_t power = 1;
        for (std::int32_t e = 0; e < t->rows[k].count; ++e) {
            t->powers[t->rows[k].first + e] = static_cast<std::uint16_t>(power);
            power = modmult(power, t->rows[k].at);
        }
    }
    return 1;
}

// Points at all levels --------------------------------------------------------------------------------------

static bool word_at(const polynode *p, const power_table *t, std::int32_t level, std::int32_t *v)
{
    if (is_constant(p)) {
        *v = p->num->word;
        return true;
    }
    check_stack();
    if (level >= t->levels) return false;
    std::int32_t sum = 0;
    for (; p; p = p->next) {
        if (level == 0) poll_interrupt();
        std::int32_t coef = 0;
        if (p->isnum) {
            coef = p->num->word;
        } else if (!word_at(p->coef, t, level + 1, &coef)) {
            return false;
        }
        sum = mod_add(sum, modmult(coef, power_at(t, level, p->exp)), modulus);
    }
    *v = sum;
    return true;
}

// Begin and end the progress lines of the two forms.
static std::int32_t tell(const char *text, const polynode *p)
{
    if (!verbose || !windy) return -1;
    const std::int32_t terms = poly_length(p);
    dumpitt(text, terms, 0, 1, 1);
    return terms;
}

static void tell_end(std::int32_t terms)
{
    if (terms >= 0) decr_dumpitt(terms);
}

[[gnu::noinline]] int tot_eval_poly2_fast(const polynode *p, const quolynode *points, quolynode **result)
{
    power_table t = {};
    t.work = open_work(__builtin_frame_address(0));
    std::int32_t value = 0;
    int done = make_table(points, &t);
    if (done && t.levels < depth_below(p)) done = 0;
    if (done) {
        const std::int32_t terms = tell("total eval, numbers char 2 fast, counting to ", p);
        done = word_at(p, &t, 0, &value);
        tell_end(terms);
    }
    close_work(t.work);
    if (done) quoly_set(value, result);
    return done;
}

// Points at the outer levels --------------------------------------------------------------------------------

// p at the points from `level` on, without the levels that went; null for zero.
[[gnu::noinline]] static polynode *part_at(const polynode *p, const power_table *t, std::int32_t level)
{
    check_stack();
    if (is_constant(p) || level >= t->levels) return poly_iszero(p) ? nullptr : copy_poly(p);
    product_work *work = open_work(__builtin_frame_address(0));
    number factor = {};
    polynode alone;
    for (; p; p = p->next) {
        poll_interrupt();
        const polynode *coef = p->coef;
        if (p->isnum) {
            alone = *p;
            alone.next = nullptr;
            coef = &alone;
        }
        work->parts[0] = part_at(coef, t, level + 1);
        factor.word = power_at(t, level, p->exp);
        if (!work->parts[0] || factor.word == 0) {
            if (work->parts[0]) free_poly(&work->parts[0]);
            continue;
        }
        polynode *scaled = nullptr;
        scalar_by_poly(&factor, work->parts[0], &scaled);
        free_poly(&work->parts[0]);
        add_part(scaled, &work->parts[1], false);
    }
    polynode *sum = nullptr;
    total_parts(&work->parts[1], work_parts - 1, false, &sum);
    close_work(work);
    if (poly_iszero(sum)) free_poly(&sum);
    return sum;
}

[[gnu::noinline]] int tot_eval_poly2(const polynode *p, const quolynode *points, quolynode **result)
{
    power_table t = {};
    t.work = open_work(__builtin_frame_address(0));
    polynode *value = nullptr;
    const int done = make_table(points, &t);
    if (done) {
        const std::int32_t terms = tell("total eval, numbers char 2, counting to ", p);
        value = part_at(p, &t, 0);
        tell_end(terms);
        if (!value) poly_set(0, &value);
        add_pad(&value, t.levels);
    }
    close_work(t.work);
    if (done) poly_to_quoly(&value, result);
    return done;
}

}  // namespace kelmar
