#pragma once

#include "host/hostexport.h"
#include "platform/data/objectkey.h"
#include "scada/hub/scadasummarywidgetinterface.h"

#include <vector>

class QTimeZone;
class RuntimeDatabase;
class SummaryCentralWidget;

/// The window with every point of the plant. It remembers its columns as it does its layout, in the same group of the
/// application's settings file, key "Columns".
class KORVANE_HOST_EXPORT SummaryWindow : public ScadaSummaryWidgetInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(SummaryWindow)

public:
    /// \param database not owned, must outlive the window
    /// \param zone whose clocks times are shown by
    SummaryWindow(const RuntimeDatabase& database, const QTimeZone& zone, QWidget* parent = nullptr);
    /// Stores the columns.
    ~SummaryWindow() override;

public Q_SLOTS:
    /// Values or marks of these objects changed. Costs nothing while the window is hidden.
    void noteChanged(const std::vector<ObjectKey>& objects);

Q_SIGNALS:
    /// The user wants to see a point.
    void objectActivated(ObjectKey object);

private:
    SummaryCentralWidget* m_summary;
};
