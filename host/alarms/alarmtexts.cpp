#include "host/alarms/alarmtexts.h"

#include "platform/data/datalinkinfo.h"

#include <QCoreApplication>

#include <iterator>

namespace {

constexpr const char* context = "AlarmTexts";

// In the order of ScadaAlarm::State.
constexpr const char* states[] = {
    QT_TRANSLATE_NOOP("AlarmTexts", "normal"),         QT_TRANSLATE_NOOP("AlarmTexts", "unacknowledged"),
    QT_TRANSLATE_NOOP("AlarmTexts", "acknowledged"),   QT_TRANSLATE_NOOP("AlarmTexts", "returned unacknowledged"),
    QT_TRANSLATE_NOOP("AlarmTexts", "shelved"),        QT_TRANSLATE_NOOP("AlarmTexts", "suppressed"),
    QT_TRANSLATE_NOOP("AlarmTexts", "out of service"),
};

// In the order of ScadaAlarm::Cause.
constexpr const char* causes[] = {
    QT_TRANSLATE_NOOP("AlarmTexts", "very low"),
    QT_TRANSLATE_NOOP("AlarmTexts", "low"),
    QT_TRANSLATE_NOOP("AlarmTexts", "high"),
    QT_TRANSLATE_NOOP("AlarmTexts", "very high"),
    QT_TRANSLATE_NOOP("AlarmTexts", "abnormal state"),
    QT_TRANSLATE_NOOP("AlarmTexts", "changes too fast"),
    QT_TRANSLATE_NOOP("AlarmTexts", "no usable value"),
    QT_TRANSLATE_NOOP("AlarmTexts", "communication failed"),
};

// In the order of AlarmTransition::Kind.
constexpr const char* kinds[] = {
    QT_TRANSLATE_NOOP("AlarmTexts", "raised"),
    QT_TRANSLATE_NOOP("AlarmTexts", "returned"),
    QT_TRANSLATE_NOOP("AlarmTexts", "acknowledged"),
    QT_TRANSLATE_NOOP("AlarmTexts", "shelved"),
    QT_TRANSLATE_NOOP("AlarmTexts", "unshelved"),
    QT_TRANSLATE_NOOP("AlarmTexts", "suppressed"),
    QT_TRANSLATE_NOOP("AlarmTexts", "no longer suppressed"),
    QT_TRANSLATE_NOOP("AlarmTexts", "taken out of service"),
    QT_TRANSLATE_NOOP("AlarmTexts", "put back into service"),
    QT_TRANSLATE_NOOP("AlarmTexts", "event"),
};

template <std::size_t size, typename Number>
QString textOf(const char* const (&texts)[size], Number number)
{
    const auto place = static_cast<std::size_t>(number);
    return place < size ? QCoreApplication::translate(context, texts[place]) : QString();
}

QString nameOf(const RuntimeDatabase::Object& object)
{
    if (!object.displayName.isEmpty())
        return object.displayName;
    return object.description.isEmpty() ? object.name : object.description;
}

} // namespace

QString AlarmTexts::state(ScadaAlarm::State state)
{
    return textOf(states, state);
}

QString AlarmTexts::cause(ScadaAlarm::Cause cause)
{
    return textOf(causes, cause);
}

QString AlarmTexts::kind(AlarmTransition::Kind kind)
{
    return textOf(kinds, kind);
}

QString AlarmTexts::tag(const ScadaAlarm& alarm)
{
    if (!alarm.tag.isEmpty() || alarm.objectId == 0)
        return alarm.tag;
    return Korvane::tagPrefix(alarm.objectType) + QLatin1Char('#') + QString::number(alarm.objectId);
}

QString AlarmTexts::message(const RuntimeDatabase::Object& object, ScadaAlarm::Cause cause, double value)
{
    if (!object.alarm.message.isEmpty())
        return object.alarm.message;
    QString what = AlarmTexts::cause(cause);
    if (cause == ScadaAlarm::Cause::StateChange) {
        const QString name = object.states.value(static_cast<int>(value));
        if (!name.isEmpty())
            what = name;
    }
    return nameOf(object) + QLatin1Char(' ') + what;
}
