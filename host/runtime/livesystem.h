#pragma once

#include "host/actions/canvasactionmanagerfactory.h"
#include "host/alarms/alarmsystem.h"
#include "host/canvas/canvasmanager.h"
#include "host/control/controlsystem.h"
#include "host/core/korvanecore.h"
#include "host/core/project.h"
#include "host/core/projectmanager.h"
#include "host/core/propertymanager.h"
#include "host/core/replayclock.h"
#include "host/hostexport.h"
#include "host/runtime/dataservice.h"
#include "host/runtime/runtimedatabase.h"
#include "host/runtime/runtimestore.h"
#include "host/scripting/pagescripts.h"
#include "host/scripting/scriptengine.h"
#include "host/sources/sourceaddress.h"
#include "scada/audio/korvanettsinterface.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <tl/expected.hpp>

#include <functional>
#include <memory>
#include <optional>

/// A project at work: its points, its sources, the services that pages need, and its pages.
///
/// The system's clock is the machine's, or, while a recording plays, the recording's: samples then have the times at
/// which they were taken, and everything that reads the clock sees that time. What happens then is no history of this
/// plant, so only a system on the machine's clock keeps its statistics in the project's database file.
class KORVANE_HOST_EXPORT LiveSystem : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(LiveSystem)

public:
    struct Options
    {
        QString folder; ///< of the project
        /// Where values come from; relative files as seen from the working folder. Empty for the project's own source.
        QString source = {};
        /// Where the machine's time comes from, milliseconds since 1970-01-01 UTC; the machine's clock unless given.
        std::function<qint64()> machineClock = {};
        /// Whether the project's scripts run from the start; they can be switched on later.
        bool areScriptsTrusted = false;
        /// Whether statistics are kept in the project's database file.
        bool isStored = true;
    };

    /// Half a period of blinking shapes.
    static constexpr std::chrono::milliseconds halfBlink{500};

    /// \returns why the project can't be run at all; what can be done without is a problem.
    static tl::expected<std::unique_ptr<LiveSystem>, QString> open(const Options& options);
    ~LiveSystem() override;

    /// Starts sources, ticks and blinking, and the time of a recording.
    void start();

    const Project& project() const { return m_project; }
    RuntimeDatabase& database() { return m_database; }
    DataService& dataService() { return m_dataService; }
    AlarmSystem& alarms() { return m_alarms; }
    ControlSystem& control() { return m_control; }
    CanvasManager& pages() { return m_pages; }
    PropertyManager& properties() { return m_properties; }
    /// The project in a window of its own, which is not shown unless asked for.
    ProjectManager& projectManager() { return m_projectManager; }
    KorvaneCore& core() { return m_core; }
    ScriptEngine& scripts() { return m_scripts; }
    KorvaneTTSInterface& voice() { return m_voice; }
    /// The scripts of an open page, owned by the system; null for a page that is not open here.
    PageScripts* scriptsOf(const Page& page) const;
    /// Has the project's scripts run from now on; open pages are loaded as if they were opened now.
    void trustScripts();
    /// Whether an open page has event actions that do not run, since the project's scripts are not trusted.
    bool hasUntrustedScripts() const;
    QString sourceDescription() const;
    /// How much faster than the machine's clock the system's runs, while it is not held.
    double speed() const { return m_replay ? m_replay->speed() : 1; }
    /// The system's time, milliseconds since 1970-01-01 UTC.
    qint64 nowMs() const;

    /// What went wrong so far without stopping the system, oldest first; the newest thousand.
    const QStringList& problems() const { return m_problems; }
    /// Takes what went wrong elsewhere in the program without stopping the system.
    void addProblem(const QString& text);
    /// Opens a page and connects it to the data service; one that can't be opened is a problem too.
    tl::expected<Page*, QString> openPage(const QString& name);

Q_SIGNALS:
    void problemFound(const QString& text);

private:
    LiveSystem(const Project& project, const Options& options);

    tl::expected<void, QString> loadPoints();
    tl::expected<void, QString> openSource(const QString& address, bool isOwn);
    void addManualSource();
    void openStore();
    void startAlarms();
    bool seekReplay(qint64 timeMs);
    void showAlarmFigures();
    void heedPages();
    void heedScripts();
    void startControl(bool isKept);
    void heedSessions();
    KorvaneScadaCoreInterface& hub() { return *m_core.scadaCoreInterface(); }

    Project m_project;
    std::function<qint64()> m_machineClock;
    bool m_isClockGiven;
    std::optional<ReplayClock> m_replay;
    QStringList m_problems;
    RuntimeDatabase m_database;
    RuntimeStore m_store;
    ProjectManager m_projectManager;
    PropertyManager m_properties;
    KorvaneCore m_core;
    DataService m_dataService;
    AlarmSystem m_alarms;
    KorvaneTTSInterface m_voice;
    CanvasActionManagerFactory m_managers;
    CanvasManager m_pages;
    ControlSystem m_control;
    ScriptEngine m_scripts;
    std::vector<std::unique_ptr<PageScripts>> m_pageScripts; ///< of the open pages
    QTimer m_blink;
};
