#pragma once

#include "host/canvas/pageaccess.h"
#include "host/hostexport.h"

#include <QDialog>

class CanvasAccessRightSettingWidget;
class KorvaneCoreInterface;

/// Edits who may open a page. Without accounts there is nobody to choose, and it says so.
class KORVANE_HOST_EXPORT AccessDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(AccessDialog)

public:
    /// \param core where the accounts come from, as CanvasAccessRightSettingWidget takes them; not owned
    AccessDialog(KorvaneCoreInterface& core, const PageAccess& access, QWidget* parent = nullptr);
    ~AccessDialog() override;

    /// As it was edited; accounts that there are no longer are not in it.
    PageAccess access() const;

private:
    bool hasAccounts() const;

    PageAccess m_access; ///< as it was
    CanvasAccessRightSettingWidget* m_rights;
};
