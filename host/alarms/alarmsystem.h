#pragma once

#include "host/alarms/alarmdesk.h"
#include "host/alarms/alarmlog.h"
#include "host/alarms/alarmmanager.h"
#include "host/alarms/korvanescadaalarmprocessor.h"
#include "host/hostexport.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <tl/expected.hpp>

#include <deque>
#include <limits>
#include <vector>

class CanvasScadaActionManagerInterface;
class KorvaneScadaCoreInterface;
class RuntimeDatabase;

/// The alarms of a system at work: from the samples that cross a limit to the log, and what pages and the services of
/// the hub hear of it.
///
/// Registers its processor and manager with the hub. A page on the screen whose actions are bound to an object hears of
/// each alarm of it that is announced: the page's action manager requests it, and is told the state it was left in.
class KORVANE_HOST_EXPORT AlarmSystem : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmSystem)

public:
    /// \param database, hub not owned, must outlive the system
    AlarmSystem(RuntimeDatabase& database, KorvaneScadaCoreInterface& hub, QObject* parent = nullptr);
    ~AlarmSystem() override;

    /// Begins, once every object was added: with what stood when the program ended last, from the log in \p fileName.
    /// \param fileName empty for a log in memory
    /// \returns why that file can't be used; the log is in memory then, and everything else works.
    [[nodiscard]] tl::expected<void, QString> start(const QString& fileName);

    AlarmManager& manager() { return m_manager; }
    const KorvaneScadaAlarmProcessor& processor() const { return m_processor; }
    AlarmDesk& desk() { return m_desk; }
    const AlarmLog& log() const { return m_log; }
    /// The alarm that was raised last; with number 0 before the first.
    const ScadaAlarm& newest() const { return m_newest; }

    /// What time does: delays and shelving end. To be called once a tick, after its samples.
    void advance();
    /// Writes a line into the log that is none of an alarm.
    void addEvent(const QString& text, const QString& user = {});
    /// Writes what the log still holds back; done by itself soon after each change.
    void commit() { commit(std::numeric_limits<std::size_t>::max()); }

    /// \param page not owned; must be removed before it goes
    void addPage(CanvasScadaActionManagerInterface* page);
    void removePage(CanvasScadaActionManagerInterface* page);

Q_SIGNALS:
    /// Alarms changed: once for all that one pass of the event loop changed.
    void changed();
    /// The log has new lines.
    void logged();
    void problemFound(const QString& text);

private:
    void commit(std::size_t mostLines);
    void take(const AlarmTransition& transition);
    void announce(const ScadaAlarm& alarm);
    void tellPages(const ScadaAlarm& alarm);

    RuntimeDatabase& m_database;
    KorvaneScadaCoreInterface& m_hub;
    AlarmManager m_manager;
    KorvaneScadaAlarmProcessor m_processor;
    AlarmDesk m_desk;
    AlarmLog m_log;
    ScadaAlarm m_newest;
    QTimer m_settle; ///< for the end of the event loop's pass
    QTimer m_retry;  ///< of a commit that failed
    QString m_toldProblem;
    std::vector<CanvasScadaActionManagerInterface*> m_pages;
    std::deque<ScadaAlarm> m_announced; ///< that pages have yet to hear of; the front one now
    bool m_isAnnouncing = false;
};
