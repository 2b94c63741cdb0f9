#include "scada/records/numberinputparam.h"

#include "platform/utility/jsontexts.h"
#include "scada/records/jsonreading_p.h"

QString NumberInputParam::toStream() const
{
    using Korvane::jsKeyDoubleValue;
    // Kept: the decimals go through the double's writer and the flag through the integer's.
    return QStringLiteral("{%1}").arg(jsKeyDoubleValue(QStringLiteral("MinValue"), minValue, true) +
                                      jsKeyDoubleValue(QStringLiteral("MaxValue"), maxValue, true) +
                                      jsKeyDoubleValue(QStringLiteral("Decimals"), decimals, true) +
                                      jsKeyDoubleValue(QStringLiteral("Scale"), scale, true) +
                                      jsKeyDoubleValue(QStringLiteral("SingleStep"), singleStep, true) +
                                      Korvane::jsKeyValue(QStringLiteral("UseScale"), useScale ? 1 : 0, false));
}

void NumberInputParam::fromStream(const QString& text)
{
    const rapidjson::Document document = JsonReading::parseObject(text);
    const auto readNumber = [&document](const char* key, double& number) {
        const auto member = document.FindMember(key);
        if (member != document.MemberEnd())
            number = JsonReading::numberOf(member->value);
    };
    readNumber("MinValue", minValue);
    if (const auto member = document.FindMember("Decimals"); member != document.MemberEnd())
        decimals = JsonReading::lowByteOf(member->value);
    readNumber("MaxValue", maxValue);
    readNumber("Scale", scale);
    readNumber("SingleStep", singleStep);
    if (const auto member = document.FindMember("UseScale"); member != document.MemberEnd())
        useScale = JsonReading::lowByteOf(member->value) != 0;
}

bool NumberInputParam::isEmpty() const
{
    return minValue == 0 && maxValue == 0 && scale == 0 && singleStep == 0 && decimals == 0 && !useScale;
}

bool NumberInputParam::isEqual(const NumberInputParam& other) const
{
    return minValue == other.minValue && maxValue == other.maxValue && scale == other.scale &&
           decimals == other.decimals && singleStep == other.singleStep && useScale == other.useScale;
}
