#pragma once

#include "host/control/controlconfirmer.h"
#include "host/hostexport.h"

#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

class KorvaneCoreInterface;
class QDialog;
class RuntimeDatabase;
class RuntimeManager;
class AccountDatabase;

/// Asks for confirmations in dialogs over a window.
class KORVANE_HOST_EXPORT DialogConfirmer : public ControlConfirmer
{
    Q_DECLARE_TR_FUNCTIONS(DialogConfirmer)

public:
    struct Services
    {
        KorvaneCoreInterface& core;
        RuntimeManager& manager;
        const AccountDatabase& accounts;
        const RuntimeDatabase& database;
    };

    /// \param services must outlive the confirmer
    DialogConfirmer(const Services& services, QWidget* window);
    ~DialogConfirmer() override;

    bool confirm(const ScadaOperationMessage& request) override;
    /// Asks who the second person is, and for his password.
    void askSecond(const ScadaOperationMessage& request) override;

private:
    QString commandOf(const ScadaOperationMessage& request) const;
    void closeWith(const ScadaOperationMessage& request, QDialog& dialog) const;
    QString chooseSecond(const ScadaOperationMessage& request, const QString& command) const;

    Services m_services;
    QPointer<QWidget> m_window;
};
