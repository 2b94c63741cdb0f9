#pragma once

#include "platform/platformexport.h"

#include <QString>
#include <QtGlobal>

/// The host's front to the user accounts: who is logged on, and whose password is right. Implemented by the host; it
/// holds the passwords' checks and whatever policy it has against guessing.
class KORVANE_PLATFORM_EXPORT KorvaneDataBaseManagerInterface
{
public:
    KorvaneDataBaseManagerInterface() = default;
    Q_DISABLE_COPY(KorvaneDataBaseManagerInterface)
    virtual ~KorvaneDataBaseManagerInterface();

    /// Id of the user who is logged on; empty while nobody is.
    virtual QString currentUserId() = 0;

    /// Whether \p password is that of the user who is logged on.
    virtual bool checkCurrentUserPassword(const QString& password) = 0;

    /// Whether \p password is that of \p user.
    /// \param message says why, for the user's eyes, when it is not
    virtual bool checkUserPassword(const QString& user, const QString& password, QString& message) = 0;
};
