#pragma once

#include <QDockWidget>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTableView>

#include <memory>

class RuntimeDatabase;
class TagTableModel;
struct Page;

/// Every tag of a page with its state; filtered by any text in any column, and copied by rows.
class TagDock : public QDockWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(TagDock)

public:
    TagDock(const RuntimeDatabase& database, QWidget* parent);
    ~TagDock() override;

    /// \param page not owned; null before it goes
    void showPage(const Page* page);
    void refresh();

private:
    void copySelection();

    const RuntimeDatabase& m_database;
    std::unique_ptr<TagTableModel> m_model;
    QSortFilterProxyModel m_filtered;
    QLineEdit m_filter;
    QTableView m_table;
};
