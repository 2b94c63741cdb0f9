#pragma once

#include "scada/scadaexport.h"

#include <QList>
#include <QWidget>
#include <QtGlobal>

#include <memory>

class KorvaneCoreInterface;

namespace Ui {
class CanvasAccessRightSettingWidget;
}

/// Edits who may open a page: whether the page is protected at all, and which user accounts may open it. Stores nothing.
///
/// Make it, call init() once, then setData() with the page's rights; read useSecurity() and selectedUsers() when the
/// user is done. Accounts that the page names and that there are no longer are dropped without a word.
class KORVANE_SCADA_EXPORT CanvasAccessRightSettingWidget : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(CanvasAccessRightSettingWidget)

public:
    explicit CanvasAccessRightSettingWidget(QWidget* parent = nullptr);
    ~CanvasAccessRightSettingWidget() override;

    /// Lists the accounts of the hub's data service or, without one, of the local database. Kept: a second call lists
    /// them again.
    /// \param core has a service hub; not owned, must outlive the widget
    void init(KorvaneCoreInterface* core);

    /// Shows a page's rights. Which accounts are listed stays.
    /// \param useSecurity not 0 for a protected page
    /// \param users numbers of the accounts that may open it, in any order
    void setData(qint8 useSecurity, const QList<int>& users);

    /// 1 for a protected page, else 0.
    qint8 useSecurity() const;
    /// Numbers of the chosen accounts in the order of the list, for a page that isn't protected too.
    QList<int> selectedUsers() const;

protected Q_SLOTS:
    /// Chooses every account, or none when "Clear All" sends it.
    void selectUser();

private:
    void connectForm();

    std::unique_ptr<Ui::CanvasAccessRightSettingWidget> m_ui;
    KorvaneCoreInterface* m_core = nullptr;
};
