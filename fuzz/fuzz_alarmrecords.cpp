// Reads alarm settings from any text and writes them again, and puts the text itself into JSON and takes it out.

#include "fuzz/storedinput.h"
#include "platform/utility/jsontexts.h"
#include "scada/records/alarmdatainfo.h"
#include "scada/records/alarmdisplayfilterinfo.h"

#include <rapidjson/document.h>

namespace {

rapidjson::Document parsed(const QString& text)
{
    rapidjson::Document document;
    document.Parse<rapidjson::kParseDefaultFlags | rapidjson::kParseIterativeFlag>(text.toUtf8().constData());
    return document;
}

void checkSeverities(const QString& text)
{
    AlarmDataInfo read;
    read.fromSettingInfo(text);
    const QString written = read.toSettingInfo();
    AlarmDataInfo again;
    again.fromSettingInfo(written);
    for (const int severity : again.severities().keys()) {
        const AlarmSeverityData first = read.severityData(severity);
        const AlarmSeverityData second = again.severityData(severity);
        require(first.soundPath == second.soundPath && first.usePopup == second.usePopup, "a severity reads back");
    }
    require(again.toSettingInfo() == written, "what was read back is written alike");

    AlarmDataInfo named;
    named.setSoundPath(3, text);
    again.fromSettingInfo(named.toSettingInfo());
    require(again.severityData(3).soundPath == text, "a path reads back");
}

void checkFilter(const QString& text)
{
    AlarmDisplayFilterInfo read;
    read.fromSettingInfo(text);
    AlarmDisplayFilterInfo again;
    again.fromSettingInfo(read.toSettingInfo());
    require(again.isEqual(read), "a filter reads back");
}

void checkTexts(const QString& text)
{
    const rapidjson::Document member = parsed(QStringLiteral("{%1}").arg(Korvane::jsKeyStringValue(text, text, false)));
    require(!member.HasParseError() && member.MemberCount() == 1, "a member is JSON");
    require(Korvane::getJsonString(member.MemberBegin()->name) == text, "a key reads back");
    require(Korvane::getJsonString(member.MemberBegin()->value) == text, "a text reads back");

    const rapidjson::Document any = parsed(text);
    if (!any.HasParseError() && !any.IsString())
        require(!parsed(Korvane::getJsonString(any)).HasParseError(), "a value's text is JSON");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    checkSeverities(text);
    checkFilter(text);
    checkTexts(text);
    return 0;
}
