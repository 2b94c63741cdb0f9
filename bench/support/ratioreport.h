#pragma once

#include <benchmark/benchmark.h>

/// Runs a benchmark program and prints, for every benchmark "NAME" that has a "NAME (plain)" beside it, both medians
/// and their ratio, and with korvaneRatioLimit the ratio it should keep.
int korvaneBenchmarkMain(int argc, char** argv);

/// States, inside a benchmark, how many times the plain loop's time it may take.
inline void korvaneRatioLimit(benchmark::State& state, double limit)
{
    state.counters["limit"] = limit;
}

/// Sets the counter that ratios are made of: time for each of \p items of one iteration.
inline void korvaneItems(benchmark::State& state, std::size_t items)
{
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(items));
    state.counters["items"] = static_cast<double>(items);
}
