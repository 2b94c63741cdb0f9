#include "host/inspection/markstext.h"

#include "platform/data/quorixdata.h"
#include "platform/data/valuemarks.h"

#include <QStringList>

namespace {

struct MarkName
{
    const char* member;
    qint32 bit;
    const char* name;
};

constexpr MarkName names[] = {
    {"quality", ValueMark::Invalid, "invalid"},
    {"quality", ValueMark::CommunicationFailed, "communication failed"},
    {"quality", ValueMark::Stale, "stale"},
    {"quality", ValueMark::Substituted, "substituted"},
    {"quality", ValueMark::Estimated, "estimated"},
    {"quality", ValueMark::OutOfRange, "out of range"},
    {"quality", ValueMark::Oscillating, "oscillating"},
    {"quality", ValueMark::Test, "test"},
    {"limit", ValueMark::AboveHighHigh, "above high-high"},
    {"limit", ValueMark::AboveHigh, "above high"},
    {"limit", ValueMark::BelowLow, "below low"},
    {"limit", ValueMark::BelowLowLow, "below low-low"},
    {"limit", ValueMark::Abnormal, "abnormal"},
    {"tag", ValueMark::ControlInhibited, "control inhibited"},
    {"tag", ValueMark::AlarmInhibited, "alarm inhibited"},
    {"tag", ValueMark::ScanInhibited, "scan inhibited"},
    {"tag", ValueMark::InformationTag, "information tag"},
};

} // namespace

QString marksText(const QuorixData& record)
{
    QStringList marks;
    for (const MarkName& mark : names) {
        const QuorixValue* codes = record.GetValue(mark.member);
        if (codes && (codes->toInt32() & mark.bit))
            marks.append(QLatin1String(mark.name));
    }
    return marks.isEmpty() ? QStringLiteral("good") : marks.join(QStringLiteral(", "));
}
