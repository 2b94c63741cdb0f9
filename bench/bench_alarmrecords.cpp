// Reading the settings string of ten severities, against RapidJSON parsing the same text.

#include "bench/support/ratioreport.h"
#include "scada/records/alarmdatainfo.h"

#include <rapidjson/document.h>

namespace {

QString settings()
{
    AlarmDataInfo info;
    for (const int severity : info.severities().keys()) {
        info.setSoundPath(severity, QStringLiteral("/usr/share/sounds/alarm%1.wav").arg(severity));
        info.setUsePopup(severity, severity % 2 == 0);
    }
    return info.toSettingInfo();
}

void readRecord(benchmark::State& state)
{
    const QString text = settings();
    AlarmDataInfo info;
    for (auto _ : state) {
        info.fromSettingInfo(text);
        benchmark::DoNotOptimize(info);
    }
    korvaneItems(state, 1);
}

void parse(benchmark::State& state)
{
    const QByteArray text = settings().toUtf8();
    for (auto _ : state) {
        rapidjson::Document document;
        document.Parse(text.constData());
        benchmark::DoNotOptimize(document);
    }
    korvaneItems(state, 1);
}

} // namespace

int main(int argc, char** argv)
{
    const auto add = [](const char* name, auto function) { return benchmark::RegisterBenchmark(name, function); };
    add("read ten severities against parsing their text", readRecord);
    add("read ten severities against parsing their text (plain)", parse);
    return korvaneBenchmarkMain(argc, argv);
}
