#include "scada/records/alarmdisplayfilterinfo.h"

#include "platform/utility/jsontexts.h"
#include "scada/records/jsonreading_p.h"

#include <QStringList>

#include <tuple>

namespace {

QString listText(const QList<int>& numbers)
{
    QStringList texts;
    for (const int number : numbers)
        texts.append(QString::number(number));
    return QStringLiteral("[%1]").arg(texts.join(QLatin1Char(',')));
}

QString itemText(const QMap<int, int>& items)
{
    QString text;
    for (auto item = items.begin(); item != items.end(); ++item)
        text += Korvane::jsKeyInt64Value(QString::number(item.key()), item.value(), std::next(item) != items.end());
    return QStringLiteral("{%1}").arg(text);
}

/// Replaces \p numbers by an array's; by nothing else.
void readList(const rapidjson::Value& value, QList<int>& numbers)
{
    if (!value.IsArray())
        return;
    numbers.clear();
    for (const auto& element : value.GetArray())
        numbers.append(JsonReading::integerOf(element));
}

/// Replaces \p items by an object's; by nothing else.
void readItems(const rapidjson::Value& value, QMap<int, int>& items)
{
    if (!value.IsObject())
        return;
    items.clear();
    for (const auto& member : value.GetObject())
        items.insert(JsonReading::numberOfName(member.name), JsonReading::integerOf(member.value));
}

} // namespace

QString AlarmDisplayFilterInfo::toSettingInfo() const
{
    using namespace Korvane;
    return QStringLiteral("{%1}").arg(jsKeyObjectValue(QStringLiteral("Severity"), listText(severities), true) +
                                      jsKeyObjectValue(QStringLiteral("Aor"), listText(areas), true) +
                                      jsKeyInt64Value(QStringLiteral("SubjectToUserAor"), subjectToUserAor, true) +
                                      jsKeyInt64Value(QStringLiteral("ShowToolBar"), showToolBar, true) +
                                      jsKeyObjectValue(QStringLiteral("DisplayItem"), itemText(displayItems), false));
}

void AlarmDisplayFilterInfo::fromSettingInfo(const QString& text)
{
    showToolBar = true; // kept: settings stored before there was a choice rely on it, and malformed ones too
    const rapidjson::Document document = JsonReading::parseObject(text);
    for (const auto& member : document.GetObject()) {
        if (member.name == "Severity")
            readList(member.value, severities);
        else if (member.name == "Aor")
            readList(member.value, areas);
        else if (member.name == "DisplayItem")
            readItems(member.value, displayItems);
        else if (member.name == "SubjectToUserAor")
            subjectToUserAor = JsonReading::lowByteOf(member.value) != 0;
        else if (member.name == "ShowToolBar")
            showToolBar = JsonReading::lowByteOf(member.value) != 0;
    }
}

bool AlarmDisplayFilterInfo::isEqual(const AlarmDisplayFilterInfo& other) const
{
    const auto members = [](const AlarmDisplayFilterInfo& info) {
        return std::tie(info.subjectToUserAor, info.showToolBar, info.severities, info.areas, info.displayItems);
    };
    return members(*this) == members(other);
}
