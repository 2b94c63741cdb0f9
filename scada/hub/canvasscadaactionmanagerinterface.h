#pragma once

#include "platform/data/objectkey.h"
#include "platform/data/scadaalarm.h"
#include "scada/binding/scadatagactioninterface.h"
#include "scada/scadaexport.h"

#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVariant>

class KVCanvasInterface;
class ObjectTarget;
class QTransform;
class QuorixData;
class ScadaRuntimeInterface;
class TesselInterface;
struct MwDataDepartment;

/// The tag actions of one page: owns them, passes them every batch and keeps their shapes up to date. Implemented by
/// the host.
class KORVANE_SCADA_EXPORT CanvasScadaActionManagerInterface : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(CanvasScadaActionManagerInterface)

public:
    explicit CanvasScadaActionManagerInterface(QObject* parent);
    ~CanvasScadaActionManagerInterface() override;

    // Page

    /// The page that the actions belong to; not owned.
    virtual KVCanvasInterface* canvas() const = 0;
    /// Resolves every action against \p runtime, usually the hub's (null: by text alone), and lets it run; from then on
    /// batches are taken. Once only: resolving leaves bare names, so a page is opened anew by loading it anew.
    virtual void open(ScadaRuntimeInterface* runtime) = 0;
    /// Takes no batch any more; actions and shapes stay as they are.
    virtual void close() = 0;
    /// Whether batches are taken: opened and not closed since.
    virtual bool isOpen() const = 0;
    /// States whether the page is on the screen. A page that is not takes no batches; shown again, it is brought up to
    /// date.
    virtual void setShown(bool shown) = 0;
    /// Whether the page is on the screen; true at first.
    virtual bool isShown() const = 0;

    // Actions

    /// Takes \p action over, behind those there are.
    virtual void addAction(ScadaTagActionInterface* action) = 0;
    /// Gives \p action to the caller, without its overlay; false when it is not one of this page's.
    virtual bool takeAction(ScadaTagActionInterface* action) = 0;
    /// Destroys the actions of \p shape with their overlays, before the shape itself goes.
    virtual void removeActionsOf(const TesselInterface* shape) = 0;
    /// Destroys every action with its overlay.
    virtual void clear() = 0;
    /// Every action of the page, owned by this manager, in the order in which they were added.
    virtual QList<ScadaTagActionInterface*> actions() const = 0;
    /// Those that drive \p shape, in the order in which they set it.
    virtual QList<ScadaTagActionInterface*> actionsOf(const TesselInterface* shape) const = 0;
    /// The actions with a target bound to \p object.
    virtual QList<ScadaTagActionInterface*> actionsBoundTo(ObjectKey object) const = 0;
    /// Changes the order of \p shape's actions, which is the order in which they set it; both places count from 0.
    /// False for a place that there is not.
    virtual bool moveAction(const TesselInterface* shape, int from, int to) = 0;

    // Tags

    /// Every tag string of the page, each once, in no order.
    virtual QStringList tagStrings() const = 0;
    /// The targets of all actions, owned by these.
    virtual QList<ObjectTarget*> targets() const = 0;
    /// Replaces text in every tag string of the page, case-sensitively; the number of actions that contained it.
    virtual int replaceText(const QString& before, const QString& after) = 0;
    /// Renames points by pairs (old, new) as ObjectTarget::replacePointName does; the number of targets renamed.
    virtual int replacePointNames(const QList<QPair<QString, QString>>& renames) = 0;
    /// The actions with a target whose tag string in force is exactly \p tag.
    virtual QList<ScadaTagActionInterface*> actionsNaming(const QString& tag) const = 0;
    /// The objects that the page's targets are bound to, each once.
    virtual QList<ObjectKey> boundObjects() const = 0;

    // Data

    /// Passes a batch to the actions, as if to every one of them, and refreshes the shapes that it changed.
    virtual void takeBatch(const MwDataDepartment& batch) = 0;
    /// Passes one record to the actions bound to \p object, as updateRTValue takes it, and refreshes their shapes at
    /// once.
    virtual void takeRecord(ObjectKey object, QuorixData& record) = 0;
    /// Passes a property of the application to the actions that name it and refreshes their shapes.
    virtual void takeProperty(const QString& name, const QVariant& value) = 0;
    /// Pushes every target's value onto its shape, changed or not.
    virtual void refreshAll() = 0;
    /// The hub's time when the newest batch was taken; invalid before the first.
    virtual QDateTime lastBatchTime() const = 0;
    /// How often \p action was pushed onto its shape since the page was opened.
    virtual quint64 changeCount(const ScadaTagActionInterface* action) const = 0;

    // Quality

    /// Whether batches keep the quality overlays of the page's shapes.
    virtual void setOverlayKept(bool kept) = 0;
    /// True at first.
    virtual bool isOverlayKept() const = 0;
    /// Shows or hides the overlays there are.
    virtual void setOverlayShown(bool shown) = 0;
    /// Whether the newest batch said that the data source has failed.
    virtual bool isSourceFailed() const = 0;
    /// The targets that name an object and are bound to none: unknown names.
    virtual QList<ObjectTarget*> unresolvedTargets() const = 0;

    // Shapes

    /// Whether an action of \p shape takes its mouse events.
    virtual bool takesMouse(const TesselInterface* shape) const = 0;
    /// Tells the actions of \p shape that its transform changed.
    virtual void geometryChanged(const TesselInterface* shape, const QTransform& transform) = 0;
    /// Tells every action that the page's timer elapsed.
    virtual void timeOut() = 0;

    // Alarms

    /// Takes an alarm with the actions that it concerns: emits alarmRequested(), and waits for its result.
    virtual void requestAlarm(const ScadaAlarm& alarm, const QList<ScadaTagActionInterface*>& concerned) = 0;
    /// Alarms that wait for their result, oldest first.
    virtual QList<ScadaAlarm> pendingAlarms() const = 0;
    /// Ends the oldest alarm that waits: emits alarmProcessed() and, when none waits any more, alarmProcessFinished().
    /// Does nothing when none waits.
    virtual void setAlarmResult(int result) = 0;

Q_SIGNALS:
    /// An alarm with the tag actions that it concerns. These are the page's: whoever hears of them through a queued
    /// connection has to ask actions() whether they are still there.
    void alarmRequested(QPair<ScadaAlarm, QList<ScadaTagActionInterface*>> d);
    /// One alarm was handled; \p result is the number of the ScadaAlarm::State that it was left in.
    void alarmProcessed(int result);
    /// Every alarm requested so far was handled.
    void alarmProcessFinished();
};
