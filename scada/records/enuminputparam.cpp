#include "scada/records/enuminputparam.h"

#include "platform/utility/jsontexts.h"
#include "scada/records/jsonreading_p.h"

#include <algorithm>

QString EnumInputParam::toStream() const
{
    QString members;
    for (int i = 0; i < enumValues.size(); ++i) {
        const bool isLast = i == enumValues.size() - 1;
        members += Korvane::jsKeyDoubleValue(enumValues[i].first, enumValues[i].second, !isLast);
    }
    return QStringLiteral("{%1}").arg(
        Korvane::jsKeyObjectValue(QStringLiteral("EnumValues"), QStringLiteral("{%1}").arg(members), false));
}

void EnumInputParam::fromStream(const QString& text)
{
    const rapidjson::Document document = JsonReading::parseObject(text);
    const auto values = document.FindMember("EnumValues");
    if (values == document.MemberEnd() || !values->value.IsObject())
        return;
    for (const auto& member : values->value.GetObject())
        enumValues.append({Korvane::getJsonString(member.name), JsonReading::numberOf(member.value)});
}

bool EnumInputParam::isEqual(const EnumInputParam& other) const
{
    return std::equal(enumValues.begin(), enumValues.end(), other.enumValues.begin(), other.enumValues.end(),
                      [](const auto& a, const auto& b) { return a.first == b.first && a.second == b.second; });
}
