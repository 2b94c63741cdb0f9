#pragma once

#include "platform/data/apppropertymanager.h"

#include <QMap>

/// A property manager for tests.
class TestProperties : public AppPropertyManager
{
public:
    QVariant getProperty(const QString& name) override { return values.value(name); }

    QMap<QString, QVariant> values;
};
