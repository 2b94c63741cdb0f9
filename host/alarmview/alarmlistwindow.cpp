#include "host/alarmview/alarmlistwindow.h"

#include "host/alarms/alarmsystem.h"
#include "host/alarms/alarmtexts.h"
#include "host/alarmview/alarmcells_p.h"
#include "host/alarmview/alarmfilterbar_p.h"
#include "host/alarmview/alarmlogview_p.h"
#include "host/alarmview/alarmtable_p.h"
#include "host/alarmview/elidedlabel_p.h"
#include "platform/data/scadaruntimeinterface.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QAction>
#include <QCursor>
#include <QHeaderView>
#include <QMenu>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {

using State = ScadaAlarm::State;

QKeySequence keys(const char* text)
{
    return QKeySequence(QString::fromLatin1(text));
}

} // namespace

AlarmListWindow::AlarmListWindow(AlarmSystem& system, KorvaneScadaCoreInterface& hub, const QStringList& areas,
                                 QWidget* parent)
    : KorvaneScadaAlarmWidgetInterface(parent),
      m_system(system),
      m_hub(hub),
      m_model(system.manager(), AlarmAreas(areas))
{
    setWindowTitle(tr("Alarms"));
    auto* tabs = new QTabWidget;
    tabs->setObjectName(QStringLiteral("alarmTabs"));
    tabs->addTab(makeList(), tr("Alarms"));
    tabs->addTab(new AlarmLogView(system, hub, tabs), tr("Log"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tabs);
    connect(m_filter, &AlarmFilterBar::passingChanged, this, &AlarmListWindow::filter);
    connect(m_filter, &AlarmFilterBar::keptChanged, this, [this] {
        filter();
        keep();
    });
    connect(m_table, &AlarmTable::columnsChanged, this, &AlarmListWindow::keep);
    connect(m_table, &QAbstractItemView::activated, this, &AlarmListWindow::goToPage);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &AlarmListWindow::updateActions);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentChanged, this, &AlarmListWindow::updateActions);
    connect(&system.manager(), &AlarmManager::exclusionChanged, this, [this] {
        updateActions();
        updateStatus();
    });
    connect(&m_model, &AlarmListModel::changed, this, [this] {
        updateActions();
        updateStatus();
    });
    applyFilter(AlarmDisplayFilterInfo());
}

AlarmListWindow::~AlarmListWindow() = default;

QWidget* AlarmListWindow::makeList()
{
    auto* list = new QWidget;
    m_actions = new QToolBar(list);
    m_actions->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_filter = new AlarmFilterBar(m_model, list);
    m_table = new AlarmTable(m_model, tr("Alarms"), list); // behind the filter for the Tab key
    m_table->setObjectName(QStringLiteral("alarmTable"));
    m_table->setWidths({8, 23, 21, 12, 20, 40, 10, 10, 16, 23, 23, 16, 23, 14});
    m_table->enableSorting();
    m_counts = new ElidedLabel;
    m_counts->setObjectName(QStringLiteral("alarmCounts"));
    m_firstOut = new ElidedLabel;
    m_firstOut->setObjectName(QStringLiteral("alarmFirstOut"));
    addActions();
    makeContextMenu();
    m_tools = new QWidget(list);
    m_tools->setObjectName(QStringLiteral("alarmTools"));
    auto* tools = new QVBoxLayout(m_tools);
    tools->setContentsMargins(0, 0, 0, 0);
    tools->setSpacing(2);
    tools->addWidget(m_actions);
    tools->addWidget(m_filter);
    auto* layout = new QVBoxLayout(list);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    layout->addWidget(m_tools);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_counts);
    layout->addWidget(m_firstOut);
    return list;
}

/// \param name for tests and style sheets
QAction* AlarmListWindow::add(const QString& name, const QString& text, const QString& toolTip,
                              const QKeySequence& shortcut, const std::function<void()>& act)
{
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    const QString keysText = shortcut.toString(QKeySequence::NativeText);
    action->setToolTip(keysText.isEmpty() ? toolTip : tr("%1 (%2)", "what it does (keys)").arg(toolTip, keysText));
    connect(action, &QAction::triggered, this, act);
    addAction(action); // the keys work without the tool bar too
    m_actions->addAction(action);
    return action;
}

