#pragma once

#include "platform/data/quorixdata.h"
#include "scada/hub/canvasscadaactionmanagerfactoryinterface.h"
#include "scada/hub/canvasscadaactionmanagerinterface.h"
#include "scada/hub/korvaneprojectmanagerinterface.h"
#include "scada/hub/korvanescadaactionfactoryinterface.h"
#include "scada/hub/korvanescadaruntimmanagerinterface.h"
#include "scada/hub/korvanescreentransitionmanagerinterface.h"
#include "scada/hub/scadadatalinkwidgetinterface.h"
#include "scada/hub/systemalarmmanagerinterface.h"

// The service interfaces implemented as little as a compiler lets one, operation by operation: what a host must write. They
// answer nothing and only serve to make objects for tests of the interfaces themselves.

class TestCanvasScadaActionManagerFactory : public CanvasScadaActionManagerFactoryInterface
{
public:
    using CanvasScadaActionManagerFactoryInterface::CanvasScadaActionManagerFactoryInterface;

    CanvasScadaActionManagerInterface* createActionManager(KVCanvasInterface*, QObject*) override { return {}; }
};

class TestCanvasScadaActionManager : public CanvasScadaActionManagerInterface
{
public:
    using CanvasScadaActionManagerInterface::CanvasScadaActionManagerInterface;

    KVCanvasInterface* canvas() const override { return {}; }
    void open(ScadaRuntimeInterface*) override {}
    void close() override {}
    bool isOpen() const override { return {}; }
    void setShown(bool) override {}
    bool isShown() const override { return {}; }
    void addAction(ScadaTagActionInterface*) override {}
    bool takeAction(ScadaTagActionInterface*) override { return {}; }
    void removeActionsOf(const TesselInterface*) override {}
    void clear() override {}
    QList<ScadaTagActionInterface*> actions() const override { return {}; }
    QList<ScadaTagActionInterface*> actionsOf(const TesselInterface*) const override { return {}; }
    QList<ScadaTagActionInterface*> actionsBoundTo(ObjectKey) const override { return {}; }
    bool moveAction(const TesselInterface*, int, int) override { return {}; }
    QStringList tagStrings() const override { return {}; }
    QList<ObjectTarget*> targets() const override { return {}; }
    int replaceText(const QString&, const QString&) override { return {}; }
    int replacePointNames(const QList<QPair<QString, QString>>&) override { return {}; }
    QList<ScadaTagActionInterface*> actionsNaming(const QString&) const override { return {}; }
    QList<ObjectKey> boundObjects() const override { return {}; }
    void takeBatch(const MwDataDepartment&) override {}
    void takeRecord(ObjectKey, QuorixData&) override {}
    void takeProperty(const QString&, const QVariant&) override {}
    void refreshAll() override {}
    QDateTime lastBatchTime() const override { return {}; }
    quint64 changeCount(const ScadaTagActionInterface*) const override { return {}; }
    void setOverlayKept(bool) override {}
    bool isOverlayKept() const override { return {}; }
    void setOverlayShown(bool) override {}
    bool isSourceFailed() const override { return {}; }
    QList<ObjectTarget*> unresolvedTargets() const override { return {}; }
    bool takesMouse(const TesselInterface*) const override { return {}; }
    void geometryChanged(const TesselInterface*, const QTransform&) override {}
    void timeOut() override {}
    void requestAlarm(const ScadaAlarm&, const QList<ScadaTagActionInterface*>&) override {}
    QList<ScadaAlarm> pendingAlarms() const override { return {}; }
    void setAlarmResult(int) override {}
};

class TestScadaActionFactory : public KorvaneScadaActionFactoryInterface
{
public:
    using KorvaneScadaActionFactoryInterface::KorvaneScadaActionFactoryInterface;

    QList<int> actionTypes() const override { return {}; }
    QString actionName(int) const override { return {}; }
    bool canDrive(int, const TesselInterface*) const override { return {}; }
    QStringList drivenProperties(int) const override { return {}; }
    ScadaTagActionInterface* createAction(int, TesselInterface*) const override { return {}; }
    ScadaTagActionInterface* loadAction(int, const ScadaTagActionStream&, TesselInterface*) const override
    {
        return {};
    }
    QWidget* createEditor(ScadaTagActionInterface*, QWidget*) const override { return {}; }
};

