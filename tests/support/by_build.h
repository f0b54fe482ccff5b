#pragma once
// tests/support/by_build.h -- what a test does less of where every record is a malloc of its own.

namespace kelmar_test {

// The first where records stand on malloc, which makes each of them dear; else the second.
template <class T> constexpr T by_build([[maybe_unused]] T on_malloc, [[maybe_unused]] T in_slugs)
{
#ifdef KELMAR_MALLOC_RECORDS
    return on_malloc;
#else
    return in_slugs;
#endif
}

}  // namespace kelmar_test
