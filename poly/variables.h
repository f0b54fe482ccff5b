#pragma once
// poly/variables.h -- the polynomial variables and their order.
//
// A variable adjoined normally becomes level 1, the outermost, and every stored value that is no constant
// gets a wrapper. One adjoined with `>` becomes the innermost level, and nothing stored changes.

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
// default 0; a temporary ring is active; adjust_polyname_ptrs, resume_old_polynames; reset: unwind
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

inline constexpr std::int32_t polyvar_room = 11;    // a name of ten letters
inline char polyvar[variable_limit][polyvar_room];  // the names, sorted by strcmp

// Records -----------------------------------------------------------------------------------------------

void newpt(pt **r);                    // *r = a fresh record, cut = poly_cutoff, no relation
void newdummy(const pt *src, pt **r);  // the same with name, level and next of src
void free_pt(pt **r);                  // release the record and what it holds; null is allowed

// Make the report of free lists count polygarb and pt_garb. Called once.
void register_poly_records();

// The table ---------------------------------------------------------------------------------------------

bool its_a_polyname(const char *name);                    // by search of polyvar
int is_poly_name(const char *name, std::int32_t *level);  // 1 and its level in polynames, or 0

// Adjoin a variable as level 1, or as the innermost level, and renumber. Names are cut to ten letters. The
// caller keeps to variable_limit and pads the stored values.
void insert_poly_name(const char *name, std::int16_t index, int lowest);

// Unlink and free the variable of the level, and renumber. No stored value involves it any more.
void delete_poly_name(std::int32_t level);

// Work in a temporary ring of the first field_depth - 1 variables, one level of progress deeper; come back.
void adjust_polyname_ptrs();
void resume_old_polynames();

// Levels of polynomials -----------------------------------------------------------------------------------

// *p with the wrappers at `level` taken away; the variable of that level does not occur in it. In place.
void remove_one(polynode **p, std::int32_t level);

// Exchange the two outermost variables of *p. *p replaced; its numbers are used again. Cost: a sort's.
void swap_levels_1_2(polynode **p);

}  // namespace kelmar
