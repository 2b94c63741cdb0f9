#pragma once

#include "host/hostexport.h"

#include <QString>

#include <tl/expected.hpp>

#include <functional>

/// What happened to a user account, or under its name. No password is ever part of it.
struct KORVANE_HOST_EXPORT AccountEvent
{
    enum class Kind {
        LogOn,
        LogOff,
        CheckPassword, ///< asked for a confirmation or for another password
        Add,
        ChangeRights,
        SetPassword,
        Lock,
        Unlock,
        Remove,
    };

    Kind kind = Kind::LogOn;
    QString account;   ///< its name; of one that may not exist as it was typed, cut where no name goes on
    qint32 number = 0; ///< of the account; 0 where it is not known
    QString user;      ///< who did it; empty for whoever is at work here
    bool isDone = true;
    QString before; ///< rights, of an account that is changed or removed
    QString after;  ///< rights, of an account that is added or changed
    QString text;   ///< why it was not done, or why it came to it

    /// As logs hold it: "logOn".
    static QString nameOf(Kind kind);
};

/// Accounts for an event. \returns why it can't
using AccountRecorder = std::function<tl::expected<void, QString>(const AccountEvent&)>;
