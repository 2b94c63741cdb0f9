// What a value costs on its way from separated text to a sample, beside a loop that does nothing but read the numbers; and
// a point of a list of points.

#include "bench/support/manypoints.h"
#include "bench/support/ratioreport.h"
#include "host/runtime/pointlist.h"
#include "host/sources/csvreader.h"
#include "host/sources/recordingsource.h"
#include "host/sources/recordingtable.h"
#include "host/sources/waterloopmodel.h"

#include <QTemporaryDir>

#include <cstdlib>

namespace {

constexpr int columns = 5000;
constexpr int rows = 20;
constexpr std::size_t values = std::size_t(columns) * rows;

std::vector<SourcePoint> points()
{
    std::vector<SourcePoint> made;
    for (int i = 0; i < columns; ++i)
        made.push_back({{Korvane::ScadaObjectType::AnalogPoint, 200001 + i}, pointName(std::size_t(i)), {}});
    return made;
}

/// Values as instruments give them: six digits.
QByteArray valueText(int row, int column)
{
    return QByteArray::number((row * 7919 + column * 104729) % 1000000 / 1000.0, 'f', 3);
}

QByteArray wideHeader()
{
    QByteArray header = "datetime";
    for (int i = 0; i < columns; ++i)
        header += ';' + pointName(std::size_t(i)).toLatin1();
    return header + '\n';
}

QByteArray wideRows()
{
    QByteArray text;
    for (int row = 0; row < rows; ++row) {
        text += QStringLiteral("2020-02-08 13:30:%1").arg(row, 2, 10, QLatin1Char('0')).toLatin1();
        for (int column = 0; column < columns; ++column)
            text += ';' + valueText(row, column);
        text += '\n';
    }
    return text;
}

QByteArray narrowRows()
{
    QByteArray text;
    for (int row = 0; row < rows; ++row) {
        const QByteArray time = QStringLiteral("2020-02-08 13:30:%1").arg(row, 2, 10, QLatin1Char('0')).toLatin1();
        for (int column = 0; column < columns; ++column)
            text += time + ';' + pointName(std::size_t(column)).toLatin1() + ';' + valueText(row, column) + ";0\n";
    }
    return text;
}

/// Reads rows as a source does, in pieces of 64 KB.
void readRows(benchmark::State& state, const QByteArray& header, const QByteArray& text)
{
    constexpr int pieceBytes = 1 << 16;
    const ColumnMap map(points());
    std::vector<Sample> samples;
    for (auto _ : state) {
        state.PauseTiming();
        RecordingTable table(map, QTimeZone("Europe/Berlin"), RecordingTable::TimeColumn::Read);
        CsvReader reader;
        reader.append(header.constData(), std::size_t(header.size()));
        if (reader.next() != CsvReader::Result::Record || !table.readHeader(reader.fields(), reader.separator()))
            state.SkipWithError("no header");
        samples.clear();
        state.ResumeTiming();
        for (int at = 0; at < text.size(); at += pieceBytes) {
            reader.append(text.constData() + at, std::size_t(std::min(pieceBytes, text.size() - at)));
            while (reader.next() == CsvReader::Result::Record) {
                if (!table.appendRow(reader.fields(), samples))
                    state.SkipWithError("a row is malformed");
            }
        }
    }
    if (samples.size() != values)
        state.SkipWithError("values are missing");
    korvaneItems(state, values);
}

/// Reads the numbers of a text and nothing else: one a line, or one a column.
void readPlainly(benchmark::State& state, const QByteArray& text)
{
    for (auto _ : state) {
        double sum = 0;
        for (const char* at = text.constData(); *at != '\0';) {
            char* end = nullptr;
            sum += std::strtod(at, &end);
            at = *end == '\0' ? end : end + 1;
        }
        benchmark::DoNotOptimize(sum);
    }
    korvaneItems(state, values);
}

QByteArray numbersAlone()
{
    QByteArray text;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            text += valueText(row, column) + ';';
    }
    return text;
}

void readWide(benchmark::State& state)
{
    readRows(state, wideHeader(), wideRows());
    korvaneRatioLimit(state, 2);
}

void readNarrow(benchmark::State& state)
{
    readRows(state, "time;name;value;quality\n", narrowRows());
    korvaneRatioLimit(state, 6);
}

void readNumbers(benchmark::State& state)
{
    readPlainly(state, numbersAlone());
}

QString writeFile(const QTemporaryDir& folder, const QByteArray& text)
{
    QFile file(folder.filePath(QStringLiteral("bench.csv")));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        std::abort();
    return file.fileName();
}

void playFile(benchmark::State& state)
{
    const QTemporaryDir folder;
    const QString path = writeFile(folder, wideHeader() + wideRows());
    std::size_t count = 0;
    for (auto _ : state) {
        state.PauseTiming();
        RecordingSource source(path, points(), {});
        count = 0;
        QObject::connect(&source, &ValueSource::delivered, &source,
                         [&count](const std::vector<Sample>& samples) { count += samples.size(); });
        state.ResumeTiming();
        source.start(0);
        source.advance(4000000000000);
    }
    if (count != values)
        state.SkipWithError("values are missing");
    korvaneItems(state, values);
}

void readPoints(benchmark::State& state)
{
    constexpr std::size_t count = 100000;
    QByteArray text = "id;name;kind;unit;description;station;low_low;low;high;high_high;hysteresis;decimals;scale_low;"
                      "scale_high;stale_after;address\n";
    for (std::size_t i = 0; i < count; ++i) {
        text +=
            QStringLiteral("%1;%2;analog;bar;Pressure behind the pump;Station 1;-1;0;10.5;12.25;0.5;2;-5;20;10;%1\n")
                .arg(200001 + i)
                .arg(pointName(i))
                .toLatin1();
    }
    const QTemporaryDir folder;
    const QString path = writeFile(folder, text);
    for (auto _ : state) {
        const auto list = PointList::read(path);
        if (!list || list->objects.size() != count)
            state.SkipWithError("points are missing");
    }
    korvaneItems(state, count);
}

void stepModel(benchmark::State& state)
{
    WaterLoopModel model(1);
    for (auto _ : state)
        model.step();
    benchmark::DoNotOptimize(model.value(WaterLoopModel::Flow));
    korvaneItems(state, 1);
}

} // namespace

int main(int argc, char** argv)
{
    const auto add = [](const char* name, auto function) { return benchmark::RegisterBenchmark(name, function); };
    add("a value of a wide row against strtod", readWide);
    add("a value of a wide row against strtod (plain)", readNumbers);
    add("a value of a narrow row against strtod", readNarrow);
    add("a value of a narrow row against strtod (plain)", readNumbers);
    add("a value played from a file", playFile);
    add("a point of a list of 100,000", readPoints);
    add("a step of the water loop", stepModel);
    return korvaneBenchmarkMain(argc, argv);
}
