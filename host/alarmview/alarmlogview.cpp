#include "host/alarmview/alarmlogview_p.h"

#include "host/alarms/alarmsystem.h"
#include "host/alarms/alarmtexts.h"
#include "host/alarmview/alarmlogmodel.h"
#include "host/alarmview/alarmtable_p.h"
#include "platform/data/tagresolution.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace {

QDateTimeEdit* makeTimeEdit(const QString& name, const QDateTime& time)
{
    auto* edit = new QDateTimeEdit(time.toLocalTime());
    edit->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    edit->setCalendarPopup(true);
    edit->setAccessibleName(name);
    edit->setKeyboardTracking(false); // not at each digit
    return edit;
}

} // namespace

AlarmLogView::AlarmLogView(AlarmSystem& system, KorvaneScadaCoreInterface& hub, QWidget* parent)
    : QWidget(parent), m_system(system), m_hub(hub), m_model(new AlarmLogModel(this))
{
    QWidget* filter = makeFilter();
    m_table = new AlarmTable(*m_model, tr("Log"), this); // behind the filter for the Tab key
    m_table->setObjectName(QStringLiteral("logTable"));
    m_table->setWidths({24, 22, 8, 12, 20, 40, 22, 12, 12, 16, 14, 24, 24});
    m_status = new QLabel;
    m_status->setTextFormat(Qt::PlainText);
    m_status->setObjectName(QStringLiteral("logStatus"));
    m_status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(filter);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_status);

    m_timer.setSingleShot(true);
    m_timer.setInterval(readingMs);
    connect(&m_timer, &QTimer::timeout, this, &AlarmLogView::readAgain);
    connect(&m_system, &AlarmSystem::logged, this, &AlarmLogView::readSoon);
    connect(m_from, &QDateTimeEdit::dateTimeChanged, this, &AlarmLogView::read);
    connect(m_to, &QDateTimeEdit::dateTimeChanged, this, &AlarmLogView::read);
    connect(m_tag, &QLineEdit::textChanged, this, &AlarmLogView::readSoon);
    connect(m_tag, &QLineEdit::returnPressed, this, &AlarmLogView::read);
    connect(m_upToNow, &QCheckBox::toggled, this, [this](bool isOn) {
        m_to->setEnabled(!isOn);
        const QSignalBlocker once(m_to);
        m_to->setDateTime(m_hub.currentTime().toLocalTime());
        read();
    });
}

AlarmLogView::~AlarmLogView() = default;

QWidget* AlarmLogView::makeFilter()
{
    auto* filter = new QWidget(this);
    const QDateTime now = m_hub.currentTime();
    m_from = makeTimeEdit(tr("From"), now.addDays(-1));
    m_from->setObjectName(QStringLiteral("logFrom"));
    m_to = makeTimeEdit(tr("To"), now);
    m_to->setObjectName(QStringLiteral("logTo"));
    m_to->setEnabled(false);
    m_upToNow = new QCheckBox(tr("Up to &now"));
    m_upToNow->setObjectName(QStringLiteral("logUpToNow"));
    m_upToNow->setChecked(true);
    m_tag = new QLineEdit;
    m_tag->setObjectName(QStringLiteral("logTag"));
    m_tag->setPlaceholderText(tr("Tag, or a part of it"));
    m_tag->setAccessibleName(tr("Tag"));
    m_tag->setClearButtonEnabled(true);
    auto* exporting = new QPushButton(tr("&Export..."));
    exporting->setObjectName(QStringLiteral("logExport"));
    connect(exporting, &QPushButton::clicked, this, [this] { m_table->askForExport(); });
    auto* from = new QLabel(tr("&From"));
    from->setBuddy(m_from);
    auto* to = new QLabel(tr("T&o"));
    to->setBuddy(m_to);
    auto* layout = new QHBoxLayout(filter);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* widget : std::initializer_list<QWidget*>{from, m_from, to, m_to, m_upToNow})
        layout->addWidget(widget);
    layout->addWidget(m_tag, 1);
    layout->addWidget(exporting);
    return filter;
}

void AlarmLogView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (m_isOutdated)
        readSoon();
}

/// At once, unless it was done just now.
void AlarmLogView::readSoon()
{
    m_isOutdated = true;
    if (!m_timer.isActive())
        readAgain();
}

void AlarmLogView::readAgain()
{
    if (m_isOutdated && isVisible())
        read();
}

void AlarmLogView::read()
{
    m_isOutdated = false;
    m_timer.start();
    const QString tag = m_tag->text().trimmed();
    AlarmLog::Query query;
    query.most = mostLines;
    query.fromMs = m_from->dateTime().toMSecsSinceEpoch();
    // The second that is shown belongs to the span.
    if (!m_upToNow->isChecked())
        query.toMs = m_to->dateTime().toMSecsSinceEpoch() / 1000 * 1000 + 999;
    const Korvane::DataLinkInfo named = Korvane::resolveFromString(tag, m_hub.scadaRuntime());
    if (!tag.isEmpty())
        query.object = {named.type, named.id};
    auto lines = m_system.log().read(query);
    if (!lines) {
        m_status->setText(lines.error());
        return;
    }
    if (!query.object.isValid()) {
        lines->erase(std::remove_if(lines->begin(), lines->end(),
                                    [&](const AlarmTransition& line) {
                                        return !AlarmTexts::tag(line.alarm).contains(tag, Qt::CaseInsensitive);
                                    }),
                     lines->end());
    }
    m_model->setLines(std::move(*lines));
    m_status->setText(tr("%n line(s)", nullptr, m_model->rowCount()));
}
