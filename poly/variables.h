#pragma once
// poly/variables.h -- the polynomial variables and their order.
//
// A variable adjoined normally becomes level 1, the outermost, and every stored value that is no constant gets a
// wrapper. One adjoined with `>` becomes the innermost level, and nothing stored changes.

#include "poly/node.h"

namespace kelmar {

inline constexpr std::int32_t variable_limit = 150;
inline constexpr std::int32_t variable_name_room = 14;

struct pt {
    char name[variable_name_room];
    std::int16_t index;    // hash of the name, as of a token
    std::int16_t level;    // place in polynames, 1 first
    std::int32_t cut;      // takes the place of poly_cutoff in products at this level
    polynode *relation;    // the modulus polynomial of this variable; null: none
    polynode *fold_table;  // what folding by the relation keeps ready; null: none
    number *numbers;       // a list of numbers that belongs to the relation; null: none
    pt *next;
};
static_assert(std::is_trivial_v<pt>);

// default null; the variables in level order; attach and cancel; reset: never
inline pt *polynames = nullptr;
// default null; head for level tests while a temporary ring is active; rings of relations; reset: unwind
inline pt *pseudo_polynames = nullptr;
// default null; polynames, kept while a temporary ring is active; adjust_polyname_ptrs; reset: unwind
inline pt *old_polynames = nullptr;
inline std::int32_t using_new_polynames = 0;
// default 0; how many there are; reset: never
inline std::int32_t number_polys = 0;
// default null; free records; newpt, free_pt; reset: never
inline pt *pt_garb = nullptr;
// default 0; variables from this level inward belong to the ground field; relations; reset: never
inline std::int32_t field_depth = 0;
// default 0; a relation stands on a variable above the field; relations; reset: never
inline std::int32_t modout_above_field = 0;
// passed to products where no relation applies
inline pt *const nilpol = nullptr;

inline char polyvar[variable_limit][11];  // the names, sorted by strcmp

void newpt(pt **r);                      // *r = a fresh record, cut = poly_cutoff, no relation
void newdummy(const pt *src, pt **r);    // the same with name, level and next of src
void free_pt(pt **r);                    // release the record and what it holds

bool its_a_polyname(const char *name);                          // by search of polyvar
int is_poly_name(const char *name, std::int32_t *level);        // 1 and its level, or 0
void insert_poly_name(const char *name, std::int16_t index, int lowest);  // new level 1, or the innermost; renumber
void delete_poly_name(std::int32_t level);                      // unlink and free; renumber

// *p with the wrappers at `level` taken away; the variable of that level no longer occurs in it.
void remove_one(polynode **p, std::int32_t level);

// Exchange the two outermost variables of *p.
void swap_levels_1_2(polynode **p);

// Work in a temporary ring of the first field_depth - 1 variables, and come back.
void adjust_polyname_ptrs();
void resume_old_polynames();

}  // namespace kelmar
