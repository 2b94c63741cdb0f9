#pragma once

#include "host/accounts/accountdatabase.h"
#include "host/accounts/databasemanager.h"
#include "host/actions/canvasactionmanagerfactory.h"
#include "host/alarms/alarmsystem.h"
#include "host/canvas/canvasmanager.h"
#include "host/control/auditlog.h"
#include "host/control/controlconfirmer.h"
#include "host/control/controlpath.h"
#include "host/control/operatingstate.h"
#include "host/control/operationnames.h"
#include "host/control/operatorchanges.h"
#include "host/core/project.h"
#include "host/core/scadacore.h"
#include "host/runtime/dataservice.h"
#include "host/runtime/runtimedatabase.h"
#include "host/runtime/runtimemanager.h"
#include "platform/data/datafieldinfo.h"
#include "tests/support/temporaryfiles.h"
#include "tests/support/testcore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStringList>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

/// A line to the process: commands are recorded, and answered by the test.
class CommandedSource : public ValueSource
{
public:
    explicit CommandedSource(std::vector<ObjectKey> objects) : m_objects(std::move(objects)) {}

    QString description() const override { return QStringLiteral("test line"); }
    std::vector<ObjectKey> objects() const override { return m_objects; }
    void start(qint64) override { setState(State::Running); }
    void advance(qint64) override {}
    bool takesCommands(ObjectKey object) const override
    {
        return takesAny && std::find(m_objects.begin(), m_objects.end(), object) != m_objects.end();
    }
    bool readAgain(ObjectKey object) override
    {
        readAgainOf.append(object);
        return true;
    }
    tl::expected<void, QString> reconnect(qint64) override
    {
        ++reconnects;
        return {};
    }

    void deliver(const std::vector<Sample>& samples) { Q_EMIT delivered(samples); }
    void answer(quint32 requestId, const QString& reason) { Q_EMIT commandAnswered(requestId, reason); }
    void report(const QString& problem) { Q_EMIT problemFound(problem); }
    void fail() { setState(State::Failed, QStringLiteral("the line is dead")); }
    void recover() { setState(State::Running); }
    void end() { setState(State::Ended); }

    std::vector<Command> written;
    QString refusal; ///< with which write() answers before it returns; null for no answer
    bool takesAny = true;
    QList<ObjectKey> readAgainOf;
    int reconnects = 0;

private:
    void write(const Command& command) override
    {
        written.push_back(command);
        if (!refusal.isNull())
            Q_EMIT commandAnswered(command.requestId, refusal);
    }

    std::vector<ObjectKey> m_objects;
};

/// Answers confirmations as the test says; nobody confirms unless it does.
class TestConfirmer : public ControlConfirmer
{
public:
    bool confirm(const ScadaOperationMessage& request) override
    {
        asked.append(request.requestId);
        return answer && answer(request);
    }
    void askSecond(const ScadaOperationMessage& request) override { askedSecond.append(request.requestId); }

    std::function<bool(const ScadaOperationMessage&)> answer;
    QList<quint32> asked;
    QList<quint32> askedSecond;
};

/// A plant with a point of each kind of control, on a line whose commands the test answers, and everything between that
/// line and an operator. Time stands unless the test lets it pass.
class OperatedPlant
{
public:
    using Operation = ScadaOperationMessage::Operation;
    using Outcome = ScadaOperationMessage::Outcome;

    static constexpr qint64 begin = Q_INT64_C(1600000000000);                           // 2020-09-13T12:26:40Z
    static constexpr ObjectKey pump{Korvane::ScadaObjectType::DigitalPoint, 100001};    ///< direct, off and on
    static constexpr ObjectKey breaker{Korvane::ScadaObjectType::DigitalPoint, 100002}; ///< select first
    static constexpr ObjectKey level{Korvane::ScadaObjectType::AnalogPoint, 200001};    ///< 0 to 100, in steps of 5
    static constexpr ObjectKey dose{Korvane::ScadaObjectType::AnalogPoint, 200002};     ///< entered by hand
    static constexpr ObjectKey flow{Korvane::ScadaObjectType::AnalogPoint, 200003};     ///< takes no commands
    static constexpr ObjectKey unit{Korvane::ScadaObjectType::RtuObject, 7};            ///< of all points
    static constexpr ObjectKey line{Korvane::ScadaObjectType::ChannelObject, 3};

    struct Setup
    {
        bool isSecured = false;
        /// Where accounts, the audit log, the operating state and the alarm log are kept; empty for memory.
        QString folder = {};
        /// Changes what the list of points says.
        std::function<void(RuntimeDatabase::Object&)> adjust = {};
    };