void AlarmListWindow::addActions()
{
    addAcknowledging();
    m_silence = add(QStringLiteral("silence"), tr("Silence"), tr("End the sound"), Qt::Key_F9,
                    [this] { Q_EMIT silenceRequested(); });
    m_actions->addSeparator();
    addShelving();
    m_actions->addSeparator();
    m_goToPage =
        add(QStringLiteral("goToPage"), tr("Go to page"), tr("Show the page of the alarm"), {}, [this] { goToPage(); });
    add(QStringLiteral("export"), tr("Export..."), tr("Write what is shown to a file"), keys("Ctrl+E"),
        [this] { m_table->askForExport(); });
    auto* search = new QAction(this);
    search->setShortcut(QKeySequence::Find);
    search->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(search, &QAction::triggered, this, [this] {
        setToolBarShown(true);
        m_filter->search();
    });
    addAction(search);
}

void AlarmListWindow::addAcknowledging()
{
    m_acknowledge = add(QStringLiteral("acknowledge"), tr("Acknowledge"), tr("Acknowledge the alarms selected"),
                        Qt::Key_F6, [this] { acknowledge(selectedIds()); });
    m_acknowledgePage = add(QStringLiteral("acknowledgePage"), tr("Acknowledge page"),
                            tr("Acknowledge every alarm of the page in front"), keys("Shift+F6"), [this] {
                                m_system.desk().acknowledgePage(*m_page);
                                m_model.applyChanges();
                            });
    m_acknowledgeAll =
        add(QStringLiteral("acknowledgeAll"), tr("Acknowledge all"), tr("Acknowledge every alarm that the list shows"),
            keys("Ctrl+F6"), [this] { acknowledgeShown(); });
}

void AlarmListWindow::addShelving()
{
    m_shelve = add(QStringLiteral("shelve"), tr("Shelve..."), tr("Put the alarms selected away for a time"), Qt::Key_F7,
                   [this] { shelve(); });
    m_unshelve = add(QStringLiteral("unshelve"), tr("Unshelve"), tr("End the shelving of the alarms selected"),
                     keys("Shift+F7"), [this] { unshelve(); });
    m_takeOut =
        add(QStringLiteral("takeOut"), tr("Out of service..."),
            tr("Take the objects of the alarms selected out of service"), Qt::Key_F8, [this] { takeOutOfService(); });
    m_putBack = add(QStringLiteral("putBack"), tr("Into service"),
                    tr("Put the objects of the alarms selected back into service"), keys("Shift+F8"),
                    [this] { putBackIntoService(); });
}

