// Middleware records: copying one, and finding one in a batch. The flat hash map of MwDataDepartment against Qt's and
// the standard library's.

#include "bench/support/ratioreport.h"
#include "platform/data/mwdatadepartment.h"

#include <QHash>

#include <algorithm>
#include <random>
#include <unordered_map>
#include <vector>

namespace {

QuorixData usualRecord()
{
    QuorixData record;
    record.setMember("value", QuorixValue(12.5));
    record.setMember("tag", QuorixValue(0));
    record.setMember("limit", QuorixValue(0));
    record.setMember("quality", QuorixValue(0));
    record.setMember("time", QuorixValue(QDateTime::fromMSecsSinceEpoch(1, Qt::UTC)));
    return record;
}

void copyRecord(benchmark::State& state)
{
    const QuorixData record = usualRecord();
    for (auto _ : state) {
        QuorixData copy = record;
        benchmark::DoNotOptimize(copy);
    }
    korvaneItems(state, 1);
}

void copyVariants(benchmark::State& state)
{
    const QVariant members[5] = {12.5, 0, 0, 0, QDateTime::fromMSecsSinceEpoch(1, Qt::UTC)};
    for (auto _ : state) {
        QVariant copy[5] = {members[0], members[1], members[2], members[3], members[4]};
        benchmark::DoNotOptimize(copy);
    }
    korvaneItems(state, 1);
}

std::vector<quint32> randomIds(std::size_t count, unsigned seed)
{
    std::vector<quint32> ids(count);
    for (std::size_t i = 0; i < count; ++i)
        ids[i] = static_cast<quint32>(200001 + i);
    std::shuffle(ids.begin(), ids.end(), std::mt19937(seed));
    return ids;
}

template <typename Map>
const QuorixData& record(const Map& map, quint32 id)
{
    return map.find(id)->second;
}
const QuorixData& record(const QHash<quint32, QuorixData>& map, quint32 id)
{
    return *map.find(id);
}

template <typename Map>
void findRecord(benchmark::State& state)
{
    const std::vector<quint32> ids = randomIds(static_cast<std::size_t>(state.range(0)), 1);
    const QuorixData usual = usualRecord();
    Map map;
    for (const quint32 id : ids)
        map[id] = usual;
    const std::vector<quint32> order = randomIds(ids.size(), 2);
    for (auto _ : state) {
        double sum = 0;
        for (const quint32 id : order)
            sum += record(map, id).GetValue("value")->toDouble();
        benchmark::DoNotOptimize(sum);
    }
    korvaneItems(state, order.size());
}

void sizes(benchmark::internal::Benchmark* made)
{
    made->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);
}

} // namespace

int main(int argc, char** argv)
{
    const auto add = [](const char* name, auto function) { return benchmark::RegisterBenchmark(name, function); };
    add("copy a record", copyRecord);
    add("copy a record (plain)", copyVariants);
    add("find a record, robin map against QHash", findRecord<MwDataDepartment::Records>)->Apply(sizes);
    add("find a record, robin map against QHash (plain)", findRecord<QHash<quint32, QuorixData>>)->Apply(sizes);
    add("find a record, std map against QHash", findRecord<std::unordered_map<quint32, QuorixData>>)->Apply(sizes);
    add("find a record, std map against QHash (plain)", findRecord<QHash<quint32, QuorixData>>)->Apply(sizes);
    return korvaneBenchmarkMain(argc, argv);
}
