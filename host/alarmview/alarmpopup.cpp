#include "host/alarmview/alarmpopup.h"

#include "host/alarms/alarmdesk.h"
#include "host/alarms/alarmmanager.h"
#include "host/alarmview/alarmcells_p.h"
#include "host/alarmview/waitingalarms_p.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace {

QLabel* makeLabel(const QString& name)
{
    auto* label = new QLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText); // names of the plant, whatever they look like
    label->setWordWrap(true);
    return label;
}

QPushButton* makeButton(const QString& text, const QString& name)
{
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setAutoDefault(false); // Return presses the one with the keyboard
    return button;
}

} // namespace

AlarmPopup::AlarmPopup(AlarmManager& manager, AlarmDesk& desk, QWidget* parent)
    : QFrame(parent, Qt::Tool | Qt::WindowStaysOnTopHint),
      m_manager(manager),
      m_desk(desk),
      m_alarms(std::make_unique<WaitingAlarms>())
{
    setObjectName(QStringLiteral("alarmPopup"));
    setWindowTitle(tr("Alarm"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFrameShape(QFrame::Box);
    setLineWidth(3);
    buildContent();
    m_timer.setSingleShot(true);
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &AlarmPopup::refresh);
    connect(&manager, &AlarmManager::transitioned, this, &AlarmPopup::take);
}

AlarmPopup::~AlarmPopup() = default;

void AlarmPopup::buildContent()
{
    constexpr int width = 360;
    m_headline = makeLabel(QStringLiteral("popupHeadline"));
    m_message = makeLabel(QStringLiteral("popupMessage"));
    m_more = makeLabel(QStringLiteral("popupMore"));
    QFont font = m_message->font();
    font.setBold(true);
    m_message->setFont(font);
    m_acknowledge = makeButton(tr("&Acknowledge"), QStringLiteral("popupAcknowledge"));
    m_goToPage = makeButton(tr("&Go to page"), QStringLiteral("popupGoToPage"));
    m_close = makeButton(tr("&Close"), QStringLiteral("popupClose"));
    connect(m_acknowledge, &QPushButton::clicked, this, &AlarmPopup::acknowledge);
    connect(m_goToPage, &QPushButton::clicked, this, &AlarmPopup::goToPage);
    connect(m_close, &QPushButton::clicked, this, &QWidget::close);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton* button : {m_acknowledge, m_goToPage, m_close})
        buttons->addWidget(button);
    auto* layout = new QVBoxLayout(this);
    for (QLabel* label : {m_headline, m_message, m_more})
        layout->addWidget(label);
    layout->addLayout(buttons);
    setFixedWidth(width);
}

void AlarmPopup::setPresentation(const AlarmDataInfo& presentation)
{
    m_presentation = presentation;
    if (!presentation.isPopupShown())
        close();
    refresh();
}

/// Whether the alarm is news: it came, or is told as new since nothing keeps it from the operator any more.
bool AlarmPopup::announces(const AlarmTransition& transition) const
{
    if (transition.alarm.state != ScadaAlarm::State::Unacknowledged || !m_presentation.isPopupShown())
        return false;
    return m_presentation.severityData(transition.alarm.severity).usePopup;
}

void AlarmPopup::take(const AlarmTransition& transition)
{
    const ScadaAlarm& alarm = transition.alarm;
    if (announces(transition))
        m_alarms->put(alarm.id, 0, alarm.raised.toMSecsSinceEpoch());
    else if (m_alarms->contains(alarm.id) && !alarm.isUnacknowledged())
        m_alarms->take(alarm.id);
    else if (alarm.id == 0 || alarm.id != m_shown)
        return;
    if (!m_timer.isActive())
        m_timer.start();
}

void AlarmPopup::refresh()
{
    m_shown = m_alarms->first();
    if (m_shown == 0) {
        hide();
        return;
    }
    const ScadaAlarm alarm = m_manager.alarm(m_shown);
    m_headline->setText(
        tr("Severity %1, %2\n%3").arg(alarm.severity).arg(AlarmCells::timeText(alarm.raised), alarm.tag));
    m_message->setText(alarm.message);
    m_more->setText(tr("and %n more", nullptr, m_alarms->count() - 1));
    m_more->setVisible(m_alarms->count() > 1);
    const QColor color = m_presentation.severityData(alarm.severity).textColor;
    QPalette colors = QGuiApplication::palette();
    if (color.isValid())
        colors.setColor(QPalette::WindowText, color);
    for (QWidget* widget : std::initializer_list<QWidget*>{this, m_message})
        widget->setPalette(colors);
    setAccessibleName(tr("Alarm: %1").arg(alarm.message));
    place();
    show();
}

/// At the right of the screen's foot, where nothing is operated.
void AlarmPopup::place()
{
    const int height = heightForWidth(width());
    resize(width(), height);
    if (isVisible())
        return; // where the user has moved it
    const QScreen* at = parentWidget() ? parentWidget()->screen() : screen();
    constexpr int margin = 16;
    const QRect room = at->availableGeometry();
    // Below the window's menus: at its foot stand the buttons for alarms.
    move(room.right() - width() - margin, room.top() + 6 * margin);
}

void AlarmPopup::acknowledge()
{
    m_desk.acknowledge({m_shown});
}

void AlarmPopup::goToPage()
{
    const ScadaAlarm alarm = m_manager.alarm(m_shown);
    Q_EMIT pageRequested(alarm.object());
}

/// What was closed is not shown again; what comes is.
void AlarmPopup::closeEvent(QCloseEvent* event)
{
    m_alarms->clear();
    m_shown = 0;
    QFrame::closeEvent(event);
}

void AlarmPopup::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QFrame::keyPressEvent(event);
}