void AlarmListWindow::makeContextMenu()
{
    m_showTools = new QAction(tr("Tool bar"), this);
    m_showTools->setObjectName(QStringLiteral("showTools"));
    m_showTools->setCheckable(true);
    connect(m_showTools, &QAction::triggered, this, [this](bool isOn) {
        setToolBarShown(isOn);
        keep();
    });
    for (QAction* action : m_actions->actions())
        m_table->addAction(action);
    auto* separator = new QAction(this);
    separator->setSeparator(true);
    m_table->addAction(separator);
    auto* columns = new QAction(tr("Columns..."), this);
    columns->setObjectName(QStringLiteral("columns"));
    connect(columns, &QAction::triggered, m_table, &AlarmTable::offerColumns);
    m_table->addAction(columns);
    m_table->addAction(m_showTools);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void AlarmListWindow::setToolBarShown(bool isShown)
{
    m_tools->setVisible(isShown);
    m_showTools->setChecked(isShown);
}

void AlarmListWindow::applyFilter(const AlarmDisplayFilterInfo& filterInfo)
{
    m_filter->setKept(filterInfo.severities, filterInfo.areas, filterInfo.subjectToUserAor);
    setToolBarShown(filterInfo.showToolBar);
    m_table->placeColumns(filterInfo.displayItems);
    filter();
}

AlarmDisplayFilterInfo AlarmListWindow::displayFilter() const
{
    AlarmDisplayFilterInfo info;
    info.severities = m_filter->severities();
    info.areas = m_filter->areas();
    info.subjectToUserAor = m_filter->isSubjectToUserAreas();
    info.showToolBar = m_showTools->isChecked();
    info.displayItems = m_table->columnPlaces();
    return info;
}

void AlarmListWindow::setUserAreas(const QStringList& areas)
{
    m_userAreas = areas;
    filter();
}

void AlarmListWindow::setPresentation(const AlarmDataInfo& presentation)
{
    m_model.setPresentation(presentation);
}

void AlarmListWindow::setPage(const CanvasScadaActionManagerInterface* page)
{
    m_page = page;
    updateActions();
}

void AlarmListWindow::filter()
{
    AlarmFilter shown;
    shown.severities = m_filter->severities();
    shown.areas = m_filter->areas();
    shown.states = m_filter->states();
    shown.text = m_filter->text();
    if (m_filter->isSubjectToUserAreas())
        shown.userAreas = m_userAreas;
    m_model.setFilter(shown);
}

void AlarmListWindow::keep()
{
    Q_EMIT settingsChanged(displayFilter().toSettingInfo());
}

QList<int> AlarmListWindow::selectedRows() const
{
    QList<int> rows;
    for (const QItemSelectionRange& range : m_table->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.append(row);
    }
    return rows;
}

QList<quint64> AlarmListWindow::selectedIds() const
{
    QList<quint64> ids;
    for (const int row : selectedRows())
        ids.append(m_model.alarm(row).id);
    return ids;
}

QList<ObjectKey> AlarmListWindow::selectedObjects() const
{
    QSet<ObjectKey> objects;
    for (const int row : selectedRows())
        objects.insert(m_model.alarm(row).object());
    return objects.values();
}

void AlarmListWindow::acknowledge(const QList<quint64>& ids)
{
    m_system.desk().acknowledge(ids);
    m_model.applyChanges();
}

void AlarmListWindow::acknowledgeShown()
{
    QList<quint64> ids;
    for (int row = 0; row < m_model.rowCount(); ++row) {
        if (m_model.alarm(row).isUnacknowledged())
            ids.append(m_model.alarm(row).id);
    }
    acknowledge(ids);
}

/// Names the alarm, or says how many they are.
QString AlarmListWindow::selectionText() const
{
    const QList<int> rows = selectedRows();
    if (rows.size() != 1)
        return tr("%n alarm(s)", nullptr, rows.size());
    const ScadaAlarm& alarm = m_model.alarm(rows.constFirst());
    return tr("%1: %2", "tag: message").arg(alarm.tag, alarm.message);
}

/// The alarms may change while the user thinks: \p act is told of those that were selected by what it holds.
void AlarmListWindow::ask(ShelveDialog::Purpose purpose, const std::function<void(const ShelveDialog&)>& act)
{
    auto* dialog = new ShelveDialog(
        purpose, selectionText(), [this] { return m_hub.currentTime(); }, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog, act] {
        act(*dialog);
        m_model.applyChanges();
    });
    dialog->open();
}

void AlarmListWindow::shelve()
{
    ask(ShelveDialog::Purpose::Shelve, [this, ids = selectedIds()](const ShelveDialog& dialog) {
        for (const quint64 id : ids)
            m_system.desk().shelve(id, dialog.until(), dialog.reason());
    });
}

void AlarmListWindow::unshelve()
{
    for (const quint64 id : selectedIds())
        m_system.desk().unshelve(id);
    m_model.applyChanges();
}

void AlarmListWindow::takeOutOfService()
{
    ask(ShelveDialog::Purpose::OutOfService, [this, objects = selectedObjects()](const ShelveDialog& dialog) {
        for (const ObjectKey object : objects)
            m_system.desk().setOutOfService(object, true, dialog.reason());
    });
}

void AlarmListWindow::putBackIntoService()
{
    QList<ObjectKey> objects;
    for (const int row : selectedRows()) {
        if (m_model.alarm(row).state == State::OutOfService)
            objects.append(m_model.alarm(row).object());
    }
    if (objects.isEmpty())
        objects = chooseOutOfService();
    for (const ObjectKey object : qAsConst(objects))
        m_system.desk().setOutOfService(object, false, {});
    m_model.applyChanges();
}

/// Objects that are out of service need not have an alarm in the list.
QList<ObjectKey> AlarmListWindow::outOfService() const
{
    QList<ObjectKey> objects;
    for (const ObjectKey object : m_system.manager().excludedObjects()) {
        if (m_system.manager().exclusion(object).isOutOfService)
            objects.append(object);
    }
    return objects;
}

