#include "bench/support/ratioreport.h"

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

const std::string plainMark = " (plain)";

/// Keeps the median of every benchmark, in nanoseconds an item, in the order in which they were registered.
class RatioReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
                m_hasFailed = true;
                continue;
            }
            if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median")
                continue;
            const std::string name = run.run_name.str();
            const auto items = run.counters.find("items");
            const auto limit = run.counters.find("limit");
            m_order[{run.family_index, run.per_family_instance_index}] = name;
            m_medians[name] = {run.GetAdjustedCPUTime() / (items == run.counters.end() ? 1 : items->second.value),
                               limit == run.counters.end() ? 0 : limit->second.value};
        }
    }

    bool hasFailed() const { return m_hasFailed; }

    void print() const
    {
        std::printf("%-58s %10s %10s %7s %8s\n", "benchmark (ns an item, median)", "ours", "plain", "ratio", "at most");
        for (const auto& [place, name] : m_order) {
            if (name.find(plainMark) != std::string::npos)
                continue;
            const Median& ours = m_medians.at(name);
            const auto plain = m_medians.find(plainName(name));
            if (plain == m_medians.end()) {
                std::printf("%-58s %10.1f\n", name.c_str(), ours.time);
                continue;
            }
            const double ratio = ours.time / plain->second.time;
            std::printf("%-58s %10.1f %10.1f %7.2f", name.c_str(), ours.time, plain->second.time, ratio);
            if (ours.limit > 0)
                std::printf(" %8.2f%s", ours.limit, ratio > ours.limit ? "  EXCEEDED" : "");
            std::printf("\n");
        }
    }

private:
    struct Median
    {
        double time = 0;
        double limit = 0;
    };

    /// "name/1000" is measured against "name (plain)/1000".
    static std::string plainName(const std::string& name)
    {
        const std::size_t slash = name.find('/');
        return slash == std::string::npos ? name + plainMark : name.substr(0, slash) + plainMark + name.substr(slash);
    }

    std::map<std::pair<std::int64_t, std::int64_t>, std::string> m_order; ///< by place of registration
    std::map<std::string, Median> m_medians;
    bool m_hasFailed = false;
};

} // namespace

int korvaneBenchmarkMain(int argc, char** argv)
{
    // Repetitions taken in turns even out what else the machine does meanwhile.
    std::vector<std::string> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, {"--benchmark_repetitions=9", "--benchmark_min_time=0.05",
                                             "--benchmark_enable_random_interleaving=true"});
    std::vector<char*> pointers;
    pointers.reserve(arguments.size());
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(count, pointers.data()))
        return 2;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.print();
    return reporter.hasFailed() ? 1 : 0;
}
