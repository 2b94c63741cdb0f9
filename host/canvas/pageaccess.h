#pragma once

#include "host/hostexport.h"

#include <QByteArray>
#include <QList>

/// Who may open a page. What a page file states wrongly protects the page from everybody: it never opens one.
struct KORVANE_HOST_EXPORT PageAccess
{
    bool isProtected = false; ///< false: whoever may see pages at all
    QList<int> users = {};    ///< numbers of the accounts that may open a protected page
    /// What stands in the file where this could not be read, as the text of a JSON value; empty for most. Kept for
    /// saving until the access is set anew.
    QByteArray unreadable = {};

    bool mayOpen(int user) const { return !isProtected || users.contains(user); }
    bool isEqual(const PageAccess& other) const
    {
        return isProtected == other.isProtected && users == other.users && unreadable == other.unreadable;
    }
};