class TestScadaRuntimManager : public KorvaneScadaRuntimManagerInterface
{
public:
    using KorvaneScadaRuntimManagerInterface::KorvaneScadaRuntimManagerInterface;

    quint32 select(ObjectKey, const QString&) override { return {}; }
    quint32 operate(ObjectKey, const QVariant&, const QString&) override { return {}; }
    bool cancel(quint32) override { return {}; }
    quint32 setPoint(ObjectKey, double, const QString&) override { return {}; }
    quint32 raise(ObjectKey, const QString&) override { return {}; }
    quint32 lower(ObjectKey, const QString&) override { return {}; }
    bool confirm(quint32, const QString&) override { return {}; }
    QDateTime selectedUntil(ObjectKey) const override { return {}; }
    QString selectedBy(ObjectKey) const override { return {}; }
    QList<ScadaOperationMessage> pendingRequests() const override { return {}; }
    ScadaOperationMessage request(quint32) const override { return {}; }
    std::chrono::milliseconds feedbackTimeout() const override { return {}; }
    void setFeedbackTimeout(std::chrono::milliseconds) override {}
    quint32 enterValue(ObjectKey, const QVariant&, const QString&) override { return {}; }
    quint32 substitute(ObjectKey, const QVariant&, const QString&) override { return {}; }
    quint32 endSubstitution(ObjectKey, const QString&) override { return {}; }
    QString substitutedBy(ObjectKey) const override { return {}; }
    QList<ObjectKey> substitutedObjects() const override { return {}; }
    quint32 setControlInhibited(ObjectKey, bool, const QString&) override { return {}; }
    quint32 setAlarmInhibited(ObjectKey, bool, const QString&) override { return {}; }
    quint32 setScanInhibited(ObjectKey, bool, const QString&) override { return {}; }
    quint32 setInformationTag(ObjectKey, const QString&) override { return {}; }
    QString informationTag(ObjectKey) const override { return {}; }
    qint32 tagMarks(ObjectKey) const override { return {}; }
    QList<ObjectKey> objectsMarked(ValueMark::Tag) const override { return {}; }
    QVariant statedLimit(ObjectKey, LimitKind) const override { return {}; }
    quint32 setLimit(ObjectKey, LimitKind, const QVariant&, const QString&) override { return {}; }
    quint32 resetLimits(ObjectKey, const QString&) override { return {}; }
    double deadBand(ObjectKey) const override { return {}; }
    quint32 setDeadBand(ObjectKey, double, const QString&) override { return {}; }
    bool acknowledgePoint(uint) override { return {}; }
    int acknowledgePoints(const QList<uint>&) override { return {}; }
    int acknowledgePage(const KVCanvasInterface*) override { return {}; }
    int acknowledgeArea(const QString&) override { return {}; }
    bool shelve(ObjectKey, const QDateTime&, const QString&) override { return {}; }
    bool unshelve(ObjectKey, const QString&) override { return {}; }
    void silence() override {}
    quint32 startScan(ObjectKey, const QString&) override { return {}; }
    quint32 stopScan(ObjectKey, const QString&) override { return {}; }
    bool isScanning(ObjectKey) const override { return {}; }
    quint32 reconnect(ObjectKey, const QString&) override { return {}; }
    bool isCommunicating(ObjectKey) const override { return {}; }
    QDateTime lastCommunicationChange(ObjectKey, bool) const override { return {}; }
    QVariant value(ObjectKey) const override { return {}; }
    QuorixData record(ObjectKey) const override { return {}; }
    QVariant fieldValue(ObjectKey, DataCode::DataField) const override { return {}; }
    QDateTime lastChange(ObjectKey) const override { return {}; }
    bool readAgain(ObjectKey) override { return {}; }
    quint32 resetStatistics(ObjectKey, const QString&) override { return {}; }
    QDateTime statisticsStart(ObjectKey) const override { return {}; }
    QList<Sample> history(ObjectKey, const QDateTime&, const QDateTime&, int) const override { return {}; }
    QList<Event> events(ObjectKey, const QDateTime&, const QDateTime&, int) const override { return {}; }
    QList<ScadaOperationMessage> operations(const QDateTime&, const QDateTime&, int) const override { return {}; }
    int alarmCount(int) const override { return {}; }
    int unacknowledgedCount(const QString&) const override { return {}; }
    QStringList stations() const override { return {}; }
    QList<ObjectKey> objectsOf(const QString&) const override { return {}; }
    QStringList areas() const override { return {}; }
    QString areaOf(ObjectKey) const override { return {}; }
    QString currentUser() const override { return {}; }
    QString workplace() const override { return {}; }
    bool mayControl(ObjectKey) const override { return {}; }
    bool mayOpenPage(const QString&) const override { return {}; }
    void endSession() override {}
    bool isReplay() const override { return {}; }
    double replaySpeed() const override { return {}; }
    bool setReplaySpeed(double) override { return {}; }
    bool seekReplay(const QDateTime&) override { return {}; }
    QList<SourceHealth> sources() const override { return {}; }
    bool isHealthy() const override { return {}; }
};

