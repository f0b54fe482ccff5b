#pragma once
// tests/support/resumed.h -- code whose faults push a command level that is left at once.

#include <string>

namespace kelmar_test {

// Call f(arg) in a session prepared from the files of `directory`; each level that it pushes reads that the
// computation goes on. Return what was written to Output.
std::string report_and_resume_of(void (*f)(void *), void *arg, const char *directory);

template <class F> std::string report_and_resume(const char *directory, F f)
{
    return report_and_resume_of([](void *p) { (*static_cast<F *>(p))(); }, &f, directory);
}

}  // namespace kelmar_test
