#pragma once
// tests/support/catch_error.h -- run a piece of code and learn which numbered error it raised.

namespace kelmar_test {

// Call f(arg) with a restart point of its own. Return the number of the error that unwound it, 0 when it came
// back. Reports go to a scratch output, not to the test's.
int caught_error_of(void (*f)(void *), void *arg);

template <class F> int caught_error(F f)
{
    return caught_error_of([](void *p) { (*static_cast<F *>(p))(); }, &f);
}

}  // namespace kelmar_test
