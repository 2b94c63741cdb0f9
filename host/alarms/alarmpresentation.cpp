#include "host/alarms/alarmpresentation.h"

#include "platform/data/scadaalarm.h"

#include <QColor>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <iterator>

namespace {

using Milliseconds = std::chrono::milliseconds;

// Dark enough to be read on white, from the severity that asks for least to the one that asks for most.
constexpr QRgb usualColours[] = {0xff455a64, 0xff37474f, 0xff1b5e20, 0xff00695c, 0xff01579b,
                                 0xff1a237e, 0xff6a1b9a, 0xff9a5b00, 0xffbf360c, 0xffb71c1c};

QString textOf(const QJsonValue& value)
{
    return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
}

/// Reads members and remembers the first that is wrong.
class Members
{
public:
    explicit Members(const QJsonObject& object) : m_object(object) {}

    /// A settings string; empty when the member is absent.
    QString settings(const char* name)
    {
        const QJsonValue value = m_object.value(QLatin1String(name));
        if (value.isUndefined())
            return {};
        if (!value.isObject())
            refuse(name, QStringLiteral("an object"));
        return textOf(value);
    }
    Milliseconds pause(const char* name, Milliseconds otherwise)
    {
        const QJsonValue value = m_object.value(QLatin1String(name));
        const int pause = value.toInt(value.isUndefined() ? int(otherwise.count()) : -1);
        if (pause < 0 || pause > AlarmPresentation::longestPause.count())
            refuse(name, QStringLiteral("a whole number from 0 to %1").arg(AlarmPresentation::longestPause.count()));
        return Milliseconds(pause);
    }
    bool flag(const char* name)
    {
        const QJsonValue value = m_object.value(QLatin1String(name));
        if (!value.isUndefined() && !value.isBool())
            refuse(name, QStringLiteral("true or false"));
        return value.toBool(true);
    }
    QStringList texts(const char* name)
    {
        const QJsonValue value = m_object.value(QLatin1String(name));
        QStringList list;
        const QJsonArray array = value.toArray();
        for (const QJsonValue& each : array)
            list.append(each.toString());
        if ((!value.isUndefined() && !value.isArray()) || list.contains(QString()))
            refuse(name, QStringLiteral("a list of names"));
        return list;
    }
    void readColours(AlarmDataInfo& severities)
    {
        const QJsonValue value = m_object.value(QLatin1String("colours"));
        if (!value.isUndefined() && !value.isObject())
            refuse("colours", QStringLiteral("an object"));
        const QJsonObject colours = value.toObject();
        for (auto each = colours.begin(); each != colours.end(); ++each) {
            bool isNumber = false;
            const int severity = each.key().toInt(&isNumber);
            const QColor colour(each.value().toString());
            const bool isSeverity =
                isNumber && severity >= ScadaAlarm::lowestSeverity && severity <= ScadaAlarm::highestSeverity;
            if (!isSeverity || !colour.isValid())
                refuse("colours", QStringLiteral("colour names by severity, 0 to 9"));
            severities.setTextColor(severity, colour);
        }
    }
    QString problem() const { return m_problem; }

private:
    void refuse(const char* name, const QString& wanted)
    {
        if (m_problem.isEmpty())
            m_problem = QStringLiteral("\"alarms\": \"%1\" must be %2").arg(QLatin1String(name), wanted);
    }

    QJsonObject m_object;
    QString m_problem;
};

} // namespace

AlarmPresentation::AlarmPresentation()
{
    int severity = 0;
    for (const QRgb colour : usualColours)
        severities.setTextColor(severity++, QColor(colour));
    filter.showToolBar = true;
}

tl::expected<AlarmPresentation, QString> AlarmPresentation::read(const QJsonObject& object, const QString& folder)
{
    AlarmPresentation read;
    Members members(object);
    read.severities.fromSettingInfo(members.settings("severities"));
    if (const QString filter = members.settings("filter"); !filter.isEmpty())
        read.filter.fromSettingInfo(filter);
    members.readColours(read.severities);
    read.areas = members.texts("areas");
    read.repeatAfter = members.pause("repeatMs", read.repeatAfter);
    read.remindAfter = members.pause("remindMs", read.remindAfter);
    read.severities.setSpeechOn(members.flag("isSpoken"));
    read.severities.setPopupShown(members.flag("isPopupShown"));
    if (!members.problem().isEmpty())
        return tl::make_unexpected(members.problem());
    const QList<int> known = read.severities.severities().keys();
    for (const int severity : known) {
        const QString path = read.severities.severityData(severity).soundPath;
        if (!path.isEmpty())
            read.severities.setSoundPath(severity, QDir(folder).absoluteFilePath(path));
    }
    return read;
}
