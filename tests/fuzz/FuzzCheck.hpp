#pragma once

#include <cstdio>
#include <cstdlib>

// A property a fuzz target checks beyond "no crash": when it does not hold the
// input is reported like a crash, so libFuzzer saves it.
#define FUZZ_CHECK(condition)                                                            \
  do {                                                                                   \
    if (!(condition)) {                                                                  \
      std::fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                      \
    }                                                                                    \
  } while (false)
