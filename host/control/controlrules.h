#pragma once

#include "host/control/controlorder.h"
#include "host/control/controlsetting.h"
#include "host/hostexport.h"

#include <QCoreApplication>
#include <QString>

#include <tl/expected.hpp>

#include <functional>

class DatabaseManager;
class RuntimeDatabase;

/// What must hold before an operator's order is carried out. Looks only; whoever carries out asks as often as anything
/// may have changed.
class KORVANE_HOST_EXPORT ControlRules
{
    Q_DECLARE_TR_FUNCTIONS(ControlRules)

public:
    using Outcome = ScadaOperationMessage::Outcome;

    struct Refusal
    {
        Outcome outcome = Outcome::Refused;
        QString text; ///< for the operator
    };
    /// Who asks, and how things stand.
    struct Asking
    {
        QString user;
        QString selectedBy; ///< who has selected the object; empty when nobody has
    };

    /// \param database, users must outlive the rules
    ControlRules(const RuntimeDatabase& database, const DatabaseManager& users) : m_database(database), m_users(users)
    {
    }
    /// Says whether the current user may open a page; every page unless set.
    void setPageCheck(std::function<bool(const QString& page)> mayOpen) { m_mayOpenPage = std::move(mayOpen); }

    /// The number that is to be sent, 0 where none is; or why the order may not be carried out.
    tl::expected<double, Refusal> check(const ControlOrder& order, const Asking& asking) const;
    /// How commands to \p object are given; that of an object without commands when there is no such one.
    const ControlSetting& settingOf(ObjectKey object) const;

private:
    using Checked = tl::expected<void, Refusal>;

    Checked checkRight(const ControlOrder& order) const;
    Checked checkKind(const ControlOrder& order) const;
    Checked checkSelection(const ControlOrder& order, const Asking& asking) const;
    Checked checkInterlock(const ControlSetting& setting) const;
    tl::expected<double, Refusal> valueOf(const ControlOrder& order) const;
    tl::expected<double, Refusal> stepped(const ControlOrder& order) const;
    tl::expected<double, Refusal> bounded(const ControlOrder& order, double value) const;

    const RuntimeDatabase& m_database;
    const DatabaseManager& m_users;
    std::function<bool(const QString&)> m_mayOpenPage;
};
