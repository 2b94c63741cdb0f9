// What a binding does with every value: needUpdate, checkCondition, and the tag record's way to disk and back.

#include "bench/support/ratioreport.h"
#include "platform/data/scadatagactionstream.h"
#include "scada/binding/scadacondition.h"

#include <QDataStream>

#include <vector>

namespace {

constexpr std::size_t count = 1000;

/// Two rounds of values, of which every value differs from the other round's when \p changing.
std::vector<double> values(int round, bool changing)
{
    std::vector<double> made(count);
    for (std::size_t i = 0; i < count; ++i)
        made[i] = 0.1 + double(i) + (changing ? round : 0);
    return made;
}

void plainCompare(benchmark::State& state, bool changing)
{
    const std::vector<double> rounds[] = {values(0, changing), values(1, changing)};
    std::vector<QVariant> current(count);
    int round = 0;
    for (auto _ : state) {
        const std::vector<double>& next = rounds[round ^= 1];
        int changed = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const QVariant value(next[i]);
            if (value == current[i])
                continue;
            current[i] = value;
            ++changed;
        }
        benchmark::DoNotOptimize(changed);
    }
    korvaneItems(state, count);
}

void needUpdate(benchmark::State& state, bool changing)
{
    const std::vector<double> rounds[] = {values(0, changing), values(1, changing)};
    std::vector<ObjectTarget> targets(count);
    int round = 0;
    for (auto _ : state) {
        const std::vector<double>& next = rounds[round ^= 1];
        int changed = 0;
        for (std::size_t i = 0; i < count; ++i)
            changed += targets[i].needUpdate(next[i]) ? 1 : 0;
        benchmark::DoNotOptimize(changed);
    }
    korvaneItems(state, count);
    korvaneRatioLimit(state, 3);
}

void plainVariants(benchmark::State& state)
{
    std::vector<QVariant> left(count);
    std::vector<QVariant> right(count);
    for (std::size_t i = 0; i < count; ++i) {
        left[i] = double(i);
        right[i] = double(count / 2);
    }
    for (auto _ : state) {
        int holding = 0;
        for (std::size_t i = 0; i < count; ++i)
            holding += left[i] == right[i] ? 1 : 0;
        benchmark::DoNotOptimize(holding);
    }
    korvaneItems(state, count);
}

void checkCondition(benchmark::State& state)
{
    std::vector<ScadaCondition> conditions(count);
    for (std::size_t i = 0; i < count; ++i) {
        conditions[i] = ConditionData{QStringLiteral("PUMP"), QStringLiteral("500"), Korvane::OpType(i % 6)};
        conditions[i].lValue()->setValue(double(i));
        conditions[i].rValue()->setValue(double(count / 2));
    }
    for (auto _ : state) {
        int holding = 0;
        for (const ScadaCondition& condition : conditions)
            holding += condition.checkCondition() ? 1 : 0;
        benchmark::DoNotOptimize(holding);
    }
    korvaneItems(state, count);
    korvaneRatioLimit(state, 3);
}

QString tagName(std::size_t i, const char* field)
{
    return QStringLiteral("STATION_01.PUMP_%1%2").arg(i, 4, 10, QLatin1Char('0')).arg(QLatin1String(field));
}

void plainRecord(benchmark::State& state)
{
    std::vector<QString> names(count);
    for (std::size_t i = 0; i < count; ++i)
        names[i] = tagName(i, "");
    for (auto _ : state) {
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        for (const QString& name : names)
            out << qint32(6) << qint32(200001) << name << quint16(30002);
        QDataStream in(bytes);
        for (std::size_t i = 0; i < count; ++i) {
            qint32 type = 0;
            qint32 id = 0;
            QString name;
            quint16 code = 0;
            in >> type >> id >> name >> code;
            benchmark::DoNotOptimize(name);
        }
    }
    korvaneItems(state, count);
}

void record(benchmark::State& state, const char* field)
{
    std::vector<ObjectTarget> targets(count);
    for (std::size_t i = 0; i < count; ++i)
        targets[i].setTagString(tagName(i, field));
    const ScadaTagActionStream context;
    for (auto _ : state) {
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        for (const ObjectTarget& target : targets)
            target.toStream(out);
        QDataStream in(bytes);
        for (std::size_t i = 0; i < count; ++i) {
            ObjectTarget read;
            read.fromStream(in, context);
            benchmark::DoNotOptimize(read);
        }
    }
    korvaneItems(state, count);
    korvaneRatioLimit(state, 3);
}

} // namespace

int main(int argc, char** argv)
{
    const auto add = [](const char* name, auto function) { benchmark::RegisterBenchmark(name, function); };
    add("needUpdate, unchanged", [](benchmark::State& state) { needUpdate(state, false); });
    add("needUpdate, unchanged (plain)", [](benchmark::State& state) { plainCompare(state, false); });
    add("needUpdate, changed", [](benchmark::State& state) { needUpdate(state, true); });
    add("needUpdate, changed (plain)", [](benchmark::State& state) { plainCompare(state, true); });
    add("checkCondition", checkCondition);
    add("checkCondition (plain)", plainVariants);
    add("tag record written and read, name", [](benchmark::State& state) { record(state, ""); });
    add("tag record written and read, name (plain)", plainRecord);
    add("tag record written and read, name and field", [](benchmark::State& state) { record(state, ":HighLimit"); });
    add("tag record written and read, name and field (plain)", plainRecord);
    return korvaneBenchmarkMain(argc, argv);
}
