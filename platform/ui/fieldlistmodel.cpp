#include "platform/ui/fieldlistmodel_p.h"

#include "platform/data/dataserviceinterface.h"

#include <algorithm>

using DataCode::DataField;
using FieldType = DataFieldInfo::FieldType;
using FieldUnit = DataFieldInfo::FieldUnit;

FieldListModel::FieldListModel(DataServiceInterface* dataService, QObject* parent)
    : QAbstractTableModel(parent), m_dataService(dataService)
{
}

FieldListModel::~FieldListModel() = default;

void FieldListModel::setObject(ObjectKey object)
{
    beginResetModel();
    m_rows.clear();
    if (object.isValid())
        m_rows.push_back({nullptr, {}});
    for (const DataFieldInfo* field : DataFieldInfo::all()) {
        if (object.isValid() && field->isFieldOf(object.type))
            m_rows.push_back({field, pastValue(object, *field)});
    }
    endResetModel();
}

QString FieldListModel::pastValue(ObjectKey object, const DataFieldInfo& field) const
{
    if (!m_dataService || field.supplier() != DataFieldInfo::Supplier::History)
        return {};
    const QVariant value = m_dataService->historyValue(object, field.field);
    return value.isValid() ? value.toString() : QStringLiteral("-");
}

DataField FieldListModel::fieldAt(int row) const
{
    const DataFieldInfo* field = m_rows[static_cast<std::size_t>(row)].field;
    return field ? field->field : DataField::Unknown;
}

QModelIndex FieldListModel::indexOf(DataField field) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                    [field](const Row& row) { return row.field && row.field->field == field; });
    return index(found == m_rows.end() ? 0 : static_cast<int>(found - m_rows.begin()), Name);
}

int FieldListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int FieldListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FieldListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const Row& row = m_rows[static_cast<std::size_t>(index.row())];
    switch (index.column()) {
    case Name:
        return row.field ? Korvane::dtFieldToString(row.field->field) : tr("(no field)");
    case PastValue:
        return row.pastValue;
    case Contents:
        return row.field ? contentsOf(*row.field) : QString();
    default:
        return {};
    }
}

QString FieldListModel::contentsOf(const DataFieldInfo& field)
{
    switch (field.type) {
    case FieldType::Count:
        return tr("count");
    case FieldType::State:
        return tr("state");
    case FieldType::Text:
        return tr("text");
    case FieldType::Time:
        return tr("time");
    case FieldType::Number:
        break;
    }
    switch (field.unit) {
    case FieldUnit::Point:
        return tr("in the point's unit");
    case FieldUnit::PointHours:
        return tr("in the point's unit times hours");
    case FieldUnit::Seconds:
        return tr("in seconds");
    case FieldUnit::Percent:
        return tr("in percent");
    case FieldUnit::None:
        break;
    }
    return tr("number");
}

QVariant FieldListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    const QString titles[ColumnCount] = {tr("Field"), tr("Last hour"), tr("Contents")};
    return section >= 0 && section < ColumnCount ? titles[section] : QVariant();
}
