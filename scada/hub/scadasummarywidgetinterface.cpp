#include "scada/hub/scadasummarywidgetinterface.h"

#include "platform/utility/settingpath.h"

#include <QSettings>

namespace {

constexpr int stateVersion = 0;

QString settingsFile()
{
    return Korvane::getSettingPath(QString(), true, true);
}

QString groupName()
{
    return QStringLiteral("ScadaSummaryWidget");
}

} // namespace

ScadaSummaryWidgetInterface::ScadaSummaryWidgetInterface(QWidget* parent) : QMainWindow(parent, Qt::WindowFlags())
{
    setWindowTitle(tr("Scada Summary"));
    QSettings settings(settingsFile(), QSettings::IniFormat);
    settings.beginGroup(groupName());
    restoreGeometry(settings.value(QStringLiteral("Geometry")).toByteArray());
    restoreState(settings.value(QStringLiteral("State")).toByteArray(), stateVersion);
    settings.endGroup();
}

ScadaSummaryWidgetInterface::~ScadaSummaryWidgetInterface()
{
    QSettings settings(settingsFile(), QSettings::IniFormat);
    settings.beginGroup(groupName());
    settings.setValue(QStringLiteral("Geometry"), saveGeometry());
    settings.setValue(QStringLiteral("State"), saveState(stateVersion));
    settings.endGroup();
}
