// Resolves names against a runtime database of a given size; callgrind counts the instructions of the look-ups alone.
// usage: count_resolution POINTS

#include "bench/support/manypoints.h"
#include "platform/data/tagresolution.h"

#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>

namespace {
constexpr std::size_t lookUps = 10000;
}

int main(int argc, char** argv)
{
    const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 0;
    if (count == 0) {
        std::fprintf(stderr, "usage: count_resolution POINTS\n");
        return 2;
    }
    RuntimeDatabase runtime;
    addPoints(runtime, count);
    const std::vector<QString> names = namesToFind(count, lookUps);

    std::size_t found = 0;
    CALLGRIND_START_INSTRUMENTATION;
    for (const QString& name : names)
        found += Korvane::resolveFromString(name, &runtime).id != 0 ? 1 : 0;
    CALLGRIND_STOP_INSTRUMENTATION;
    std::printf("%zu look-ups\n", lookUps);
    std::fflush(stdout);
    return found == lookUps ? 0 : 1;
}
