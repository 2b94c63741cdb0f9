#pragma once

#include "host/hostexport.h"
#include "platform/data/scadaoperationmessage.h"

/// Asks people to confirm commands.
class KORVANE_HOST_EXPORT ControlConfirmer
{
public:
    virtual ~ControlConfirmer();

    /// Asks the operator who is logged on, by his password where security is on; returns once he has answered. That
    /// his password was right is looked up where passwords are checked, not believed.
    virtual bool confirm(const ScadaOperationMessage& request) = 0;
    /// Has a second person asked, by a password of his own, who then confirms the request by its number, or cancels it.
    /// May return before that.
    virtual void askSecond(const ScadaOperationMessage& request) = 0;
};
