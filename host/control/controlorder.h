#pragma once

#include "host/accounts/accountrole.h"
#include "platform/data/objectkey.h"
#include "platform/data/scadaoperationmessage.h"

#include <QString>
#include <QVariant>

#include <tl/expected.hpp>

#include <functional>

/// What an operator asks for.
struct ControlOrder
{
    using Operation = ScadaOperationMessage::Operation;

    Operation operation = Operation::Operate;
    ObjectKey object;
    QVariant value = {}; ///< invalid where the operation has none
    QString reason = {};
    QString page = {}; ///< from which it is given; empty for none
    /// What is done in place of a command to the source, once it is permitted; gives why it failed.
    std::function<tl::expected<void, QString>(const ScadaOperationMessage&)> act = {};
    /// Lowest role for what is done so; a command's is its point's.
    AccountRole role = AccountRole::Supervisor;

    bool isCommand() const { return !act; }
};
