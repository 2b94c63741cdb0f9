#include "scada/records/alarmdatainfo.h"

#include "platform/data/scadaalarm.h"
#include "platform/utility/jsontexts.h"
#include "scada/records/jsonreading_p.h"

#include <tuple>
#include <utility>

namespace {

AlarmSeverityData defaultData(int severity)
{
    AlarmSeverityData data;
    data.severity = severity;
    return data;
}

QString settingText(const AlarmSeverityData& data)
{
    return QStringLiteral("{%1}").arg(Korvane::jsKeyStringValue(QStringLiteral("Path"), data.soundPath, true) +
                                      Korvane::jsKeyValue(QStringLiteral("UsePopup"), data.usePopup ? 1 : 0, false));
}

/// Sound path and popup of a severity's object; what it does not say has its default.
AlarmSeverityData readSetting(const rapidjson::Value& object)
{
    AlarmSeverityData read;
    for (const auto& member : object.GetObject()) {
        if (member.name == "Path" && member.value.IsString())
            read.soundPath = Korvane::getJsonString(member.value);
        else if (member.name == "UsePopup")
            read.usePopup = JsonReading::lowByteOf(member.value) != 0;
    }
    return read;
}

} // namespace

AlarmDataInfo::AlarmDataInfo()
{
    for (int severity = ScadaAlarm::lowestSeverity; severity <= ScadaAlarm::highestSeverity; ++severity)
        m_severities.insert(severity, defaultData(severity));
}

AlarmSeverityData AlarmDataInfo::severityData(int severity) const
{
    return m_severities.value(severity, defaultData(severity));
}

void AlarmDataInfo::setSeverityData(int severity, const AlarmSeverityData& data)
{
    m_severities.insert(severity, data);
}

void AlarmDataInfo::setSoundPath(int severity, const QString& path)
{
    const auto found = m_severities.find(severity);
    if (found != m_severities.end())
        found->soundPath = path;
}

void AlarmDataInfo::setTextColor(int severity, QColor color)
{
    const auto found = m_severities.find(severity);
    if (found != m_severities.end())
        found->textColor = std::move(color);
}

void AlarmDataInfo::setUsePopup(int severity, signed char use)
{
    const auto found = m_severities.find(severity);
    if (found != m_severities.end())
        found->usePopup = use != 0;
}

QString AlarmDataInfo::toSettingInfo()
{
    // Counted once, keys not looked at: kept, stored settings have always been numbered without gaps.
    const int count = m_severities.size();
    QString text;
    for (int severity = 0; severity < count; ++severity) {
        if (!text.isEmpty())
            text += QLatin1Char(',');
        const QString object = settingText(m_severities[severity]); // adds an entry of severity number 0
        text += Korvane::jsKeyObjectValue(QStringLiteral("%1").arg(severity), object, false);
    }
    return QStringLiteral("{%1}").arg(text);
}

void AlarmDataInfo::fromSettingInfo(const QString& text)
{
    const rapidjson::Document document = JsonReading::parseObject(text);
    for (const auto& member : document.GetObject()) {
        if (!member.value.IsObject())
            continue;
        const int severity = JsonReading::numberOfName(member.name);
        const AlarmSeverityData read = readSetting(member.value);
        auto entry = m_severities.find(severity);
        if (entry == m_severities.end())
            entry = m_severities.insert(severity, defaultData(severity));
        entry->soundPath = read.soundPath;
        entry->usePopup = read.usePopup;
    }
}

bool AlarmDataInfo::isEqual(const AlarmDataInfo& other) const
{
    const auto members = [](const AlarmDataInfo& info) {
        return std::tie(info.m_isMuted, info.m_isPopupShown, info.m_isSpeechOn, info.m_severities);
    };
    return members(*this) == members(other);
}
