#pragma once

#include "platform/data/pointdirectory.h"
#include "platform/data/scadaruntimeinterface.h"

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

/// A runtime database and point directory for tests: a plain list of objects.
class TestRuntime : public ScadaRuntimeInterface, public PointDirectory
{
public:
    void add(Korvane::ScadaObjectType type, qint32 id, const QString& name) { m_objects.append({{type, id}, name}); }

    ObjectKey findByName(Korvane::ScadaObjectType family, QStringView name) const override
    {
        return find(family, [name](const Object& object) { return name == object.name; });
    }

    ObjectKey findById(Korvane::ScadaObjectType family, qint32 id) const override
    {
        return find(family, [id](const Object& object) { return object.key.id == id; });
    }

    ObjectKey findPoint(QStringView name) const override { return findByName(Korvane::ScadaObjectType::Point, name); }
    std::vector<Station> stations() const override
    {
        Station only;
        for (const Object& object : m_objects)
            only.objects.push_back({object.key, object.name, {}});
        return {only};
    }

    QVariant fieldValue(ObjectKey object, DataCode::DataField field) const override
    {
        return m_fields.value({object.id, field});
    }
    void setFieldValue(qint32 id, DataCode::DataField field, const QVariant& value) { m_fields[{id, field}] = value; }

private:
    struct Object
    {
        ObjectKey key;
        QString name;
    };

    template <typename Predicate>
    ObjectKey find(Korvane::ScadaObjectType family, Predicate matches) const
    {
        for (const Object& object : m_objects) {
            const bool isFamily = family == Korvane::ScadaObjectType::Point
                                      ? Korvane::isPointObjectType(object.key.type)
                                      : object.key.type == family;
            if (isFamily && matches(object))
                return object.key;
        }
        return {};
    }

    QList<Object> m_objects;
    QMap<QPair<qint32, DataCode::DataField>, QVariant> m_fields;
};
