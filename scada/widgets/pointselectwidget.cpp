#include "scada/widgets/pointselectwidget.h"

#include "platform/data/tagresolution.h"
#include "platform/ui/kvpointmimedata.h"
#include "platform/ui/pointbrowserdialog.h"
#include "ui_pointselectwidget.h"

#include <QDragEnterEvent>
#include <QDropEvent>

namespace {

constexpr int everyType = 23;

Korvane::DataLinkInfo linkTo(const Korvane::BrowerItemInfo& item)
{
    const bool isPoint = Korvane::isPointObjectType(item.type);
    Korvane::DataLinkInfo link;
    link.type = isPoint ? Korvane::ScadaObjectType::Point : item.type;
    link.id = item.number;
    link.name = isPoint ? item.tag : item.name;
    link.field = item.property;
    return link;
}

} // namespace

PointSelectWidget::PointSelectWidget(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::PointSelectWidget>()), m_browserType(everyType)
{
    m_ui->setupUi(this);
    connect(m_ui->pointNameEdit, &QLineEdit::textChanged, this, &PointSelectWidget::handleTextChange);
    connect(m_ui->moreBtn, &QToolButton::released, this, &PointSelectWidget::slotBrowsePoint);
}

PointSelectWidget::~PointSelectWidget()
{
    // Here, while this is still the widget that they report their end to; a forgotten one too.
    qDeleteAll(findChildren<PointBrowserDialog*>(QString(), Qt::FindDirectChildrenOnly));
}

QString PointSelectWidget::getTagString() const
{
    return m_ui->pointNameEdit->text();
}

void PointSelectWidget::setTagString(const QString& tag)
{
    m_ui->pointNameEdit->setText(tag);
}

void PointSelectWidget::setLabel(const QString& text)
{
    m_ui->label->setText(text);
}

void PointSelectWidget::setShowLabel(bool shown)
{
    m_ui->label->setVisible(shown);
}

void PointSelectWidget::hideName()
{
    m_ui->label->hide();
}

void PointSelectWidget::removeSpacer()
{
    m_ui->gridLayout->removeItem(m_ui->horizontalSpacer);
}

void PointSelectWidget::setBrowserType(Korvane::BrowseTypeFlag types)
{
    m_browserType = types;
}

void PointSelectWidget::setShowProperty(bool shown)
{
    m_showProperty = shown;
    if (m_browser)
        m_browser->setShowPropertyView(shown);
}

void PointSelectWidget::dlgDestroyed(QObject*)
{
    m_browser = nullptr;
}

void PointSelectWidget::slotBrowsePoint()
{
    if (m_browser)
        m_browser->show(); // kept: where it stands, whatever was typed meanwhile
    else
        openBrowser();
}

void PointSelectWidget::openBrowser()
{
    m_browser = new PointBrowserDialog(this, Qt::Window, m_browserType, nullptr);
    m_browser->setShowPropertyView(m_showProperty);
    connect(m_browser, &QObject::destroyed, this, &PointSelectWidget::dlgDestroyed);
    connect(m_browser, &PointBrowserDialog::emitOk, this, &PointSelectWidget::updateBrowserItem);
    m_browser->setAttribute(Qt::WA_DeleteOnClose);

    const Korvane::DataLinkInfo link = Korvane::resolveFromString(getTagString(), nullptr);
    if (m_showProperty)
        m_browser->locateToPoint(link.type, link.id, link.field);
    else
        m_browser->locateToPoint(link.type, link.id);

    m_browser->show();
    m_browser->raise();
    m_browser->activateWindow();
}

void PointSelectWidget::reset()
{
    m_ui->pointNameEdit->clear();
}

void PointSelectWidget::updateBrowserItem()
{
    if (!m_browser)
        return;
    const Korvane::BrowerItemInfo item = m_browser->getSelectedItem();
    updateLinkSource(item);
    Q_EMIT browserItemSelected(item);
}

void PointSelectWidget::handleTextChange(const QString& text)
{
    Q_EMIT linkInfoChanged(text);
}

void PointSelectWidget::updateLinkSource(const Korvane::BrowerItemInfo& item)
{
    setTagString(m_showProperty ? linkTo(item).absoluteName() : item.tag);
}

void PointSelectWidget::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasFormat(KVPointMimeData::format()))
        event->acceptProposedAction();
    event->accept(); // kept: a drag of any kind
}

void PointSelectWidget::dropEvent(QDropEvent* event)
{
    const auto* point = qobject_cast<const KVPointMimeData*>(event->mimeData());
    if (!point)
        return;
    const Korvane::BrowerItemInfo item = point->getData();
    updateLinkSource(item);
    event->setDropAction(Qt::MoveAction);
    event->accept();
    Q_EMIT browserItemSelected(item);
}
