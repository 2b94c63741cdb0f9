// Reads any bytes as a recording: one byte that chooses how, and the text behind it.

#include "fuzz/storedinput.h"
#include "host/sources/csvreader.h"
#include "host/sources/recordingtable.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr ObjectKey flow{Korvane::ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey level{Korvane::ScadaObjectType::AnalogPoint, 200002};

struct Choice
{
    explicit Choice(std::uint8_t byte)
        : lineBreaks((byte & 1) != 0 ? CsvReader::LineBreaks::AllowedInQuotes : CsvReader::LineBreaks::EndRecords),
          timeColumn((byte & 2) != 0 ? RecordingTable::TimeColumn::Ignored : RecordingTable::TimeColumn::Read),
          zone((byte & 4) != 0 ? "Europe/Berlin" : "UTC"),
          pieceSize(std::size_t(byte >> 3U) + 1)
    {
    }

    CsvReader::LineBreaks lineBreaks;
    RecordingTable::TimeColumn timeColumn;
    QTimeZone zone;
    std::size_t pieceSize;
};

/// What one way of cutting the text gave.
struct Reading
{
    std::vector<std::string> fields; ///< of every record, each with its line before it
    std::vector<Sample> samples;
    QStringList problems;
};

bool isSame(const Sample& a, const Sample& b)
{
    return a.object == b.object && a.timeMs == b.timeMs && a.value == b.value && a.quality == b.quality;
}

void takeRecord(const CsvReader& reader, RecordingTable& table, bool& hasHeader, Reading& reading)
{
    reading.fields.push_back(std::to_string(reader.line()));
    reading.fields.insert(reading.fields.end(), reader.fields().begin(), reader.fields().end());
    require(!reader.fields().empty(), "a record has a field");
    if (!hasHeader) {
        hasHeader = table.readHeader(reader.fields(), reader.separator()).has_value();
        return;
    }
    const std::size_t before = reading.samples.size();
    const auto time = table.appendRow(reader.fields(), reading.samples);
    if (!time) {
        require(reading.samples.size() == before, "a malformed row has no samples");
        reading.problems.append(table.problemText(QStringLiteral("f"), reader.line(), time.error()));
        return;
    }
    for (std::size_t i = before; i < reading.samples.size(); ++i) {
        const Sample& sample = reading.samples[i];
        require(sample.timeMs == *time && std::isfinite(sample.value), "samples are numbers at their row's time");
        require(sample.object == flow || sample.object == level, "samples are of points that there are");
    }
}

Reading read(const std::uint8_t* data, std::size_t size, const Choice& choice, std::size_t pieceSize)
{
    const ColumnMap map({{flow, QStringLiteral("FLOW"), QStringLiteral("a b")}, {level, QStringLiteral("LEVEL"), {}}});
    RecordingTable table(map, choice.zone, choice.timeColumn);
    CsvReader reader(choice.lineBreaks);
    Reading reading;
    bool hasHeader = false;
    qint64 line = 0;
    for (std::size_t at = 0; at <= size; at += pieceSize) {
        if (at < size)
            reader.append(reinterpret_cast<const char*>(data) + at, std::min(pieceSize, size - at));
        if (at + pieceSize > size)
            reader.finish();
        while (true) {
            const CsvReader::Result result = reader.next();
            if (result == CsvReader::Result::NeedsBytes || result == CsvReader::Result::Ended)
                break;
            require(reader.line() > line, "lines go on");
            line = reader.line();
            if (result == CsvReader::Result::Record)
                takeRecord(reader, table, hasHeader, reading);
            else
                reading.problems.append(reader.problem());
        }
    }
    require(reader.next() == CsvReader::Result::Ended, "it ends");
    return reading;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const Choice choice(data[0]);
    const Reading whole = read(data + 1, size - 1, choice, size);
    const Reading cut = read(data + 1, size - 1, choice, choice.pieceSize);
    require(whole.fields == cut.fields && whole.problems == cut.problems, "how the text is cut changes nothing");
    require(std::equal(whole.samples.begin(), whole.samples.end(), cut.samples.begin(), cut.samples.end(), isSame),
            "nor does it change samples");
    return 0;
}
