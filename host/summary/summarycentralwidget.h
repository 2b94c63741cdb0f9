#pragma once

#include "host/hostexport.h"
#include "host/summary/summarymodel.h"
#include "scada/hub/scadasummarycenteralwidgetinterface.h"

#include <QByteArray>
#include <QKeySequence>

#include <functional>

class ElidedLabel;
class QAction;
class QToolBar;
class SummaryFilterBar;
class SummaryTable;

/// Every point in a table, with what the user does about it: filter, sort, move and hide columns, copy, export, drag points to
/// whatever takes them. A widget that is hidden does no work.
class KORVANE_HOST_EXPORT SummaryCentralWidget : public ScadaSummaryCenteralWidgetInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(SummaryCentralWidget)

public:
    /// \param database not owned, must outlive the widget
    /// \param zone whose clocks times are shown by
    SummaryCentralWidget(const RuntimeDatabase& database, const QTimeZone& zone);
    ~SummaryCentralWidget() override;

    /// Room for most columns of some twenty points.
    QSize sizeHint() const override;

    /// Places, widths and sorting of the columns, for restoreColumns().
    QByteArray columns() const;
    /// Takes what columns() gave; anything else leaves the columns as they are.
    void restoreColumns(const QByteArray& columns);

public Q_SLOTS:
    /// Values or marks of these objects changed.
    void noteChanged(const std::vector<ObjectKey>& objects) { m_model.noteChanged(objects); }

Q_SIGNALS:
    /// The user wants to see a point.
    void objectActivated(ObjectKey object);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QAction* add(const QString& name, const QString& text, const QString& toolTip, const QKeySequence& shortcut,
                 const std::function<void()>& act);
    void addActions();
    void addSearchKey();
    void lay();
    void gatherChoices();
    void copy();
    void activate();
    void updateActions();
    void updateStatus();
    QString stateText() const;

    SummaryModel m_model;
    SummaryFilterBar* m_filter;
    SummaryTable* m_table;
    QToolBar* m_tools;
    ElidedLabel* m_status;
    QAction* m_open = nullptr;
    QAction* m_copy = nullptr;
    QAction* m_export = nullptr;
    int m_exported = 0; ///< points written
    int m_toExport = 0; ///< 0 while nothing is exported
};
