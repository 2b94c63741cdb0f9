#include "platform/ui/pointbrowserdialog.h"

#include "platform/data/datafieldinfo.h"
#include "platform/ui/fieldlistmodel_p.h"
#include "platform/ui/pointtreemodel.h"
#include "platform/utility/settingpath.h"
#include "ui_pointbrowserdialog.h"

#include <QByteArray>
#include <QLocale>
#include <QPushButton>
#include <QSettings>
#include <QShortcut>
#include <QShowEvent>

#include <vector>

using DataCode::DataField;
using Korvane::ScadaObjectType;

namespace {

/// So many are looked over at a glance: up to here the stations of what matches are opened.
constexpr int fewMatches = 200;

std::vector<PointDirectory::Station> registeredStations()
{
    const PointDirectory* directory = PointDirectory::registered();
    return directory ? directory->stations() : std::vector<PointDirectory::Station>();
}

void select(const QTreeView* view, const QModelIndex& index)
{
    view->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

} // namespace

class PointBrowserDialog::Private
{
public:
    Private(PointBrowserDialog* dialog, Korvane::BrowseTypeFlag types, DataServiceInterface* dataService);

    void locate(ObjectKey key, DataField field);
    void setFieldsShown(bool shown);
    bool areFieldsShown() const { return !m_ui.fieldsView->isHidden(); }
    Korvane::BrowerItemInfo selectedItem() const;
    void comeUp();
    void storeLayout() const;

private:
    void connectWidgets();
    void restoreLayout();
    void setFilter(const QString& text);
    std::vector<int> openStations() const;
    void showCount();
    QString explanation() const;
    QModelIndex selectedIndex() const;
    void selectAndShow(const QModelIndex& index);
    void takeSelection();
    void showSelection();
    void showFields(ObjectKey object);
    void takeField();
    void goToObjects();
    void take();

