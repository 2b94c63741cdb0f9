#pragma once

#include "scada/scadaexport.h"

#include <QMainWindow>

/// The summary window. It remembers its geometry and the state of its docks and tool bars from one start to the next,
/// in the application's settings file (Korvane::getSettingPath), group "ScadaSummaryWidget", keys "Geometry" and
/// "State".
///
/// It restores before a subclass makes its docks, and stores after the subclass has ended: give docks to
/// QMainWindow::restoreDockWidget once they are made, and leave them to Qt's parentage, which ends them later.
class KORVANE_SCADA_EXPORT ScadaSummaryWidgetInterface : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY(ScadaSummaryWidgetInterface)

public:
    /// Restores the layout; a first start leaves the window as Qt makes it.
    explicit ScadaSummaryWidgetInterface(QWidget* parent = nullptr);
    /// Stores the layout.
    ~ScadaSummaryWidgetInterface() override;
};
