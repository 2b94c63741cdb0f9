// Reads input parameters from any text and writes them again, and takes the text itself as the name of a value.

#include "fuzz/storedinput.h"
#include "scada/records/inputinfoparam.h"

#include <cmath>

namespace {

bool isFinite(const NumberInputParam& param)
{
    return std::isfinite(param.minValue) && std::isfinite(param.maxValue) && std::isfinite(param.scale) &&
           std::isfinite(param.singleStep);
}

void checkNumber(const QString& text)
{
    NumberInputParam read;
    read.fromStream(text);
    NumberInputParam again;
    again.fromStream(read.toStream());
    require(again.decimals == read.decimals && again.useScale == read.useScale, "decimals and flag read back");
    require(isFinite(again), "what is written is finite");
    require(again.isEmpty() || !read.isEmpty(), "an empty record reads back empty");
}

void checkEnum(const QString& text)
{
    EnumInputParam read;
    read.fromStream(text);
    EnumInputParam again;
    again.fromStream(read.toStream());
    require(again.enumValues.size() == read.enumValues.size(), "every value reads back");
    for (int i = 0; i < read.enumValues.size(); ++i)
        require(again.enumValues[i].first == read.enumValues[i].first, "a name reads back");
    const int count = again.enumValues.size();
    again.fromStream(read.toStream());
    require(again.enumValues.size() == 2 * count, "reading appends");

    EnumInputParam named;
    named.enumValues = {{text, 1}, {text, 2}};
    again = EnumInputParam();
    again.fromStream(named.toStream());
    require(again.isEqual(named), "any name reads back");
}

void checkInfo(const QString& text)
{
    NumberInputParam number;
    number.fromStream(text);
    InputInfoParam read;
    read.setNumberInputParam(number);
    const InputInfoParam copy = read;
    read.fromStream(text);
    require(copy.numberInputParam->toStream() == number.toStream() && !copy.enumInputParam, "a copy keeps its records");

    InputInfoParam again;
    again.fromStream(read.toStream());
    require(!again.enumInputParam == !read.enumInputParam, "an enum record reads back");
    require(!again.numberInputParam == bool(read.enumInputParam), "a number record is written without an enum record");
    require(read.enumInputParam || !read.isEqual(read), "a record without an enum record equals none like it");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    checkNumber(text);
    checkEnum(text);
    checkInfo(text);
    return 0;
}
