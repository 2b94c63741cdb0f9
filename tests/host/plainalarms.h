#pragma once

#include "platform/data/scadaalarm.h"

#include <QDateTime>
#include <QString>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <utility>

/// What operators, conditions and the plant do to an alarm.
enum class Operation { Raise, Return, Acknowledge, Shelve, Unshelve, Suppress, Unsuppress, TakeOut, PutBack };

inline constexpr std::array<Operation, 9> operations = {
    Operation::Raise,    Operation::Return,     Operation::Acknowledge, Operation::Shelve, Operation::Unshelve,
    Operation::Suppress, Operation::Unsuppress, Operation::TakeOut,     Operation::PutBack};

/// What is known of one alarm, without any of the manager's short cuts.
struct PlainAlarm
{
    quint64 id = 0; ///< 0 while normal
    bool isPresent = false;
    bool isAcknowledged = false;
    QDateTime shelvedUntil = {};
    int severity = 0;
    QString area = {};
};

/// The alarms of four objects as a plain list, to compare the manager's counts and states with.
class PlainList
{
public:
    using Key = std::pair<int, int>; ///< object and cause

    bool isSuppressed[4] = {};
    bool isOutOfService[4] = {};
    std::map<Key, PlainAlarm> alarms;
    quint64 lastId = 0;
    bool isLatching = false;

    ScadaAlarm::State stateOf(const Key& key) const
    {
        const auto found = alarms.find(key);
        if (found == alarms.end() || found->second.id == 0)
            return ScadaAlarm::State::Normal;
        const PlainAlarm& alarm = found->second;
        if (isOutOfService[key.first])
            return ScadaAlarm::State::OutOfService;
        if (isSuppressed[key.first])
            return ScadaAlarm::State::Suppressed;
        if (alarm.shelvedUntil.isValid())
            return ScadaAlarm::State::Shelved;
        if (alarm.isPresent)
            return alarm.isAcknowledged ? ScadaAlarm::State::Acknowledged : ScadaAlarm::State::Unacknowledged;
        return ScadaAlarm::State::ReturnedUnacknowledged;
    }
    bool isVisible(const Key& key) const
    {
        const ScadaAlarm::State state = stateOf(key);
        return waits(key) || state == ScadaAlarm::State::Acknowledged;
    }
    bool waits(const Key& key) const
    {
        const ScadaAlarm::State state = stateOf(key);
        return state == ScadaAlarm::State::Unacknowledged || state == ScadaAlarm::State::ReturnedUnacknowledged;
    }

    void apply(Operation operation, const Key& key, const QDateTime& now, int severity, const QString& area)
    {
        const ScadaAlarm::State state = stateOf(key);
        PlainAlarm& alarm = alarms[key];
        switch (operation) {
        case Operation::Raise:
            if (alarm.id == 0)
                alarm = {++lastId, true, false, {}, severity, area};
            else if (!alarm.isPresent)
                alarm = {alarm.id, true, false, alarm.shelvedUntil, severity, area};
            break;
        case Operation::Return:
            if (alarm.isPresent && isLatching)
                alarm.isAcknowledged = false;
            alarm.isPresent = false;
            break;
        case Operation::Acknowledge:
            alarm.isAcknowledged |= waits(key);
            break;
        case Operation::Shelve:
            if (isVisible(key) || state == ScadaAlarm::State::Shelved)
                alarm.shelvedUntil = now.addSecs(60);
            break;
        case Operation::Unshelve:
            if (state == ScadaAlarm::State::Shelved)
                endShelf(alarm);
            break;
        case Operation::Suppress:
        case Operation::Unsuppress:
            exclude(isSuppressed[key.first], operation == Operation::Suppress, key.first);
            break;
        case Operation::TakeOut:
        case Operation::PutBack:
            exclude(isOutOfService[key.first], operation == Operation::TakeOut, key.first);
            break;
        }
        forgetNormal();
    }
    void advance(const QDateTime& now)
    {
        for (auto& [key, alarm] : alarms) {
            if (alarm.shelvedUntil.isValid() && alarm.shelvedUntil <= now)
                endShelf(alarm);
        }
        forgetNormal();
    }

private:
    void endShelf(PlainAlarm& alarm) const
    {
        alarm.shelvedUntil = {};
        alarm.isAcknowledged = !alarm.isPresent && !isLatching;
    }
    void exclude(bool& mark, bool isMarked, int object)
    {
        const bool was = isSuppressed[object] || isOutOfService[object];
        mark = isMarked;
        if (!was || isSuppressed[object] || isOutOfService[object])
            return;
        for (auto& [key, alarm] : alarms) {
            if (key.first == object)
                alarm.isAcknowledged = false;
        }
    }
    void forgetNormal()
    {
        for (auto each = alarms.begin(); each != alarms.end();) {
            const PlainAlarm& alarm = each->second;
            const bool isExcluded = isSuppressed[each->first.first] || isOutOfService[each->first.first];
            const bool isOver = !alarm.isPresent && !alarm.shelvedUntil.isValid() &&
                                (isExcluded || alarm.isAcknowledged || alarm.id == 0);
            each = isOver ? alarms.erase(each) : std::next(each);
        }
    }
};

/// The first alarm to be visible since none of an area was.
struct PlainFirst
{
    quint64 id = 0;

    /// \param found what the manager says, believed where several came at once
    void heed(const PlainList& list, const QString& area, quint64 found)
    {
        quint64 only = 0;
        int count = 0;
        for (const auto& [key, alarm] : list.alarms) {
            if (!list.isVisible(key) || (!area.isEmpty() && alarm.area != area))
                continue;
            only = alarm.id;
            ++count;
        }
        if (count == 0)
            id = 0;
        else if (id == 0)
            id = count == 1 ? only : found;
    }
};
