#pragma once

#include "platform/data/datacode.h"
#include "platform/data/objectkey.h"
#include "platform/database/euseraccount.h"
#include "platform/platformexport.h"

#include <QList>
#include <QString>
#include <QVariant>

/// The data service: where values come from, beyond what a batch and the runtime database hold. Implemented by the
/// host.
class KORVANE_PLATFORM_EXPORT DataServiceInterface
{
public:
    DataServiceInterface() = default;
    Q_DISABLE_COPY(DataServiceInterface)
    virtual ~DataServiceInterface();

    /// A past-value field (DataFieldInfo::Supplier::History) of \p object, over the last whole hour.
    /// \returns an invalid variant when the object or that part of its history is not known.
    virtual QVariant historyValue(ObjectKey object, DataCode::DataField field) = 0;

    /// Runs a query for user accounts ("select * from SYSTEM_USER_ACCOUNT") on the server's side and appends what it
    /// finds.
    /// \returns false, with \p accounts as it was, when the query failed or asks for anything else.
    virtual bool queryUserAccounts(const QString& sql, QList<EUserAccount>& accounts) = 0;
};
