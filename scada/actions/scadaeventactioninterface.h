#pragma once

#include "platform/core/triggertype.h"
#include "scada/scadaexport.h"

#include <QCoreApplication>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QVariant>

class KVCanvasInterface;
class KorvaneCoreInterface;
class KorvaneScadaCoreInterface;
class ScadaEventActionStream;
class TesselInterface;

/// Base of what a shape or a canvas does when an event fires on it: a mouse press, a key press, the page being loaded.
///
/// It holds the event alone; what happens then is a subclass's. The host keeps the actions of a shape or a canvas,
/// stores them as ScadaEventActionStream and runs those whose trigger fires. GUI thread only.
class KORVANE_SCADA_EXPORT ScadaEventActionInterface
{
    Q_DECLARE_TR_FUNCTIONS(ScadaEventActionInterface)

public:
    /// Whether there is anything to run.
    enum class State {
        Empty = 0,
        Filled = 1,
    };

    /// The trigger is none.
    ScadaEventActionInterface();
    ScadaEventActionInterface(const ScadaEventActionInterface& other);
    ScadaEventActionInterface& operator=(const ScadaEventActionInterface& other);

    // Virtual operations, in the order of their places. Binary compatibility with actions built elsewhere depends on it.

    virtual ~ScadaEventActionInterface(); // 1
    /// 2: the number by which stored pages know the kind of action.
    virtual int type() const = 0;
    /// 3: does what the action is for; a failure is told to nobody.
    /// \param core where the services come from
    /// \param shape the shape that the event came to; null for an event of the canvas
    /// \param canvas the page that the event came to; null for the one in front
    virtual void runAction(KorvaneCoreInterface* core, TesselInterface* shape, KVCanvasInterface* canvas) = 0;
    /// 4: the event that runs the action. The name's spelling is part of the interface.
    virtual Korvane::TriggerType triggetType();
    /// 5
    virtual void setTriggerType(Korvane::TriggerType trigger);
    /// 6
    virtual State state() = 0;
    /// 7: the kind of action for an engineer's eyes, translated.
    virtual QString name() = 0;
    /// 8: renames points by pairs (old, new) in the action's texts. Does nothing here.
    virtual void replacePointName(KorvaneScadaCoreInterface* core, const QList<QPair<QString, QString>>& renames);
    /// 9: replaces every occurrence of \p before in the action's texts, case-sensitively.
    /// \returns whether there was any; false here.
    virtual bool replaceText(const QString& before, const QString& after);
    /// 10: the trigger for an engineer's eyes, translated; empty for a number that names no event.
    virtual QString triggerName();
    /// 11: writes the action into \p stream as fromStream reads it; the trigger alone here.
    virtual void toStream(ScadaEventActionStream& stream) const;

    // The order of overloads that stand side by side is the declarations' under the Itanium ABI only.

    /// 12: reads the action and reports its settings as named values too, over those of the same names and beside all
    /// others; here the trigger alone, its number as "triggerType".
    virtual void fromStream(const ScadaEventActionStream& stream, QMap<QString, QVariant>& values);
    /// 13: reads the action; the trigger alone here.
    virtual void fromStream(const ScadaEventActionStream& stream);
    /// 14: whether \p other would do the same; the trigger does not count.
    virtual bool isEqual(const ScadaEventActionInterface& other) = 0;
    /// 15: binds the action to a tag. Does nothing here.
    virtual void setTagString(const QString& tag);
    /// 16: whether any of the action's texts contains \p text, case-sensitively; false here.
    virtual bool containText(const QString& text);

private:
    Korvane::TriggerType m_trigger = Korvane::TriggerType::None;
};
