#pragma once

#include "host/alarmview/alarmlistmodel.h"
#include "host/alarmview/shelvedialog.h"
#include "host/hostexport.h"
#include "scada/hub/korvanescadaalarmwidgetinterface.h"
#include "scada/records/alarmdisplayfilterinfo.h"

#include <QKeySequence>

#include <functional>
#include <optional>

class AlarmFilterBar;
class AlarmSystem;
class AlarmTable;
class CanvasScadaActionManagerInterface;
class ElidedLabel;
class KorvaneScadaCoreInterface;
class QAction;
class QToolBar;

/// The operator's alarm list: what stands, what is done about it, and the log.
///
/// Which severities, areas and columns it shows is an AlarmDisplayFilterInfo: its display items name columns by their number
/// in AlarmListOrder, with 0 for a hidden one and else its place from the left; columns that it does not name follow behind
/// the others. Its areas are numbers of AlarmAreas.
class KORVANE_HOST_EXPORT AlarmListWindow : public KorvaneScadaAlarmWidgetInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmListWindow)

public:
    /// \param system, hub not owned, must outlive the window
    /// \param areas names that the project states, in its order
    AlarmListWindow(AlarmSystem& system, KorvaneScadaCoreInterface& hub, const QStringList& areas = {},
                    QWidget* parent = nullptr);
    ~AlarmListWindow() override;

    void applyFilter(const AlarmDisplayFilterInfo& filter);
    /// What is set now, with a display item for each column.
    AlarmDisplayFilterInfo displayFilter() const;
    /// Areas of the user at work, to which the filter may limit the list; all of them until this is called.
    void setUserAreas(const QStringList& areas);
    /// Takes the colours of the severities.
    void setPresentation(const AlarmDataInfo& presentation);
    /// \param page whose alarms can be acknowledged at once; not owned, null for none and before it goes
    void setPage(const CanvasScadaActionManagerInterface* page);
    /// What asks for silence, in the list's tool bar too. For windows that offer it elsewhere: a second action of the same
    /// key would keep both from working.
    QAction* silenceAction() const { return m_silence; }
    /// Reads the alarms anew: for those that the manager was given without telling of each.
    void reload() { m_model.reload(); }

Q_SIGNALS:
    /// The user wants to see an object.
    void pageRequested(ObjectKey object);
    /// The user wants the sound to end.
    void silenceRequested();
    /// The user set the list otherwise: displayFilter() as its settings string.
    void settingsChanged(const QString& filterText);

private:
    void addActions();
    void addAcknowledging();
    void addShelving();
    QAction* add(const QString& name, const QString& text, const QString& toolTip, const QKeySequence& shortcut,
                 const std::function<void()>& act);
    QWidget* makeList();
    void makeContextMenu();
    void setToolBarShown(bool isShown);
    void filter();
    void keep();

    QList<int> selectedRows() const;
    QList<quint64> selectedIds() const;
    QList<ObjectKey> selectedObjects() const;
    QString selectionText() const;
    void acknowledge(const QList<quint64>& ids);
    void acknowledgeShown();
    void shelve();
    void unshelve();
    void takeOutOfService();
    void putBackIntoService();
    QList<ObjectKey> outOfService() const;
    QList<ObjectKey> chooseOutOfService();
    void ask(ShelveDialog::Purpose purpose, const std::function<void(const ShelveDialog&)>& act);
    void goToPage();
    void updateActions();
    void updateStatus();
    QString firstOutText() const;

    AlarmSystem& m_system;
    KorvaneScadaCoreInterface& m_hub;
    AlarmListModel m_model;
    std::optional<QStringList> m_userAreas;
    const CanvasScadaActionManagerInterface* m_page = nullptr;
    QWidget* m_tools = nullptr;
    QToolBar* m_actions = nullptr;
    AlarmFilterBar* m_filter = nullptr;
    AlarmTable* m_table = nullptr;
    ElidedLabel* m_counts = nullptr;
    ElidedLabel* m_firstOut = nullptr;
    QAction* m_acknowledge = nullptr;
    QAction* m_silence = nullptr;
    QAction* m_acknowledgePage = nullptr;
    QAction* m_acknowledgeAll = nullptr;
    QAction* m_shelve = nullptr;
    QAction* m_unshelve = nullptr;
    QAction* m_takeOut = nullptr;
    QAction* m_putBack = nullptr;
    QAction* m_goToPage = nullptr;
    QAction* m_showTools = nullptr;
};
