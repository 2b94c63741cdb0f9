#include "apps/runtime/alarmstation.h"

#include "host/canvas/page.h"
#include "host/runtime/livesystem.h"
#include "host/speech/speechlibraries.h"
#include "platform/utility/settingpath.h"
#include "scada/audio/waveplayer.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QSettings>
#include <QUrl>

namespace {

/// Numbers of areas mean something in their project only.
QString filterKey(const Project& project)
{
    return QStringLiteral("AlarmList/Filter-") +
           QString::fromLatin1(QUrl::toPercentEncoding(project.folder, {}, QByteArrayLiteral("/")));
}

QSettings settings()
{
    return {Korvane::getSettingPath({}, true, true), QSettings::IniFormat};
}

} // namespace

AlarmStation::AlarmStation(LiveSystem& system, QMainWindow& window, bool isSilent)
    : m_system(system),
      m_annunciator(system.alarms().manager(), *WavePlayer::instance(), &system.voice(), system.project().alarms),
      m_dock(new QDockWidget(tr("Alarms"), &window)),
      m_list(new AlarmListWindow(system.alarms(), *system.core().scadaCoreInterface(), system.project().alarms.areas,
                                 m_dock)),
      m_banner(new AlarmBanner(system.alarms().manager(), system.alarms().desk(), &window)),
      m_popup(system.alarms().manager(), system.alarms().desk(), &window)
{
    m_dock->setObjectName(QStringLiteral("alarms"));
    m_dock->setWidget(m_list);
    window.addDockWidget(Qt::BottomDockWidgetArea, m_dock);
    m_dock->hide();
    const AlarmDataInfo& severities = system.project().alarms.severities;
    m_list->setPresentation(severities);
    m_banner->setPresentation(severities);
    m_popup.setPresentation(severities);
    loadFilter();
    connect(m_list, &AlarmListWindow::settingsChanged, this, &AlarmStation::keepFilter);
    connect(m_list, &AlarmListWindow::silenceRequested, this, &AlarmStation::silence);
    connect(m_list, &AlarmListWindow::pageRequested, this, &AlarmStation::pageRequested);
    connect(&m_popup, &AlarmPopup::pageRequested, this, &AlarmStation::pageRequested);
    connect(m_banner, &AlarmBanner::silenceRequested, this, &AlarmStation::silence);
    connect(m_banner, &AlarmBanner::listRequested, this, &AlarmStation::showList);
    connect(&m_annunciator, &AlarmAnnunciator::noticeChanged, m_banner, &AlarmBanner::setNotice);
    connect(&m_annunciator, &AlarmAnnunciator::problemFound, &system, &LiveSystem::addProblem);
    RuntimeManager& manager = system.control().manager();
    connect(&manager, &RuntimeManager::silenced, &m_annunciator, &AlarmAnnunciator::silence);
    for (const auto changed : {&DatabaseManager::loggedOn, &DatabaseManager::loggedOff})
        connect(&system.control().users(), changed, this, &AlarmStation::heedSession);
    if (isSilent) {
        m_annunciator.setMuted(true);
        m_annunciator.setSpeechOn(false);
    }
    prepareVoice();
    if (!isSilent)
        m_annunciator.checkSounds();
    heedSession();
}

AlarmStation::~AlarmStation() = default;

void AlarmStation::silence()
{
    m_system.control().manager().silence();
}

void AlarmStation::heedSession()
{
    m_list->setUserAreas(m_system.control().manager().areas());
    // The line and the sounds stay: an alarm calls for whoever is near.
    const bool isSomebodyHere =
        !m_system.project().isSecured || m_system.control().users().currentAccount().has_value();
    m_dock->toggleViewAction()->setEnabled(isSomebodyHere);
    if (!isSomebodyHere)
        m_dock->hide();
}

// A project whose alarms are not spoken needs no voice.
void AlarmStation::prepareVoice()
{
    if (!m_annunciator.isSpeechOn())
        return;
    for (const SpeechLibraries::Found& voice : SpeechLibraries::prepare()) {
        if (!voice.problem.isEmpty()) {
            const QString language = voice.language == QLocale::Korean ? tr("Korean") : tr("English");
            m_annunciator.addNotice(
                tr("No voice for %1: %2; alarms are shown, not spoken").arg(language, voice.problem));
        }
    }
}

void AlarmStation::fillMenu(QMenu& menu)
{
    QAction* list = m_dock->toggleViewAction();
    list->setText(tr("Alarm &list"));
    list->setShortcut(Qt::Key_F5);
    menu.addAction(list);
    QAction* silence = m_list->silenceAction();
    silence->setShortcutContext(Qt::WindowShortcut); // whether the list is shown or not
    menu.addAction(silence);
    menu.addSeparator();
    const auto addSwitch = [&](const QString& text, bool isOn, auto change) {
        QAction* action = menu.addAction(text);
        action->setCheckable(true);
        action->setChecked(isOn);
        connect(action, &QAction::toggled, this, change);
    };
    addSwitch(tr("Alarm s&ounds"), !m_annunciator.isMuted(), [this](bool isOn) { m_annunciator.setMuted(!isOn); });
    addSwitch(tr("Sp&eech"), m_annunciator.isSpeechOn(), [this](bool isOn) {
        m_annunciator.setSpeechOn(isOn);
        prepareVoice();
    });
    addSwitch(tr("&Popups"), m_system.project().alarms.severities.isPopupShown(), [this](bool isOn) {
        AlarmDataInfo severities = m_system.project().alarms.severities;
        severities.setPopupShown(isOn);
        m_popup.setPresentation(severities);
    });
}

void AlarmStation::setPage(const Page* page)
{
    m_list->setPage(page ? page->actions.get() : nullptr);
}

void AlarmStation::showList()
{
    m_dock->show();
    m_dock->raise();
    m_list->setFocus();
}

// What this user set goes before what the project states.
void AlarmStation::loadFilter()
{
    AlarmDisplayFilterInfo filter = m_system.project().alarms.filter;
    const QString kept = settings().value(filterKey(m_system.project())).toString();
    if (!kept.isEmpty())
        filter.fromSettingInfo(kept);
    m_list->applyFilter(filter);
}

void AlarmStation::keepFilter(const QString& text) const
{
    settings().setValue(filterKey(m_system.project()), text);
}