    PointBrowserDialog* m_dialog;
    Ui::PointBrowserDialog m_ui{};
    PointTreeModel* m_objects;
    FieldListModel* m_fields;
    bool m_hasDirectory;
    ObjectKey m_chosen;                     ///< kept while the filter hides it
    DataField m_field = DataField::Unknown; ///< likewise, and while no fields are shown
    QByteArray m_widths;                    ///< of tree and fields: what is hidden has none
    std::vector<int> m_openStations;        ///< rows of those that were open before there was a filter
};

PointBrowserDialog::Private::Private(PointBrowserDialog* dialog, Korvane::BrowseTypeFlag types,
                                     DataServiceInterface* dataService)
    : m_dialog(dialog),
      m_objects(new PointTreeModel(registeredStations(), types, dialog)),
      m_fields(new FieldListModel(dataService, dialog)),
      m_hasDirectory(PointDirectory::registered() != nullptr)
{
    m_ui.setupUi(dialog);
    m_ui.objectsView->setModel(m_objects);
    m_ui.fieldsView->setModel(m_fields);
    m_ui.fieldsView->hide();
    m_ui.splitter->setStretchFactor(0, 3);
    m_ui.splitter->setStretchFactor(1, 2);
    m_ui.objectsView->setColumnWidth(PointTreeModel::Name, 220);
    m_ui.objectsView->setColumnWidth(PointTreeModel::Description, 300);
    m_ui.fieldsView->setColumnWidth(FieldListModel::Name, 150);
    m_ui.filterEdit->setEnabled(m_objects->objectCount() > 0);
    restoreLayout();
    m_ui.fieldsView->setColumnHidden(FieldListModel::PastValue, !dataService);
    connectWidgets();
    showCount();
    showSelection();
}

void PointBrowserDialog::Private::connectWidgets()
{
    connect(m_ui.filterEdit, &QLineEdit::textChanged, m_dialog, [this](const QString& text) { setFilter(text); });
    auto* down = new QShortcut(Qt::Key_Down, m_ui.filterEdit, nullptr, nullptr, Qt::WidgetShortcut);
    connect(down, &QShortcut::activated, m_dialog, [this] { goToObjects(); });
    connect(m_ui.objectsView->selectionModel(), &QItemSelectionModel::selectionChanged, m_dialog,
            [this] { takeSelection(); });
    connect(m_ui.fieldsView->selectionModel(), &QItemSelectionModel::selectionChanged, m_dialog,
            [this] { takeField(); });
    // Not activated(): Return emits it too, and is the default button's besides.
    connect(m_ui.objectsView, &QTreeView::doubleClicked, m_dialog, [this] { take(); });
    connect(m_ui.fieldsView, &QTreeView::doubleClicked, m_dialog, [this] { take(); });
    connect(m_ui.buttonBox, &QDialogButtonBox::accepted, m_dialog, [this] { take(); });
    connect(m_ui.buttonBox, &QDialogButtonBox::rejected, m_dialog, &QDialog::reject);
}

void PointBrowserDialog::Private::restoreLayout()
{
    QSettings settings(Korvane::getSettingPath(QString(), true, true), QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("PointBrowserDialog"));
    m_dialog->restoreGeometry(settings.value(QStringLiteral("Geometry")).toByteArray());
    m_ui.objectsView->header()->restoreState(settings.value(QStringLiteral("Columns")).toByteArray());
    m_ui.fieldsView->header()->restoreState(settings.value(QStringLiteral("FieldColumns")).toByteArray());
    m_widths = settings.value(QStringLiteral("Splitter")).toByteArray();
}

void PointBrowserDialog::Private::storeLayout() const
{
    QSettings settings(Korvane::getSettingPath(QString(), true, true), QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("PointBrowserDialog"));
    settings.setValue(QStringLiteral("Geometry"), m_dialog->saveGeometry());
    settings.setValue(QStringLiteral("Columns"), m_ui.objectsView->header()->saveState());
    settings.setValue(QStringLiteral("FieldColumns"), m_ui.fieldsView->header()->saveState());
    settings.setValue(QStringLiteral("Splitter"), areFieldsShown() ? m_ui.splitter->saveState() : m_widths);
}

void PointBrowserDialog::Private::setFilter(const QString& text)
{
    if (!m_objects->isFiltered())
        m_openStations = openStations();
    m_objects->setFilter(text);
    if (!m_objects->isFiltered()) {
        for (const int row : m_openStations)
            m_ui.objectsView->expand(m_objects->index(row, 0));
    } else if (m_objects->shownCount() <= fewMatches) {
        m_ui.objectsView->expandAll();
    }
    showCount();
    const QModelIndex chosen = m_objects->indexOf(m_chosen);
    if (chosen.isValid())
        selectAndShow(chosen);
    else
        showSelection();
}

std::vector<int> PointBrowserDialog::Private::openStations() const
{
    std::vector<int> rows;
    for (int row = 0; row < m_objects->rowCount(); ++row) {
        if (m_ui.objectsView->isExpanded(m_objects->index(row, 0)))
            rows.push_back(row);
    }
    return rows;
}

void PointBrowserDialog::Private::showCount()
{
    const QLocale locale;
    m_ui.countLabel->setText(
        PointBrowserDialog::tr("%1 of %2", "objects")
            .arg(locale.toString(m_objects->shownCount()), locale.toString(m_objects->objectCount())));
    m_ui.explanationLabel->setText(explanation());
    m_ui.objectsStack->setCurrentWidget(m_objects->shownCount() > 0 ? static_cast<QWidget*>(m_ui.objectsView)
                                                                    : m_ui.explanationLabel);
}

QString PointBrowserDialog::Private::explanation() const
{
    if (!m_hasDirectory)
        return PointBrowserDialog::tr("No point list is loaded, so there is nothing to choose from.");
    if (m_objects->objectCount() == 0)
        return PointBrowserDialog::tr("The point list has no objects of the kinds that can be chosen here.");
    return PointBrowserDialog::tr("No name, description or station contains \"%1\".")
        .arg(m_ui.filterEdit->text().trimmed());
}

QModelIndex PointBrowserDialog::Private::selectedIndex() const
{
    return m_ui.objectsView->selectionModel()->selectedRows().value(0);
}

Korvane::BrowerItemInfo PointBrowserDialog::Private::selectedItem() const
{
    Korvane::BrowerItemInfo item = m_objects->item(selectedIndex());
    if (item.type != ScadaObjectType::NoObject && areFieldsShown())
        item.property = Korvane::dtFieldToString(m_field);
    return item;
}

void PointBrowserDialog::Private::selectAndShow(const QModelIndex& index)
{
    select(m_ui.objectsView, index);
    m_ui.objectsView->scrollTo(index, QAbstractItemView::PositionAtCenter);
}

void PointBrowserDialog::Private::takeSelection()
{
    const Korvane::BrowerItemInfo item = m_objects->item(selectedIndex());
    m_chosen = {item.type, item.number};
    showSelection();
}

void PointBrowserDialog::Private::showSelection()
{
    const Korvane::BrowerItemInfo item = m_objects->item(selectedIndex());
    m_ui.buttonBox->button(QDialogButtonBox::Ok)->setEnabled(item.type != ScadaObjectType::NoObject);
    if (areFieldsShown())
        showFields({item.type, item.number});
}

void PointBrowserDialog::Private::showFields(ObjectKey object)
{
    m_fields->setObject(object);
    if (!object.isValid())
        return;
    const QModelIndex field = m_fields->indexOf(m_field);
    select(m_ui.fieldsView, field);
    m_ui.fieldsView->scrollTo(field);
}

void PointBrowserDialog::Private::takeField()
{
    const QModelIndex selected = m_ui.fieldsView->selectionModel()->selectedRows().value(0);
    m_field = selected.isValid() ? m_fields->fieldAt(selected.row()) : DataField::Unknown;
}

void PointBrowserDialog::Private::setFieldsShown(bool shown)
{
    if (shown == areFieldsShown())
        return;
    if (!shown)
        m_widths = m_ui.splitter->saveState();
    m_ui.fieldsView->setVisible(shown);
    if (shown)
        m_ui.splitter->restoreState(m_widths);
    showSelection();
}

void PointBrowserDialog::Private::locate(ObjectKey key, DataField field)
{
    if (!m_objects->contains(key))
        return;
    if (!m_objects->indexOf(key).isValid())
        m_ui.filterEdit->clear();
    m_field = field;
    const QModelIndex index = m_objects->indexOf(key);
    if (index == selectedIndex()) // then only the field may be another
        showSelection();
    selectAndShow(index);
}

void PointBrowserDialog::Private::goToObjects()
{
    if (m_objects->shownCount() == 0)
        return;
    m_ui.objectsView->setFocus();
    if (selectedIndex().isValid())
        return;
    const QModelIndex station = m_objects->index(0, 0);
    selectAndShow(m_ui.objectsView->isExpanded(station) ? m_objects->index(0, 0, station) : station);
}

void PointBrowserDialog::Private::take()
{
    if (selectedItem().type != ScadaObjectType::NoObject)
        Q_EMIT m_dialog->emitOk();
}

void PointBrowserDialog::Private::comeUp()
{
    m_ui.filterEdit->setFocus();
    // Only now has the view the size that says where its middle is.
    m_ui.objectsView->scrollTo(selectedIndex(), QAbstractItemView::PositionAtCenter);
}

PointBrowserDialog::PointBrowserDialog(QWidget* parent, Qt::WindowFlags flags, Korvane::BrowseTypeFlag types,
                                       DataServiceInterface* dataService)
    : QDialog(parent, flags), m_d(std::make_unique<Private>(this, types, dataService))
{
}

PointBrowserDialog::~PointBrowserDialog()
{
    m_d->storeLayout();
}

void PointBrowserDialog::setShowPropertyView(bool shown)
{
    m_d->setFieldsShown(shown);
}

bool PointBrowserDialog::isPropertyViewShown() const
{
    return m_d->areFieldsShown();
}

void PointBrowserDialog::locateToPoint(ScadaObjectType type, int number)
{
    m_d->locate({type, number}, DataField::Unknown);
}

void PointBrowserDialog::locateToPoint(ScadaObjectType type, int number, const QString& property)
{
    m_d->locate({type, number}, Korvane::dtStringToCode(property));
}

Korvane::BrowerItemInfo PointBrowserDialog::getSelectedItem() const
{
    return m_d->selectedItem();
}

void PointBrowserDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!event->spontaneous())
        m_d->comeUp();
}
