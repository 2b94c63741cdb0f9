#include "host/summary/summarywindow.h"

#include "host/summary/summarycentralwidget.h"
#include "platform/utility/settingpath.h"

#include <QSettings>

namespace {

QString settingsFile()
{
    return Korvane::getSettingPath(QString(), true, true);
}

QString columnsKey()
{
    return QStringLiteral("ScadaSummaryWidget/Columns");
}

} // namespace

SummaryWindow::SummaryWindow(const RuntimeDatabase& database, const QTimeZone& zone, QWidget* parent)
    : ScadaSummaryWidgetInterface(parent), m_summary(new SummaryCentralWidget(database, zone))
{
    setCentralWidget(m_summary);
    connect(m_summary, &SummaryCentralWidget::objectActivated, this, &SummaryWindow::objectActivated);
    const QSettings settings(settingsFile(), QSettings::IniFormat);
    m_summary->restoreColumns(settings.value(columnsKey()).toByteArray());
}

SummaryWindow::~SummaryWindow()
{
    QSettings(settingsFile(), QSettings::IniFormat).setValue(columnsKey(), m_summary->columns());
}

void SummaryWindow::noteChanged(const std::vector<ObjectKey>& objects)
{
    m_summary->noteChanged(objects);
}
