#pragma once

#include "host/hostexport.h"

#include <QAbstractTableModel>

#include <vector>

class ObjectTarget;
class RuntimeDatabase;
struct Page;

/// The tags of a page as a table: tag, object's id, field, value, quality, time, shape and kind of binding. Values are
/// read when they are shown; refresh() has them shown anew.
class KORVANE_HOST_EXPORT TagTableModel : public QAbstractTableModel
{
    Q_OBJECT
    Q_DISABLE_COPY(TagTableModel)

public:
    enum Column { Tag, Id, Field, Value, Quality, Time, ShapeName, Binding, ColumnCount };

    /// \param page, database not owned, must outlive the model; the page keeps its actions as long
    TagTableModel(const Page& page, const RuntimeDatabase& database, QObject* parent = nullptr);
    ~TagTableModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    void refresh();

private:
    struct Row
    {
        ObjectTarget* target;
        QString shape;
        QString binding;
    };
    QVariant cell(const Row& row, int column) const;

    const RuntimeDatabase& m_database;
    std::vector<Row> m_rows;
};
