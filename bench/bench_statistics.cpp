// What a sample costs: through the runtime database with its marks and statistics, and into the store's journal; beside
// a hash map of sums, and a file that the samples are written to as they lie in memory.

#include "bench/support/ratioreport.h"
#include "host/runtime/pointstatistics.h"
#include "host/runtime/runtimedatabase.h"
#include "host/runtime/runtimestore.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <random>
#include <unordered_map>
#include <vector>

namespace {

constexpr qint64 start = Q_INT64_C(1714557600000);
constexpr std::size_t million = 1000000;
constexpr qint64 roundMs = 1000;

std::size_t countOf(const benchmark::State& state)
{
    return static_cast<std::size_t>(state.range(0));
}

/// One sample of each of \p count points, in no order of their ids.
std::vector<Sample> oneRound(std::size_t count)
{
    std::mt19937 random(1);
    std::vector<Sample> samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        samples[i].object = {Korvane::ScadaObjectType::AnalogPoint, qint32(200001 + i)};
        samples[i].timeMs = start + qint64(i % 1000);
        samples[i].value = double(random() % 10000) / 100;
    }
    std::shuffle(samples.begin(), samples.end(), random);
    return samples;
}

void nextRound(std::vector<Sample>& samples)
{
    for (Sample& sample : samples) {
        sample.timeMs += roundMs;
        sample.value = 100 - sample.value;
    }
}

void addPoints(RuntimeDatabase& database, std::size_t count)
{
    database.setTimeZone(QTimeZone("Europe/Berlin"));
    database.reserve(Korvane::ScadaObjectType::Point, count);
    for (std::size_t i = 0; i < count; ++i) {
        RuntimeDatabase::Object object{Korvane::ScadaObjectType::AnalogPoint, qint32(200001 + i),
                                       QStringLiteral("P%1").arg(i)};
        object.low = 10;
        object.high = 90;
        object.hysteresis = 1;
        object.staleAfter = std::chrono::seconds(10);
        if (!database.add(object))
            qFatal("a point was refused");
    }
}

void takeSamples(benchmark::State& state)
{
    RuntimeDatabase database;
    addPoints(database, countOf(state));
    std::vector<Sample> samples = oneRound(countOf(state));
    for (auto _ : state) {
        for (const Sample& sample : samples)
            benchmark::DoNotOptimize(database.takeSample(sample));
        benchmark::DoNotOptimize(database.takeStale(samples.front().timeMs));
        nextRound(samples);
    }
    korvaneItems(state, samples.size());
}

void takePlainly(benchmark::State& state)
{
    struct Sums
    {
        double value = 0, minimum = 0, maximum = 0, integral = 0;
        qint64 timeMs = 0, minimumTime = 0, maximumTime = 0;
    };
    std::unordered_map<qint32, Sums> points;
    std::vector<Sample> samples = oneRound(countOf(state));
    for (auto _ : state) {
        for (const Sample& sample : samples) {
            Sums& sums = points[sample.object.id];
            sums.integral += sums.value * double(sample.timeMs - sums.timeMs);
            if (sample.value < sums.minimum) {
                sums.minimum = sample.value;
                sums.minimumTime = sample.timeMs;
            }
            if (sample.value > sums.maximum) {
                sums.maximum = sample.value;
                sums.maximumTime = sample.timeMs;
            }
            sums.value = sample.value;
            sums.timeMs = sample.timeMs;
        }
        benchmark::ClobberMemory();
        nextRound(samples);
    }
    korvaneItems(state, samples.size());
}

void countSamples(benchmark::State& state)
{
    const StatisticsCalendar calendar(QTimeZone("Europe/Berlin"));
    std::vector<PointStatistics> points(countOf(state), PointStatistics(PointStatistics::Kind::Analog, 10000));
    std::vector<Sample> samples = oneRound(countOf(state));
    for (auto _ : state) {
        for (const Sample& sample : samples) {
            PointStatistics& point = points[std::size_t(sample.object.id - 200001)];
            benchmark::DoNotOptimize(point.take(sample.timeMs, sample.value, sample.quality, calendar));
        }
        nextRound(samples);
    }
    korvaneItems(state, samples.size());
}

void readStatistics(benchmark::State& state)
{
    RuntimeDatabase database;
    addPoints(database, countOf(state));
    const std::vector<Sample> samples = oneRound(countOf(state));
    for (const Sample& sample : samples)
        database.takeSample(sample);
    database.setClock([] { return start + 2 * roundMs; });
    for (auto _ : state) {
        for (const Sample& sample : samples)
            benchmark::DoNotOptimize(database.fieldValue(sample.object, DataCode::DataField::TodayMean));
    }
    korvaneItems(state, samples.size());
}

/// A second of a plant that has a million values a second.
void commitSamples(benchmark::State& state)
{
    const QTemporaryDir folder;
    RuntimeStore store;
    RuntimeDatabase database;
    if (!store.open(folder.filePath(QStringLiteral("store.db"))) || !store.load(database).isEmpty())
        qFatal("no store");
    std::vector<Sample> samples = oneRound(countOf(state));
    for (auto _ : state) {
        store.append(samples);
        if (!store.commit(samples.front().timeMs))
            qFatal("not committed");
        state.PauseTiming();
        if (!store.fold(database, int(million))) // drops the row
            qFatal("not folded");
        nextRound(samples);
        state.ResumeTiming();
    }
    korvaneItems(state, samples.size());
}

void writePlainly(benchmark::State& state)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("samples")));
    std::vector<Sample> samples = oneRound(countOf(state));
    for (auto _ : state) {
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            qFatal("no file");
        file.write(reinterpret_cast<const char*>(samples.data()), qint64(samples.size() * sizeof(Sample)));
        file.close();
        state.PauseTiming();
        nextRound(samples);
        state.ResumeTiming();
    }
    korvaneItems(state, samples.size());
}

/// The states of points, a thousand in a transaction.
void foldStates(benchmark::State& state)
{
    const QTemporaryDir folder;
    RuntimeStore store;
    RuntimeDatabase database;
    addPoints(database, countOf(state));
    if (!store.open(folder.filePath(QStringLiteral("store.db"))) || !store.load(database).isEmpty())
        qFatal("no store");
    std::vector<Sample> samples = oneRound(countOf(state));
    for (auto _ : state) {
        state.PauseTiming();
        for (const Sample& sample : samples)
            database.takeSample(sample);
        store.append(samples);
        if (!store.commit(samples.front().timeMs))
            qFatal("not committed");
        state.ResumeTiming();
        while (store.unfolded() > 0) {
            if (!store.fold(database, 1000))
                qFatal("not folded");
        }
        nextRound(samples);
    }
    korvaneItems(state, samples.size());
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv); // Qt's database drivers are plugins
    const auto add = [](const char* name, auto function) { return benchmark::RegisterBenchmark(name, function); };
    add("take a sample", takeSamples)->Arg(10000)->Arg(100000);
    add("take a sample (plain)", takePlainly)->Arg(10000)->Arg(100000);
    add("count a sample", countSamples)->Arg(100)->Arg(10000)->Arg(100000);
    add("read a mean", readStatistics)->Arg(10000);
    add("commit a sample", commitSamples)->Arg(10000)->Arg(million);
    add("commit a sample (plain)", writePlainly)->Arg(10000)->Arg(million);
    add("fold a state", foldStates)->Arg(10000);
    return korvaneBenchmarkMain(argc, argv);
}