class TestSystemAlarmManager : public SystemAlarmManagerInterface
{
public:
    using SystemAlarmManagerInterface::SystemAlarmManagerInterface;

    quint64 raiseAlarm(const ScadaAlarm&) override { return {}; }
    bool returnAlarm(quint64, const QDateTime&) override { return {}; }
    bool acknowledge(quint64, const QString&) override { return {}; }
    bool shelve(quint64, const QDateTime&, const QString&, const QString&) override { return {}; }
    bool unshelve(quint64, const QString&) override { return {}; }
    bool setSuppressed(ObjectKey, bool, const QString&) override { return {}; }
    bool setOutOfService(ObjectKey, bool, const QString&, const QString&) override { return {}; }
    ScadaAlarm alarm(quint64) const override { return {}; }
    QList<ScadaAlarm> activeAlarms() const override { return {}; }
    ScadaAlarm firstOut(const QString&) const override { return {}; }
    int highestUnacknowledgedSeverity() const override { return {}; }
};

class TestProjectManager : public KorvaneProjectManagerInterface
{
public:
    using KorvaneProjectManagerInterface::KorvaneProjectManagerInterface;

    bool openProject(const QString&) override { return {}; }
    bool createProject(const QString&, const QString&) override { return {}; }
    bool closeProject() override { return {}; }
    bool isSecurityEnabled() override { return {}; }
    bool setSecurityEnabled(bool) override { return {}; }
    bool isOpen() const override { return {}; }
    bool isModified() const override { return {}; }
    bool saveProject() override { return {}; }
    QString projectName() const override { return {}; }
    QString projectFolder() const override { return {}; }
    QString lastError() const override { return {}; }
    QStringList pages() const override { return {}; }
    QString pageFile(const QString&) const override { return {}; }
    QString startPage() const override { return {}; }
    bool setStartPage(const QString&) override { return {}; }
    bool addPage(const QString&) override { return {}; }
    bool removePage(const QString&) override { return {}; }
    bool renamePage(const QString&, const QString&) override { return {}; }
    QVariant setting(const QString&) const override { return {}; }
    bool setSetting(const QString&, const QVariant&) override { return {}; }
    std::chrono::milliseconds tick() const override { return {}; }
    QStringList sources() const override { return {}; }
    QString resourceFile(const QString&) const override { return {}; }
};

class TestScreenTransitionManager : public KorvaneScreenTransitionManagerInterface
{
public:
    using KorvaneScreenTransitionManagerInterface::KorvaneScreenTransitionManagerInterface;

    bool changeTo(const QString&) override { return {}; }
};

class TestScadaDataLinkWidget : public ScadaDataLinkWidgetInterface
{
public:
    using ScadaDataLinkWidgetInterface::ScadaDataLinkWidgetInterface;

    void setShapeObject(TesselInterface*) override {}
    bool apply() override { return {}; }
};
