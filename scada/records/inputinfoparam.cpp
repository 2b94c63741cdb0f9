#include "scada/records/inputinfoparam.h"

#include "platform/utility/jsontexts.h"
#include "scada/records/jsonreading_p.h"

void InputInfoParam::setNumberInputParam(const NumberInputParam& param)
{
    numberInputParam = std::make_shared<NumberInputParam>(param);
}

void InputInfoParam::setEnumInputParam(const EnumInputParam& param)
{
    enumInputParam = std::make_shared<EnumInputParam>(param);
}

QString InputInfoParam::toStream() const
{
    QString text;
    if (numberInputParam)
        text = Korvane::jsKeyObjectValue(QStringLiteral("NumberInputParam"), numberInputParam->toStream(), false);
    if (enumInputParam) // kept: in place of the number record, not beside it
        text = Korvane::jsKeyObjectValue(QStringLiteral("EnumInputParam"), enumInputParam->toStream(), false);
    return QStringLiteral("{%1}").arg(text);
}

void InputInfoParam::fromStream(const QString& text)
{
    const rapidjson::Document document = JsonReading::parseObject(text);
    if (const auto member = document.FindMember("NumberInputParam"); member != document.MemberEnd()) {
        NumberInputParam read;
        read.fromStream(Korvane::getJsonString(member->value));
        setNumberInputParam(read);
    }
    if (const auto member = document.FindMember("EnumInputParam"); member != document.MemberEnd()) {
        EnumInputParam read;
        read.fromStream(Korvane::getJsonString(member->value));
        setEnumInputParam(read);
    }
}

bool InputInfoParam::isEqual(const InputInfoParam& other) const
{
    if (!other.enumInputParam)
        return false;
    return !enumInputParam || enumInputParam->isEqual(*other.enumInputParam);
}
