// The one place that ends the program on a programming error.
#include "text/failed_assertion.h"

#include <cstdio>
#include <cstdlib>

void failed_assertion(const char* condition, const char* source, int line, const char* function) {
    if (line > 0) {
        std::fprintf(stderr, "%s:%d: %s: Assertion `%s' failed.\n", source, line, function, condition);
    } else {
        std::fprintf(stderr, "%s: %s: Assertion `%s' failed.\n", source, function, condition);
    }
    std::fflush(stderr);
    std::abort();
}
