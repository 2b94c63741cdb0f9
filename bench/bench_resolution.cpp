// Tag resolution: by text alone, and against runtime databases of up to a million points, beside a QHash of the same
// size.

#include "bench/support/manypoints.h"
#include "bench/support/ratioreport.h"
#include "platform/data/tagresolution.h"

#include <QHash>

#include <map>
#include <memory>

namespace {

constexpr std::size_t lookUps = 200000; // enough of a million names to leave the caches

constexpr std::size_t million = 1000000;

std::size_t countOf(const benchmark::State& state)
{
    return static_cast<std::size_t>(state.range(0));
}

RuntimeDatabase& database(std::size_t count)
{
    static std::map<std::size_t, std::unique_ptr<RuntimeDatabase>> made;
    std::unique_ptr<RuntimeDatabase>& entry = made[count];
    if (!entry) {
        entry = std::make_unique<RuntimeDatabase>();
        addPoints(*entry, count);
    }
    return *entry;
}

const QHash<QString, qint32>& plainHash(std::size_t count)
{
    static std::map<std::size_t, QHash<QString, qint32>> made;
    QHash<QString, qint32>& entry = made[count];
    if (entry.isEmpty()) {
        entry.reserve(int(count));
        for (std::size_t i = 0; i < count; ++i)
            entry.insert(pointName(i), qint32(200001 + i));
    }
    return entry;
}

void resolve(benchmark::State& state)
{
    RuntimeDatabase& runtime = database(countOf(state));
    const std::vector<QString> names = namesToFind(countOf(state), lookUps);
    for (auto _ : state) {
        qint64 sum = 0;
        for (const QString& name : names)
            sum += Korvane::resolveFromString(name, &runtime).id;
        benchmark::DoNotOptimize(sum);
    }
    korvaneItems(state, names.size());
    if (countOf(state) == million)
        korvaneRatioLimit(state, 1.5);
}

void lookUpPlainly(benchmark::State& state)
{
    const QHash<QString, qint32>& hash = plainHash(countOf(state));
    const std::vector<QString> names = namesToFind(countOf(state), lookUps);
    for (auto _ : state) {
        qint64 sum = 0;
        for (const QString& name : names)
            sum += hash.value(name);
        benchmark::DoNotOptimize(sum);
    }
    korvaneItems(state, names.size());
}

void findName(benchmark::State& state)
{
    const RuntimeDatabase& runtime = database(countOf(state));
    const std::vector<QString> names = namesToFind(countOf(state), lookUps);
    for (auto _ : state) {
        qint64 sum = 0;
        for (const QString& name : names)
            sum += runtime.findByName(Korvane::ScadaObjectType::Point, name).id;
        benchmark::DoNotOptimize(sum);
    }
    korvaneItems(state, names.size());
    if (countOf(state) == million)
        korvaneRatioLimit(state, 1.5);
}

void resolveText(benchmark::State& state, const char* suffix)
{
    std::vector<QString> tags = namesToFind(1000, 1000);
    for (QString& tag : tags)
        tag += QLatin1String(suffix);
    for (auto _ : state) {
        for (const QString& tag : tags) {
            Korvane::DataLinkInfo link = Korvane::resolveFromString(tag, nullptr);
            benchmark::DoNotOptimize(link);
        }
    }
    korvaneItems(state, tags.size());
}

void sizes(benchmark::internal::Benchmark* made)
{
    made->Arg(1000)->Arg(10000)->Arg(100000)->Arg(million);
}

} // namespace

int main(int argc, char** argv)
{
    const auto add = [](const char* name, auto function) { return benchmark::RegisterBenchmark(name, function); };
    add("find a name against QHash", findName)->Apply(sizes);
    add("find a name against QHash (plain)", lookUpPlainly)->Apply(sizes);
    add("resolve a tag against QHash", resolve)->Apply(sizes);
    add("resolve a tag against QHash (plain)", lookUpPlainly)->Apply(sizes);
    add("resolve by text alone, name", [](benchmark::State& state) { resolveText(state, ""); });
    add("resolve by text alone, name and field", [](benchmark::State& state) { resolveText(state, ":HighLimit"); });
    return korvaneBenchmarkMain(argc, argv);
}
