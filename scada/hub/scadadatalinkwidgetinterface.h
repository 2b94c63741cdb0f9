#pragma once

#include "scada/scadaexport.h"

#include <QWidget>

class TesselInterface;

/// The editor of a shape's data bindings. Implemented by the host.
class KORVANE_SCADA_EXPORT ScadaDataLinkWidgetInterface : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(ScadaDataLinkWidgetInterface)

public:
    explicit ScadaDataLinkWidgetInterface(QWidget* parent = nullptr);
    ~ScadaDataLinkWidgetInterface() override;

    /// Edits the bindings of \p shape from now on; null for none. The body here does nothing: overrides may call it.
    virtual void setShapeObject(TesselInterface* shape) = 0;
    /// Puts what was edited into the shape's actions; false when an entry is not valid, and then nothing changes.
    virtual bool apply() = 0;

Q_SIGNALS:
    /// The bindings of a kind of action were set anew. Spelled so: connections by text match it.
    void dataReseted(int type);
};