    OperatedPlant() : OperatedPlant(Setup()) {}
    explicit OperatedPlant(const Setup& setup)
    {
        database.setTimeZone(QTimeZone::utc());
        database.setClock([this] { return nowMs; });
        for (RuntimeDatabase::Object& object : listedObjects()) {
            if (setup.adjust)
                setup.adjust(object);
            require(database.add(object));
        }
        hub.setScadaRuntime(&database);
        hub.setCanvasActionManagerFactory(&m_actionManagers);
        hub.setRuntimeManager(&manager);
        auto commanded =
            std::make_unique<CommandedSource>(std::vector<ObjectKey>{pump, breaker, level, dose, flow, unit});
        source = commanded.get();
        data.addSource(std::move(commanded));
        source->start(nowMs);
        openFiles(setup.folder);
        users.setSecured(setup.isSecured);
        if (setup.isSecured)
            openAccounts();
        connectAll();
        problems += changes.restore();
        path.setConfirmer(&confirmer);
        path.setWorkplace(QStringLiteral("desk 1"));
    }
    ~OperatedPlant() { hub.setRuntimeManager(nullptr); }
    Q_DISABLE_COPY(OperatedPlant)

    /// Points with the control settings of every kind, the line and its unit.
    static std::vector<RuntimeDatabase::Object> listedObjects()
    {
        const auto point = [](ObjectKey key, const char* name, ControlSetting::Kind kind) {
            RuntimeDatabase::Object object{key.type, key.id, QString::fromLatin1(name)};
            object.station = QStringLiteral("LOOP");
            object.parent = QStringLiteral("UNIT");
            object.area = QStringLiteral("North");
            object.control.kind = kind;
            return object;
        };
        auto pumpObject = point(pump, "PUMP", ControlSetting::Kind::Direct);
        pumpObject.states = QStringList{QStringLiteral("Off"), QStringLiteral("On")};
        auto levelObject = point(level, "LEVEL", ControlSetting::Kind::Direct);
        levelObject.control.low = 0;
        levelObject.control.high = 100;
        levelObject.control.step = 5;
        levelObject.low = 10;
        levelObject.high = 80;
        levelObject.hysteresis = 1;
        levelObject.alarm.severities[AlarmSetting::placeOf(ScadaAlarm::Cause::High)] = 5;
        RuntimeDatabase::Object unitObject{unit.type, unit.id, QStringLiteral("UNIT")};
        unitObject.parent = QStringLiteral("LINE");
        unitObject.area = QStringLiteral("South");
        return {pumpObject,
                point(breaker, "BREAKER", ControlSetting::Kind::SelectFirst),
                levelObject,
                point(dose, "DOSE", ControlSetting::Kind::Manual),
                point(flow, "FLOW", ControlSetting::Kind::None),
                unitObject,
                {line.type, line.id, QStringLiteral("LINE")}};
    }
    /// An adjustment of one point's control.
    static Setup with(ObjectKey key, std::function<void(ControlSetting&)> adjust, bool isSecured = false)
    {
        return {isSecured, {}, [key, adjust](RuntimeDatabase::Object& object) {
                    if (key == ObjectKey{object.type, object.id})
                        adjust(object.control);
                }};
    }

    /// One point whose commands are confirmed so, with security on.
    static Setup confirmedBy(ControlSetting::Confirmation confirmation, ObjectKey object = pump)
    {
        return with(
            object, [confirmation](ControlSetting& setting) { setting.confirmation = confirmation; }, true);
    }

