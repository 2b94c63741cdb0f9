#include "host/core/propertymanager.h"

#include <QStringList>

PropertyManager::PropertyManager(QObject* parent) : QObject(parent)
{
}

PropertyManager::~PropertyManager() = default;

void PropertyManager::setValue(const QString& name, const QVariant& value)
{
    if (m_values.value(name) == value)
        return;
    if (value.isValid())
        m_values.insert(name, value);
    else
        m_values.remove(name);
    Q_EMIT valueChanged(name, value);
}
