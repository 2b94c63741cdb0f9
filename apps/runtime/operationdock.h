#pragma once

#include <QDockWidget>
#include <QTableWidget>

class LiveSystem;
struct ScadaOperationMessage;

/// What operators did last, newest first, as the audit log has it.
class OperationDock : public QDockWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(OperationDock)

public:
    static constexpr int mostRows = 500;

    /// \param system not owned, must outlive the dock
    OperationDock(LiveSystem& system, QWidget* parent);

private:
    void fill();
    void insert(int row, const ScadaOperationMessage& message);

    LiveSystem& m_system;
    QTableWidget m_table;
};