    /// Lets what was asked for happen, as far as it can without time.
    static void settle() { QCoreApplication::processEvents(); }
    quint32 order(Operation operation, ObjectKey object, const QVariant& value = {}, const QString& reason = {})
    {
        const quint32 id = path.begin({operation, object, value, reason});
        settle();
        return id;
    }
    void pass(qint64 ms)
    {
        nowMs += ms;
        monotonicMs += ms;
        data.tick();
    }
    /// The line says so, now.
    void say(ObjectKey object, double value, qint32 quality = 0)
    {
        source->deliver({{object, nowMs, value, quality}});
        data.tick();
    }
    Outcome outcomeOf(quint32 id) const { return path.request(id).outcome; }
    QVariant valueOf(ObjectKey object) const { return manager.value(object); }
    qint32 qualityOf(ObjectKey object) const { return database.presentRecord(object).GetValue("quality")->toInt32(); }
    static QDateTime utc(qint64 ms) { return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC); }
    /// "sent done", oldest line first, of a request.
    QString auditOf(quint32 id) const
    {
        QStringList names;
        const auto lines = audit.read(utc(0), utc(nowMs), 1000000);
        for (const ScadaOperationMessage& each : lines.value_or(QList<ScadaOperationMessage>())) {
            if (each.requestId == id)
                names.prepend(OperationNames::nameOf(each.outcome));
        }
        return names.join(QLatin1Char(' '));
    }

    void logOn(const char* user) { require(users.logOn(QString::fromLatin1(user), rightPassword())); }
    /// Somebody gives a password.
    bool givePassword(const char* user, const QString& password = rightPassword())
    {
        QString message;
        return users.checkUserPassword(QString::fromLatin1(user), password, message);
    }
    /// A confirmer who gives the right password of \p user and says yes.
    std::function<bool(const ScadaOperationMessage&)> passwordOf(const char* user)
    {
        return [this, user](const ScadaOperationMessage&) { return givePassword(user); };
    }
    static QString rightPassword() { return QStringLiteral("right password"); }

    qint64 nowMs = begin;
    qint64 monotonicMs = 0;
    QStringList told; ///< "requested 1", "done 1"
    QStringList problems;
    std::vector<ObjectKey> changed; ///< of the newest batch
    CommandedSource* source = nullptr;

private:
    template <typename Result>
    static void require(const Result& done)
    {
        if (!done)
            qFatal("%s", qPrintable(done.error()));
    }
    // Hashes of passwords take their time: one file serves every plant.
    static QString accountFile()
    {
        static const TemporaryFiles files;
        static const QString name = [] {
            AccountDatabase made;
            require(made.open({AccountSettings::Driver::Sqlite, files.path(QStringLiteral("accounts.db"))}));
            const auto add = [&made](const char* user, const char* role, const QStringList& areas) {
                EUserAccount account;
                account.name = QString::fromLatin1(user);
                account.role = QString::fromLatin1(role);
                account.areas = areas;
                require(made.add(account, rightPassword()));
            };
            add("ann", "operator", {QStringLiteral("North")});
            add("bob", "operator", {});
            add("sue", "supervisor", {});
            add("vic", "viewer", {});
            add("sam", "operator", {QStringLiteral("South")});
            return files.path(QStringLiteral("accounts.db"));
        }();
        return name;
    }
    void openAccounts() { require(accounts.open({AccountSettings::Driver::Sqlite, accountFile()})); }
    void openFiles(const QString& folder)
    {
        const QString name = folder.isEmpty() ? QString() : folder + QStringLiteral("/operating.db");
        require(folder.isEmpty() ? audit.openInMemory() : audit.open(name));
        require(folder.isEmpty() ? state.openInMemory() : state.open(name));
        require(alarms.start(folder.isEmpty() ? QString() : folder + QStringLiteral("/alarms.db")));
    }
    void connectAll()
    {
        QObject::connect(&data, &DataService::ticked, &path, [this] {
            path.advance();
            alarms.advance();
        });
        QObject::connect(&data, &DataService::objectsChanged, &path,
                         [this](const std::vector<ObjectKey>& objects) { changed = objects; });
        const auto tell = [this](const ScadaOperationMessage& request) {
            told.append(QStringLiteral("%1 %2").arg(OperationNames::nameOf(request.outcome)).arg(request.requestId));
        };
        QObject::connect(&path, &ControlPath::progressed, &path, tell);
        QObject::connect(&path, &ControlPath::finished, &path, tell);
        QObject::connect(&path, &ControlPath::problemFound, &path,
                         [this](const QString& text) { problems.append(text); });
    }

    TestCore m_core;

public:
    ScadaCore hub{&m_core, [this] { return utc(nowMs); }};

private:
    CanvasActionManagerFactory m_actionManagers{&hub};

public:
    Project project;
    RuntimeDatabase database;
    DataService data{database, hub};
    AlarmSystem alarms{database, hub};
    CanvasManager pages{project, hub};
    AccountDatabase accounts;
    /// Every account has the one password, and checking it costs no time.
    DatabaseManager users{accounts, [this] { return monotonicMs; },
                          [](const QByteArray&, const QString& password) -> tl::expected<bool, QString> {
                              return password == rightPassword();
                          }};
    AuditLog audit;
    OperatingState state;
    TestConfirmer confirmer;
    ControlPath path{{database, data, users, audit, hub}, [this] { return monotonicMs; }};
    OperatorChanges changes{database, data, alarms, state, hub};
    RuntimeManager manager{{database, data, alarms, users, audit, path, changes, pages, hub}, QStringLiteral("desk 1")};
};
