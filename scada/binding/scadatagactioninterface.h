#pragma once

#include "platform/data/scadaobjecttype.h"
#include "scada/scadaexport.h"

#include <QCoreApplication>
#include <QList>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>

class CanvasScadaActionManagerInterface;
class KorvaneScadaCoreInterface;
class ObjectTarget;
class QTransform;
class QuorixData;
class ScadaRuntimeInterface;
class ScadaTagActionStream;
class TesselInterface;
class TlqGraphicsItem;
struct MwDataDepartment;

/// Base of every data binding that a shape carries at run time: takes batches, decides what changed, keeps the quality
/// overlay over the shape.
///
/// It owns no tag references: a subclass owns its targets and hands them out through collectTargets and copyTargets,
/// and pushes their values onto the shape in applyToShape. The page's action manager calls readDataFromSource with each
/// batch and updateDatatoTarget afterwards.
///
/// Call updateDatatoTarget once before the first batch: a fresh action counts as changed, a batch that changes nothing
/// ends that. While a batch is dispatched, collectTargets must hand out the same targets, not made anew in their
/// places: they are collected once for all of it; and nothing may destroy the action. GUI thread only.
///
/// The overlay is a child of the shape's graphics item, which destroys it; the action never does at its own end.
/// Destroy a shape's actions before its item, or give them no further batch.
class KORVANE_SCADA_EXPORT ScadaTagActionInterface
{
    Q_DECLARE_TR_FUNCTIONS(ScadaTagActionInterface)

public:
    ScadaTagActionInterface();
    /// \param shape what the action drives, not owned; may be null
    explicit ScadaTagActionInterface(TesselInterface* shape);
    /// The copy drives the same shape, has no overlay and counts as changed.
    ScadaTagActionInterface(const ScadaTagActionInterface& other);
    /// Copies everything, the overlay included: both then refer to the same one. When either removes it, the other must
    /// be given nothing more, or assigned to again; an overlay that the assigned-to action had stays on its shape.
    ScadaTagActionInterface& operator=(const ScadaTagActionInterface& other);

    // Virtual operations, in the order of their places. Binary compatibility with actions built elsewhere depends on it.

    virtual ~ScadaTagActionInterface(); // 1
    /// 2: the number by which page files and the action factory know the kind of action.
    virtual int type() const = 0;
    /// 3: reads the action's settings from a stream and reports them as named values too. Does nothing here.
    virtual void fromStream(const ScadaTagActionStream& stream, QMap<QString, QVariant>& values);
    /// 4: pushes the values that the targets hold now onto the shape.
    /// Must not destroy the action.
    /// \param force the shape must be set even where the action thinks it shows the value already
    virtual void applyToShape(bool force) = 0;
    /// 5: the kind of action for an engineer's eyes, translated.
    virtual QString name() const = 0;
    /// 6: replaces every occurrence of \p before in every target's tag string, case-sensitively.
    /// \returns whether any target contained it.
    virtual bool replaceText(const QString& before, const QString& after);
    /// 7: a new action with the same settings for \p shape, owned by the caller.
    virtual ScadaTagActionInterface* clone(TesselInterface* shape) const = 0;
    /// 8: whether \p other is of the same kind and has the same settings; values do not count.
    virtual bool isEqual(const ScadaTagActionInterface& other) const = 0;
    /// 9: changes the shape that the action drives; not owned. The overlay stays.
    virtual void setShape(TesselInterface* shape);
    /// 10: writes the action's settings into the stream's data, as fromStream reads them.
    virtual void toStream(ScadaTagActionStream& stream) const = 0;
    /// 11: appends pointers to the action's own targets; the caller must not delete them.
    virtual void collectTargets(QList<ObjectTarget*>& out) = 0;
    /// 12: appends copies of the action's targets.
    virtual void copyTargets(QList<ObjectTarget>& out) = 0;
    /// 13: sets every target's tag string, the stored one too.
    virtual void setTagString(const QString& tag);
    /// 14: the shape's transform changed. Does nothing here.
    virtual void geometryChanged(const QTransform& transform);
    /// 15: lets the action run on its own account on its page. Does nothing here.
    virtual void runItSelf(CanvasScadaActionManagerInterface* manager, KorvaneScadaCoreInterface* core);
    /// 16: whether the action takes the shape's mouse events; false here.
    virtual bool interactMouseEvent();
    /// 17: the page's timer elapsed. Does nothing here.
    virtual void timeOut();

protected:
    /// 18: takes \p data into every target bound to \p pointId whose field a record supplies. Targets are matched by
    /// their id alone, whatever their kind.
    /// \returns whether any value changed.
    virtual bool updatePointValue(const QuorixData& data, Korvane::ScadaObjectType kind, unsigned int pointId);

public:
    TesselInterface* shape() const { return m_shape; }

    /// Whether a value changed that was not pushed onto the shape yet: updateDatatoTarget(false) would.
    bool isDataChanged() const { return m_isChanged; }

    /// Tag string of the first target; empty without one.
    QString tagName();
    /// Id of the first target's object; 0 without one.
    int tagid();

    /// Resolves every target as ObjectTarget::resolve does.
    void resolve(ScadaRuntimeInterface* runtime);

    /// Takes a batch; updateDatatoTarget() then refreshes the shape if it changed anything.
    /// \param core where properties, runtime database and data service come from; a missing one leaves its values
    /// \param withOverlay non-zero keeps the overlay too
    void readDataFromSource(KorvaneScadaCoreInterface* core, const MwDataDepartment& batch, unsigned char withOverlay);

    /// Refreshes the shape when the newest batch or single record changed a value and did not do so itself, a property
    /// did since then, or the action was never refreshed; or always with \p force.
    void updateDatatoTarget(bool force);

    /// Takes a single real-time record and refreshes the shape at once when it changed a value.
    void updateRTValue(QuorixData& data, Korvane::ScadaObjectType kind, unsigned int pointId,
                       unsigned char withOverlay);

    /// Takes the value of an application property into every target that names it.
    /// \returns whether any value changed.
    bool updatePropertyValue(const QString& name, const QVariant& value);

    /// Shows the marks "tag", "limit" and "quality" of a record; all of them zero removes the overlay, also that of a
    /// failed source.
    void updateTLQ(const QuorixData& data);

    /// Shows or takes back that the data source has failed; an overlay with marks stays.
    void setSourceFail(bool fail);

    /// Shows or hides the overlay there is. One made later is visible.
    void setDisplayTlq(bool visible);

protected:
    /// Takes a batch into the targets and, with \p withOverlay, the overlay.
    /// \returns whether any value changed. A logged target that holds a value always counts as changed.
    bool dispatchValue(KorvaneScadaCoreInterface* core, const MwDataDepartment& batch, bool withOverlay);

private:
    bool dispatchToTargets(KorvaneScadaCoreInterface* core, const MwDataDepartment& batch, bool withOverlay);
    void createOverlay();
    void removeOverlay();

    bool m_isChanged = true;
    TesselInterface* m_shape = nullptr;
    TlqGraphicsItem* m_overlay = nullptr;
};

Q_DECLARE_METATYPE(ScadaTagActionInterface*)
