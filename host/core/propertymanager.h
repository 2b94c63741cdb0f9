#pragma once

#include "host/hostexport.h"
#include "platform/data/apppropertymanager.h"

#include <QHash>
#include <QObject>

/// The reference host's properties of the application: named values that tags reach behind "@::".
class KORVANE_HOST_EXPORT PropertyManager : public QObject, public AppPropertyManager
{
    Q_OBJECT
    Q_DISABLE_COPY(PropertyManager)

public:
    explicit PropertyManager(QObject* parent = nullptr);
    ~PropertyManager() override;

    QVariant getProperty(const QString& name) override { return m_values.value(name); }
    /// Sets a property; an invalid value takes it away.
    void setValue(const QString& name, const QVariant& value);
    QStringList names() const { return m_values.keys(); }

Q_SIGNALS:
    /// The property has another value now.
    void valueChanged(const QString& name, const QVariant& value);

private:
    QHash<QString, QVariant> m_values;
};
