#include "host/inspection/tagtablemodel.h"

#include "host/canvas/page.h"
#include "host/inspection/markstext.h"
#include "host/runtime/runtimedatabase.h"
#include "host/shapes/shape.h"
#include "scada/binding/objecttarget.h"

#include <QDateTime>

TagTableModel::TagTableModel(const Page& page, const RuntimeDatabase& database, QObject* parent)
    : QAbstractTableModel(parent), m_database(database)
{
    for (ScadaTagActionInterface* action : page.actions->actions()) {
        const auto* shape = dynamic_cast<const Shape*>(action->shape());
        QList<ObjectTarget*> targets;
        action->collectTargets(targets);
        for (ObjectTarget* target : qAsConst(targets)) {
            if (target->mappingState() == ObjectTarget::TagMapped &&
                target->objectKindType() != Korvane::ScadaObjectType::NoObject)
                m_rows.push_back({target, shape ? shape->name() : QString(), action->name()});
        }
    }
}

TagTableModel::~TagTableModel() = default;

int TagTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int TagTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant TagTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    const QString titles[ColumnCount] = {tr("Tag"),     tr("Id"),   tr("Field"), tr("Value"),
                                         tr("Quality"), tr("Time"), tr("Shape"), tr("Binding")};
    return section >= 0 && section < ColumnCount ? titles[section] : QVariant();
}

QVariant TagTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    return cell(m_rows[static_cast<std::size_t>(index.row())], index.column());
}

QVariant TagTableModel::cell(const Row& row, int column) const
{
    const ObjectTarget& target = *row.target;
    const ObjectKey key{target.objectKindType(), target.getPid()};
    const bool isProperty = key.type == Korvane::ScadaObjectType::ApplicationProperty;
    switch (column) {
    case Tag:
        return target.getTagString();
    case Id:
        return key.isValid() ? QVariant(key.id) : QVariant();
    case Field:
        return target.field() ? QString::fromLatin1(target.field()->name) : QString();
    case Value:
        return target.value().isValid() ? target.value().toString() : QStringLiteral("-");
    case Quality:
        if (isProperty)
            return QString();
        return key.isValid() ? marksText(m_database.presentRecord(key)) : tr("names no known object");
    case Time: {
        const QuorixData record = m_database.presentRecord(key);
        const QuorixValue* time = record.GetValue("time");
        return time ? time->toVariant().toDateTime().toString(Qt::ISODateWithMs) : QString();
    }
    case ShapeName:
        return row.shape;
    case Binding:
        return row.binding;
    default:
        return {};
    }
}

void TagTableModel::refresh()
{
    if (!m_rows.empty())
        Q_EMIT dataChanged(index(0, Value), index(rowCount() - 1, Time));
}
