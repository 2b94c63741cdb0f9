#pragma once

#include "scada/scadaexport.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class QWidget;
class ScadaTagActionInterface;
class ScadaTagActionStream;
class TesselInterface;

/// Makes tag actions by their type number, and what an engineer edits them with. Implemented by the host.
class KORVANE_SCADA_EXPORT KorvaneScadaActionFactoryInterface : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KorvaneScadaActionFactoryInterface)

public:
    explicit KorvaneScadaActionFactoryInterface(QObject* parent);
    ~KorvaneScadaActionFactoryInterface() override;

    /// The types it can make, in the order in which editors offer them.
    virtual QList<int> actionTypes() const = 0;
    /// A type's name for an engineer's eyes, translated; empty for an unknown type.
    virtual QString actionName(int type) const = 0;
    /// Whether an action of that type can drive \p shape.
    virtual bool canDrive(int type, const TesselInterface* shape) const = 0;
    /// The named properties of a shape that an action of that type sets.
    virtual QStringList drivenProperties(int type) const = 0;
    /// A new action with default settings for \p shape, owned by the caller; null for an unknown type.
    virtual ScadaTagActionInterface* createAction(int type, TesselInterface* shape) const = 0;
    /// A new action with the settings that \p stream holds, owned by the caller; null for an unknown type. Settings
    /// that it can't read stay at their defaults.
    virtual ScadaTagActionInterface* loadAction(int type, const ScadaTagActionStream& stream,
                                                TesselInterface* shape) const = 0;
    /// A widget that edits \p action in place, owned by \p parent; null for an action of an unknown type.
    virtual QWidget* createEditor(ScadaTagActionInterface* action, QWidget* parent) const = 0;
};
