#pragma once

#include "host/alarmview/alarmtable_p.h"
#include "host/summary/summarymodel.h"

class SummaryExport;

/// The summary's rows: the current one stays where it is on the screen while the others move around it.
///
/// While more than mostMoved rows are selected, rows do not move with the samples: a selection of any size would cost the
/// window its time. When the user has rows moved, such a selection shrinks to the current row.
class SummaryTable : public AlarmTable
{
    Q_OBJECT
    Q_DISABLE_COPY(SummaryTable)

public:
    /// \param model not owned, must outlive the table
    SummaryTable(SummaryModel& model, const QString& name, QWidget* parent);
    ~SummaryTable() override;

    /// Rows that are selected, from the top.
    QVector<int> selectedRows() const;
    /// Puts the rows selected on the clipboard, with the columns shown, separated by tabs.
    /// \returns false when they are more than mostCopied; the clipboard is left then
    bool copySelection() const;
    /// Writes what is shown by the rules of AlarmCsv; the units stand behind the values. Goes on while events are handled, and
    /// tells the user when it fails. One export at a time.
    bool exportTo(const QString& fileName) override;
    bool isExporting() const { return m_export != nullptr; }

    static constexpr int mostMoved = 1000;
    static constexpr int mostCopied = 2000;

Q_SIGNALS:
    /// \param written points of the export, of \p all, which is 0 once it has ended
    void exportAdvanced(int written, int all);

protected:
    void startDrag(Qt::DropActions actions) override;

private:
    int selectedCount() const;
    QVector<int> exportedColumns() const;
    void heedSelection();
    void notePlace();
    void keepPlace();
    void endExport(const QString& problem);

    SummaryModel& m_model;
    SummaryExport* m_export = nullptr;
    int m_place = -1; ///< of the current row, from the top of the screen; -1 while it is not on it
};
