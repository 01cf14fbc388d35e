#pragma once

#include <cstdio>
#include <cstdlib>

/// What must hold whatever the input is. The fuzzer keeps an input for which it does not.
inline void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}
