#pragma once

#include "platform/database/entitymultiresult.h"
#include "platform/platformexport.h"

#include <QMetaType>
#include <QString>
#include <QStringList>

/// A user account: who may operate, in what role and where. Holds no password.
struct KORVANE_PLATFORM_EXPORT EUserAccount
{
    /// Whether the record stands in a database.
    enum class State : qint32 { New, Stored };

    State state = State::New;
    qint32 number = 0;      ///< by which pages and logs know the account; above 0, never given to another one
    QString name;           ///< by which the user logs on
    QString role = {};      ///< name of a role of the host
    QStringList areas = {}; ///< areas of responsibility; empty for all

    bool isEqual(const EUserAccount& other) const;

    /// Every account of the local database, by ascending number: of the registered UserAccountDatabase. Without one
    /// the result is empty and says so.
    static EntityMultiResult<EUserAccount> allUserAccount();
};

Q_DECLARE_METATYPE(EUserAccount)