QList<ObjectKey> AlarmListWindow::chooseOutOfService()
{
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("outOfService"));
    const QList<ObjectKey> objects = outOfService();
    for (const ObjectKey object : objects) {
        const ScadaRuntimeInterface* database = m_hub.scadaRuntime();
        const QString name = database ? database->fieldValue(object, DataCode::DataField::PointName).toString()
                                      : QString::number(object.id);
        const AlarmManager::Exclusion exclusion = m_system.manager().exclusion(object);
        QString text = name + QStringLiteral(" - ") + exclusion.serviceReason;
        if (!exclusion.serviceUser.isEmpty())
            text += QStringLiteral(" (%1)").arg(exclusion.serviceUser);
        menu.addAction(text.replace(QLatin1Char('&'), QLatin1String("&&")))->setData(objects.indexOf(object));
    }
    const QAction* chosen = menu.exec(QCursor::pos());
    return chosen ? QList<ObjectKey>{objects.at(chosen->data().toInt())} : QList<ObjectKey>();
}

void AlarmListWindow::goToPage()
{
    const QModelIndex current = m_table->currentIndex();
    if (current.isValid())
        Q_EMIT pageRequested(m_model.alarm(current.row()).object());
}

void AlarmListWindow::updateActions()
{
    const QList<int> rows = selectedRows();
    const auto anyIs = [&](State state) {
        return std::any_of(rows.begin(), rows.end(), [&](int row) { return m_model.alarm(row).state == state; });
    };
    const bool waits = anyIs(State::Unacknowledged) || anyIs(State::ReturnedUnacknowledged);
    const bool anyIsOut = anyIs(State::OutOfService);
    const bool allAreOut =
        std::all_of(rows.begin(), rows.end(), [&](int row) { return m_model.alarm(row).state == State::OutOfService; });
    m_acknowledge->setEnabled(waits);
    m_acknowledgePage->setEnabled(m_page != nullptr);
    m_shelve->setEnabled(waits || anyIs(State::Acknowledged) || anyIs(State::Shelved));
    m_unshelve->setEnabled(anyIs(State::Shelved));
    m_takeOut->setEnabled(!allAreOut);
    m_putBack->setEnabled(anyIsOut || !outOfService().isEmpty());
    m_goToPage->setEnabled(m_table->currentIndex().isValid());
}

void AlarmListWindow::updateStatus()
{
    QStringList parts;
    for (std::size_t place = 1; place < AlarmFilter::stateCount; ++place) {
        const auto state = static_cast<State>(place);
        if (m_model.count(state) > 0)
            parts.append(tr("%1: %2", "state: number").arg(AlarmTexts::state(state)).arg(m_model.count(state)));
    }
    if (parts.isEmpty())
        parts.append(tr("no alarm"));
    if (const int excluded = m_system.manager().excludedObjects().size(); excluded > 0)
        parts.append(tr("%n object(s) suppressed or out of service", nullptr, excluded));
    int accepted = 0;
    for (std::size_t place = 0; place < AlarmFilter::stateCount; ++place)
        accepted += m_model.count(static_cast<State>(place));
    const int hidden = static_cast<int>(m_system.manager().count()) - accepted;
    if (hidden > 0)
        parts.append(tr("%n hidden by the filter", nullptr, hidden));
    m_counts->setFullText(parts.join(QStringLiteral(", ")));
    m_firstOut->setFullText(firstOutText());
    m_acknowledgeAll->setEnabled(m_model.count(State::Unacknowledged) + m_model.count(State::ReturnedUnacknowledged) >
                                 0);
}

/// The first alarm of what is shown: of all areas, or of those that the filter leaves.
QString AlarmListWindow::firstOutText() const
{
    const AlarmFilter& shown = m_model.filter();
    QStringList areas;
    if (shown.areas.isEmpty())
        areas = shown.userAreas.value_or(QStringList{QString()});
    for (const int number : shown.areas) {
        const QString name = m_model.areas().name(number);
        if (!name.isEmpty() && (!shown.userAreas || shown.userAreas->contains(name)))
            areas.append(name);
    }
    ScadaAlarm first;
    for (const QString& area : qAsConst(areas)) {
        const ScadaAlarm ofArea = m_system.manager().firstOut(area);
        if (ofArea.id != 0 && (first.id == 0 || ofArea.raised < first.raised))
            first = ofArea;
    }
    return first.id == 0 ? QString() : tr("first: %1 at %2").arg(first.message, AlarmCells::timeText(first.raised));
}
