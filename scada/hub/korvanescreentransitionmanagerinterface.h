#pragma once

#include "scada/scadaexport.h"

#include <QString>
#include <QWidget>

/// Changes from one page to another, with whatever transition the host shows.
class KORVANE_SCADA_EXPORT KorvaneScreenTransitionManagerInterface : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(KorvaneScreenTransitionManagerInterface)

public:
    explicit KorvaneScreenTransitionManagerInterface(QWidget* parent);
    ~KorvaneScreenTransitionManagerInterface() override;

    /// Brings \p page to the front; false when it can't be opened, and then the page before stays.
    virtual bool changeTo(const QString& page) = 0;
};
