#pragma once

#include "apps/runtime/runtimeoptions.h"

class LiveSystem;
struct Page;

/// A run without a window: the page is drawn off screen, then the table of the points and the path of the picture are
/// printed.
class HeadlessRun
{
public:
    HeadlessRun(LiveSystem& system, const RuntimeOptions& options) : m_system(system), m_options(options) {}

    /// \returns the program's exit code.
    int run(Page& page);

    /// Draws every change as a window would, and prints what that cost: processor time for each value shown, and how old
    /// values were when they were shown.
    int runBenchmark(Page& page);

    /// Prints the table of the points with their figures.
    static void printReport(LiveSystem& system);

private:
    LiveSystem& m_system;
    const RuntimeOptions& m_options;
};
