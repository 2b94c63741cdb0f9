#pragma once

#include "host/actions/tagaction.h"

/// Stands in the place of an action that could not be loaded: does nothing, and keeps what is stored of it.
class KORVANE_HOST_EXPORT UnloadedAction : public TagAction
{
    Q_DECLARE_TR_FUNCTIONS(UnloadedAction)

public:
    /// \param source the stored action, JSON text
    UnloadedAction(TesselInterface* shape, const QByteArray& source) : TagAction(shape), m_source(source) {}

    int type() const override { return Unloaded; }
    QString name() const override { return tr("Not loaded"); }
    QStringList drivenProperties() const override { return {}; }
    ScadaTagActionInterface* clone(TesselInterface* shape) const override
    {
        return new UnloadedAction(shape, m_source);
    }
    void applyToShape(bool) override {} // there is nothing to show

    const QByteArray& source() const { return m_source; }

private:
    QByteArray m_source;
};
