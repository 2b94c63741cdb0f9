#pragma once

#include "platform/data/datafieldinfo.h"
#include "platform/data/objectkey.h"

#include <QAbstractTableModel>
#include <QString>

#include <vector>

class DataServiceInterface;

/// The fields that an object has, one a row, behind a first row that stands for none of them.
class FieldListModel : public QAbstractTableModel
{
    Q_OBJECT
    Q_DISABLE_COPY(FieldListModel)

public:
    enum Column { Name, PastValue, Contents, ColumnCount };

    /// \param dataService asked for the past values when an object is set; not owned; null leaves their column empty
    explicit FieldListModel(DataServiceInterface* dataService, QObject* parent = nullptr);
    ~FieldListModel() override;

    /// Resets the model. The list of an invalid key is empty.
    void setObject(ObjectKey object);

    /// DataField::Unknown for the row that stands for none.
    DataCode::DataField fieldAt(int row) const;
    /// The row that stands for none when the object does not have the field.
    QModelIndex indexOf(DataCode::DataField field) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    struct Row
    {
        const DataFieldInfo* field; ///< null in the first one
        QString pastValue;
    };
    static QString contentsOf(const DataFieldInfo& field);
    QString pastValue(ObjectKey object, const DataFieldInfo& field) const;

    DataServiceInterface* m_dataService;
    std::vector<Row> m_rows;
};
