#pragma once

#include "platform/platformexport.h"

#include <QString>
#include <QVariant>

/// The properties of the application, which tags name behind the prefix "@::". Implemented by the host.
class KORVANE_PLATFORM_EXPORT AppPropertyManager
{
public:
    AppPropertyManager() = default;
    Q_DISABLE_COPY(AppPropertyManager)
    virtual ~AppPropertyManager();

    /// \returns an invalid variant for a property that there is not.
    virtual QVariant getProperty(const QString& name) = 0;
};
