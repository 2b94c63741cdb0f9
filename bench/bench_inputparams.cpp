// Writing and reading an operator's input parameters, a number and a choice of ten, against RapidJSON parsing the same
// text.

#include "bench/support/ratioreport.h"
#include "scada/records/inputinfoparam.h"

#include <rapidjson/document.h>

namespace {

InputInfoParam number()
{
    NumberInputParam param;
    param.minValue = -50;
    param.maxValue = 150.5;
    param.scale = 0.1;
    param.singleStep = 0.25;
    param.decimals = 2;
    param.useScale = true;
    InputInfoParam info;
    info.setNumberInputParam(param);
    return info;
}

InputInfoParam choice()
{
    EnumInputParam param;
    for (int i = 0; i < 10; ++i)
        param.enumValues.append({QStringLiteral("position %1").arg(i), i * 0.5});
    InputInfoParam info;
    info.setEnumInputParam(param);
    return info;
}

void write(benchmark::State& state, InputInfoParam (*make)())
{
    const InputInfoParam info = make();
    for (auto _ : state) {
        QString text = info.toStream();
        benchmark::DoNotOptimize(text);
    }
}

void read(benchmark::State& state, InputInfoParam (*make)())
{
    const QString text = make().toStream();
    InputInfoParam info;
    for (auto _ : state) {
        info.fromStream(text);
        benchmark::DoNotOptimize(info);
    }
    korvaneItems(state, 1);
}

void parse(benchmark::State& state, InputInfoParam (*make)())
{
    const QByteArray text = make().toStream().toUtf8();
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
    const auto add = [](const char* name, auto function, InputInfoParam (*make)()) {
        benchmark::RegisterBenchmark(name, function, make);
    };
    add("write a number's parameters", write, number);
    add("write a choice of ten", write, choice);
    add("read a number's parameters against parsing their text", read, number);
    add("read a number's parameters against parsing their text (plain)", parse, number);
    add("read a choice of ten against parsing its text", read, choice);
    add("read a choice of ten against parsing its text (plain)", parse, choice);
    return korvaneBenchmarkMain(argc, argv);
}
