#include "host/alarmview/alarmbanner.h"

#include "host/alarms/alarmdesk.h"
#include "host/alarms/alarmmanager.h"
#include "host/alarmview/alarmcells_p.h"
#include "host/alarmview/alarmlistmodel.h"
#include "host/alarmview/elidedlabel_p.h"
#include "host/alarmview/waitingalarms_p.h"

#include <QHBoxLayout>
#include <QPushButton>

#include <algorithm>

namespace {

QPushButton* makeButton(const QString& text, const QString& name)
{
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    return button;
}

} // namespace

AlarmBanner::AlarmBanner(AlarmManager& manager, AlarmDesk& desk, QWidget* parent)
    : QFrame(parent), m_manager(manager), m_desk(desk), m_alarms(std::make_unique<WaitingAlarms>())
{
    setObjectName(QStringLiteral("alarmBanner"));
    setAccessibleName(tr("Alarms"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    buildContent();
    m_timer.setSingleShot(true);
    m_timer.setInterval(AlarmListModel::gatheringMs);
    connect(&m_timer, &QTimer::timeout, this, &AlarmBanner::refresh);
    connect(&manager, &AlarmManager::transitioned, this, &AlarmBanner::take);
    reload();
}

AlarmBanner::~AlarmBanner() = default;

void AlarmBanner::buildContent()
{
    constexpr int shortestAlarm = 40; // letters
    m_alarm = new ElidedLabel;
    m_alarm->setObjectName(QStringLiteral("bannerAlarm"));
    m_alarm->setAutoFillBackground(true);
    m_alarm->setMargin(3);
    m_alarm->setMinimumWidth(shortestAlarm * fontMetrics().averageCharWidth());
    m_counts = new ElidedLabel;
    m_counts->setObjectName(QStringLiteral("bannerCounts"));
    m_notice = new ElidedLabel;
    m_notice->setObjectName(QStringLiteral("bannerNotice"));
    m_notice->hide();
    m_acknowledge = makeButton(tr("Ac&knowledge"), QStringLiteral("bannerAcknowledge"));
    QPushButton* silence = makeButton(tr("S&ilence"), QStringLiteral("bannerSilence"));
    QPushButton* list = makeButton(tr("A&larms..."), QStringLiteral("bannerList"));
    connect(m_acknowledge, &QPushButton::clicked, this, [this] {
        m_desk.acknowledge({m_shown});
        refresh();
    });
    connect(silence, &QPushButton::clicked, this, &AlarmBanner::silenceRequested);
    connect(list, &QPushButton::clicked, this, &AlarmBanner::listRequested);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->addWidget(m_alarm, 1);
    layout->addWidget(m_notice);
    layout->addWidget(m_counts);
    for (QPushButton* button : {m_acknowledge, silence, list})
        layout->addWidget(button);
}

void AlarmBanner::setPresentation(const AlarmDataInfo& presentation)
{
    m_presentation = presentation;
    refresh();
}

void AlarmBanner::setNotice(const QString& notice)
{
    constexpr int mostLetters = 30; // before the other parts give way
    m_notice->setFullText(notice);
    m_notice->setMinimumWidth(std::min(m_notice->sizeHint().width(), mostLetters * fontMetrics().averageCharWidth()));
    m_notice->setVisible(!notice.isEmpty());
}

void AlarmBanner::reload()
{
    m_alarms->clear();
    for (const ScadaAlarm& alarm : m_manager.activeAlarms()) {
        if (alarm.isUnacknowledged())
            m_alarms->put(alarm.id, alarm.severity, alarm.raised.toMSecsSinceEpoch());
    }
    refresh();
}

void AlarmBanner::take(const AlarmTransition& transition)
{
    const ScadaAlarm& alarm = transition.alarm;
    if (alarm.isUnacknowledged())
        m_alarms->put(alarm.id, alarm.severity, alarm.raised.toMSecsSinceEpoch());
    else
        m_alarms->take(alarm.id);
    if (!m_timer.isActive())
        m_timer.start();
}

QString AlarmBanner::countsText() const
{
    QStringList counts;
    for (int severity = ScadaAlarm::highestSeverity; severity >= ScadaAlarm::lowestSeverity; --severity) {
        if (const int count = m_manager.visibleCount(severity))
            counts.append(tr("S%1: %2", "severity and number of alarms").arg(severity).arg(count));
    }
    return counts.join(QStringLiteral(", "));
}

void AlarmBanner::refresh()
{
    m_timer.stop();
    m_shown = m_alarms->first();
    const ScadaAlarm alarm = m_manager.alarm(m_shown);
    QPalette colors = palette();
    if (m_shown != 0) {
        const QColor color = m_presentation.severityData(alarm.severity).textColor;
        colors.setColor(QPalette::Window, AlarmCells::waitingBackground());
        if (color.isValid())
            colors.setColor(QPalette::WindowText, color);
    }
    m_alarm->setPalette(colors);
    m_alarm->setFullText(m_shown == 0 ? tr("No alarm waits.")
                                      : tr("%1  %2  %3", "time, tag and message")
                                            .arg(AlarmCells::timeText(alarm.raised), alarm.tag, alarm.message));
    m_counts->setFullText(countsText());
    m_acknowledge->setEnabled(m_shown != 0);
}
