// Reads a script action from any trigger and bytes, with and without named values, and writes it again.

#include "fuzz/storedinput.h"
#include "platform/data/scadaeventactionstream.h"
#include "scada/actions/scadascriptaction.h"

#include <cstring>

namespace {

/// Four bytes of trigger, and the data behind them.
ScadaEventActionStream storedAction(const std::uint8_t* data, std::size_t size)
{
    ScadaEventActionStream stream;
    qint32 trigger = 0;
    if (size < sizeof trigger)
        return stream;
    std::memcpy(&trigger, data, sizeof trigger);
    stream.setTrigger(Korvane::TriggerType(trigger));
    stream.setData(QByteArray(reinterpret_cast<const char*>(data) + sizeof trigger, int(size - sizeof trigger)));
    return stream;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const ScadaEventActionStream stored = storedAction(data, size);
    const QString before = QStringLiteral("before");
    ScadaScriptAction read;
    read.setScript(before);
    read.fromStream(stored);
    ScadaScriptAction readWithValues;
    readWithValues.setScript(before);
    QMap<QString, QVariant> values;
    readWithValues.fromStream(stored, values);
    require(read.triggetType() == stored.trigger(), "the trigger is read");
    require(read.isEqual(readWithValues), "both forms read the same script");
    require(values.size() == 2 && values.value(QStringLiteral("triggerType")) == static_cast<int>(stored.trigger()),
            "the values are trigger and script");
    require(read.triggerName().isEmpty() || static_cast<quint32>(stored.trigger()) <= 13,
            "only known triggers have names");

    ScadaEventActionStream written;
    read.toStream(written);
    require(written.trigger() == stored.trigger() && written.type() == 1001, "trigger and type are written");
    ScadaScriptAction again;
    again.fromStream(written);
    require(again.isEqual(read) && again.script() == read.script(), "a script reads back");
    require(again.script() == before || stored.data().startsWith(written.data()) || again.script().isEmpty(),
            "a script is what was stored");
    return 0;
}
