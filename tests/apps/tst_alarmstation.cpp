// The operator's side of the alarms in the runtime's window, worked with mouse and keys.

#include "apps/runtime/runtimewindow.h"
#include "host/alarmview/alarmlistmodel.h"
#include "host/canvas/canvasview.h"
#include "host/runtime/livesystem.h"
#include "platform/utility/settingpath.h"
#include "scada/audio/waveplayer.h"
#include "tests/support/heardsound.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/ownsettings.h"
#include "tests/support/soundfiles.h"
#include "tests/support/testproject.h"
#include "tests/support/writtenspeech.h"

#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QLayout>
#include <QMenuBar>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTableView>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>
#include <QtTest>

using Korvane::ScadaObjectType;
using State = ScadaAlarm::State;

namespace {

constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey pump{ScadaObjectType::DigitalPoint, 100001};
constexpr ObjectKey valve{ScadaObjectType::DigitalPoint, 100002};

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// A page with one named label for a tag.
QByteArray pageOf(const char* shape, const char* tag)
{
    return TestProject::json(
        QByteArray("{'format': 'korvane-page', 'version': 1, 'size': [400, 200], 'layers': [{'name':"
                   " 'a', 'shapes': [{'class': 'Label', 'place': [200, 0, 90, 24]}, {'class':"
                   " 'Label', 'name': '") +
        shape + "', 'place': [0, 0, 90, 24], 'actions': [{'type': 1, 'targets': [{'tag': '" + tag + "'}]}]}]}]}");
}

/// A plant with alarms of a level (severity 9, with a popup and a sound), a pump (5) and a valve (3) that no page shows.
class Plant
{
public:
    Plant()
    {
        writeSettings("");
        m_project.write("points.csv", "id,name,kind,high,hysteresis,states,abnormal_state,high_severity,"
                                      "state_severity,alarm_message\n"
                                      "200001,LEVEL,analog,80,1,,,9,,tank overflows\n"
                                      "100001,PUMP,digital,,,Stopped|Runs,0,,5,pump stopped\n"
                                      "100002,VALVE,digital,,,Closed|Open,0,,3,valve closed\n");
        m_project.write("pages/plant.pws", pageOf("level", "LEVEL"));
        m_project.write("pages/second.pws", pageOf("pump", "PUMP:Value"));
        makeSoundFile(m_project.path("long.wav"), 22050, 1, 16, 22050 * 60);
    }
    void writeSettings(const QByteArray& more) const
    {
        m_project.write("project.json",
                        TestProject::json("{'name': 'plant', 'startPage': 'plant', 'timeZone': 'UTC', 'alarms': {"
                                          "'severities': {'9': {'Path': 'long.wav', 'UsePopup': 1}}" +
                                          more + "}}"));
    }
    void open(bool isStored = false)
    {
        system.reset();
        LiveSystem::Options options;
        options.folder = m_project.folder();
        options.source = text("simulation");
        options.machineClock = [this] { return machineMs; };
        options.isStored = isStored;
        auto opened = LiveSystem::open(options);
        if (!opened)
            qFatal("%s", qPrintable(opened.error()));
        system = std::move(*opened);
    }
    void take(ObjectKey object, double value)
    {
        machineMs += 1000;
        system->database().takeSample({object, machineMs, value, 0});
    }
    quint64 standing(ObjectKey object) const
    {
        const auto all = system->alarms().manager().standingOf(object);
        return all.empty() ? 0 : all.front();
    }
    State stateOf(ObjectKey object) const { return system->alarms().manager().alarm(standing(object)).state; }

    qint64 machineMs = 1'600'000'000'000; // 2020-09-13 12:26:40 UTC

private:
    TestProject m_project;

public:
    std::unique_ptr<LiveSystem> system;
};

/// A window of the system with the start page in front.
class Station
{
public:
    explicit Station(LiveSystem& system, bool isSilent = true)
    {
        options.isSilent = isSilent;
        window = std::make_unique<RuntimeWindow>(system, options);
        window->layout()->setSizeConstraint(QLayout::SetNoConstraint); // no hints to pass on to the screen
        const auto page = system.openPage(text("plant"));
        if (!page)
            qFatal("%s", qPrintable(page.error()));
        window->showPage(**page);
        window->show();
        QApplication::setActiveWindow(window.get());
        view().setFocus();
    }

    template <typename T>
    T& part(const char* name) const
    {
        T* found = window->findChild<T*>(QString::fromLatin1(name));
        if (!found)
            qFatal("no %s", name);
        return *found;
    }
    QTabWidget& tabs() const { return part<QTabWidget>("pages"); }
    CanvasView& view() const { return *qobject_cast<CanvasView*>(tabs().currentWidget()); }
    QDockWidget& dock() const { return part<QDockWidget>("alarms"); }
    QTableView& table() const { return part<QTableView>("alarmTable"); }
    QFrame& popup() const { return part<QFrame>("alarmPopup"); }
    QString label(const char* name) const { return part<QLabel>(name).text(); }
    QString selected() const
    {
        const Shape* shape = view().selected();
        return shape ? shape->name() : QString();
    }
    QAction& entry(const char* entryText) const
    {
        for (QMenu* menu : window->menuBar()->findChildren<QMenu*>()) {
            for (QAction* action : menu->actions()) {
                if (action->text().remove(QLatin1Char('&')) == QLatin1String(entryText))
                    return *action;
            }
        }
        qFatal("no entry %s", entryText);
    }
    /// Messages of the alarms in the list, from above.
    QStringList messages() const
    {
        QStringList all;
        for (int row = 0; row < table().model()->rowCount(); ++row)
            all.append(table().model()->index(row, AlarmListOrder::Message).data().toString());
        return all;
    }
    void press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        widget.setFocus();
        QTest::keyClick(&widget, key, modifiers);
    }
    void press(Qt::Key key) const { press(view(), key); }
    void click(const char* button) const { QTest::mouseClick(&part<QPushButton>(button), Qt::LeftButton); }
    /// Shows the list and clicks on the alarm of that message.
    void choose(const char* message) const
    {
        if (!dock().isVisible())
            press(Qt::Key_F5);
        QTRY_VERIFY(messages().contains(text(message)));
        const QModelIndex index = table().model()->index(messages().indexOf(text(message)), AlarmListOrder::Message);
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, table().visualRect(index).center());
    }
    void useTool(const char* action) const
    {
        auto* bar = dock().findChild<QToolBar*>();
        QTest::mouseClick(bar->widgetForAction(&part<QAction>(action)), Qt::LeftButton);
    }
    /// Adds a severity to the list's filter, or takes it away.
    void filterSeverity(const char* severity) const
    {
        QMenu* menu = part<QToolButton>("severities").menu();
        menu->popup({});
        for (QAction* action : menu->actions()) {
            if (action->text() == QLatin1String(severity))
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        }
        menu->close();
    }

    RuntimeOptions options;
    std::unique_ptr<RuntimeWindow> window;
};

/// Each project has a filter of its own.
QString filterKey(const LiveSystem& system)
{
    return text("AlarmList/Filter-") +
           QString::fromLatin1(QUrl::toPercentEncoding(system.project().folder, {}, QByteArrayLiteral("/")));
}

QString keptFilter(const LiveSystem& system)
{
    return QSettings(Korvane::getSettingPath({}, true, true), QSettings::IniFormat).value(filterKey(system)).toString();
}

bool isSounding()
{
    return WavePlayer::instance()->state() == QAudio::ActiveState;
}

} // namespace

class tst_AlarmStation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }
    void init()
    {
        QSettings(Korvane::getSettingPath({}, true, true), QSettings::IniFormat).clear();
        m_plant = std::make_unique<Plant>();
        m_plant->open();
        m_speech.forget();
        m_heard.clear();
    }
    void cleanup()
    {
        m_plant.reset();
        WavePlayer::instance()->reset();
    }

    void theListIsShownByItsKey()
    {
        const Station station(*m_plant->system);
        QVERIFY(!station.dock().isVisible());
        m_plant->take(pump, 0);
        station.press(Qt::Key_F5);
        QVERIFY(station.dock().isVisible());
        QTRY_COMPARE(station.messages(), QStringList{text("pump stopped")});
        m_plant->take(level, 90);
        QTRY_COMPARE(station.messages(), (QStringList{text("tank overflows"), text("pump stopped")}));
        QVERIFY(station.table().model()->index(0, 0).data(Qt::ForegroundRole).value<QBrush>().color() ==
                QColor(0xb7, 0x1c, 0x1c)); // the project's colour
        station.press(station.table(), Qt::Key_F5);
        QVERIFY(!station.dock().isVisible());
    }

    void theLineShowsAndAcknowledges()
    {
        const Station station(*m_plant->system);
        QCOMPARE(station.label("bannerAlarm"), text("No alarm waits."));
        m_plant->take(level, 90);
        m_plant->take(pump, 0);
        QTRY_COMPARE(station.label("bannerAlarm"), text("2020-09-13 12:26:41.000 LEVEL tank overflows"));
        QCOMPARE(station.label("bannerCounts"), text("S9: 1, S5: 1"));
        QCOMPARE(station.part<QLabel>("bannerAlarm").palette().color(QPalette::WindowText), QColor(0xb7, 0x1c, 0x1c));
        station.click("bannerAcknowledge");
        QCOMPARE(m_plant->stateOf(level), State::Acknowledged);
        QCOMPARE(m_plant->stateOf(pump), State::Unacknowledged);
        QCOMPARE(station.label("bannerAlarm"), text("2020-09-13 12:26:42.000 PUMP pump stopped"));
    }

    void theLineOpensTheList()
    {
        const Station station(*m_plant->system);
        station.click("bannerList");
        QVERIFY(station.dock().isVisible());
        QVERIFY(station.entry("Alarm list").isChecked());
        station.click("bannerList"); // shown it stays
        QVERIFY(station.dock().isVisible());
    }

    void theSoundIsSilenced_data()
    {
        QTest::addColumn<QString>("how");
        for (const char* how :
             {"by the line", "by the list's tool bar", "by the menu", "by the key on a page", "by the key in the list"})
            QTest::newRow(how) << text(how);
    }
    void theSoundIsSilenced()
    {
        QFETCH(const QString, how);
        const Station station(*m_plant->system, false);
        m_plant->take(level, 90);
        QTRY_VERIFY(isSounding());
        station.choose("tank overflows");
        QVERIFY(isSounding());
        if (how == text("by the line"))
            station.click("bannerSilence");
        else if (how == text("by the list's tool bar"))
            station.useTool("silence");
        else if (how == text("by the menu"))
            station.entry("Silence").trigger();
        else
            station.press(how == text("by the key in the list") ? static_cast<QWidget&>(station.table())
                                                                : station.view(),
                          Qt::Key_F9);
        QVERIFY(!isSounding());
        QCOMPARE(m_plant->stateOf(level), State::Unacknowledged);
    }

    void theKeyOfSilenceNeedsNoList()
    {
        const Station station(*m_plant->system, false);
        m_plant->take(level, 90);
        QTRY_VERIFY(isSounding());
        QVERIFY(!station.dock().isVisible());
        station.press(Qt::Key_F9);
        QVERIFY(!isSounding());
    }

    void theListsKeysWorkInTheWindow()
    {
        const Station station(*m_plant->system);
        m_plant->take(pump, 0);
        station.choose("pump stopped");
        station.press(station.table(), Qt::Key_F7);
        auto* dialog = station.window->findChild<ShelveDialog*>();
        QVERIFY(dialog);
        QTest::keyClick(dialog, Qt::Key_Escape);
        station.press(station.table(), Qt::Key_F6);
        QCOMPARE(m_plant->stateOf(pump), State::Acknowledged);
    }

    void whatThePageShowsIsAcknowledgedAtOnce()
    {
        const Station station(*m_plant->system);
        m_plant->take(pump, 0);
        m_plant->take(level, 90);
        station.choose("pump stopped");
        station.useTool("acknowledgePage");
        QCOMPARE(m_plant->stateOf(level), State::Acknowledged);
        QCOMPARE(m_plant->stateOf(pump), State::Unacknowledged);
        station.entry("Close").trigger(); // no page is in front
        QVERIFY(!station.part<QAction>("acknowledgePage").isEnabled());
        station.entry("second").trigger();
        QVERIFY(station.part<QAction>("acknowledgePage").isEnabled());
        station.useTool("acknowledgePage");
        QCOMPARE(m_plant->stateOf(pump), State::Acknowledged);
    }

    void severitiesThatAreSetToPopUp()
    {
        const Station station(*m_plant->system);
        m_plant->take(pump, 0);
        QTRY_COMPARE(station.label("bannerAlarm"), text("2020-09-13 12:26:41.000 PUMP pump stopped"));
        QVERIFY(!station.popup().isVisible());
        m_plant->take(level, 90);
        QTRY_VERIFY(station.popup().isVisible());
        QCOMPARE(station.label("popupMessage"), text("tank overflows"));
        station.click("popupAcknowledge");
        QCOMPARE(m_plant->stateOf(level), State::Acknowledged);
        QTRY_VERIFY(!station.popup().isVisible());
        QCOMPARE(m_plant->stateOf(pump), State::Unacknowledged);
    }

    void popupsAreSwitched()
    {
        const Station station(*m_plant->system);
        QAction& popups = station.entry("Popups");
        QVERIFY(popups.isCheckable() && popups.isChecked());
        popups.trigger();
        m_plant->take(level, 90);
        QTRY_COMPARE(station.label("bannerCounts"), text("S9: 1"));
        QVERIFY(!station.popup().isVisible());
        popups.trigger(); // for what comes from now on
        m_plant->take(pump, 0);
        QTRY_COMPARE(station.label("bannerCounts"), text("S9: 1, S5: 1"));
        QVERIFY(!station.popup().isVisible());
        m_plant->take(level, 50);
        m_plant->take(level, 90);
        QTRY_VERIFY(station.popup().isVisible());
    }

    void aProjectMaySwitchPopupsOff()
    {
        m_plant->writeSettings(", 'isPopupShown': false");
        m_plant->open();
        const Station station(*m_plant->system);
        QVERIFY(!station.entry("Popups").isChecked());
        m_plant->take(level, 90);
        QTRY_COMPARE(station.label("bannerCounts"), text("S9: 1"));
        QVERIFY(!station.popup().isVisible());
        station.entry("Popups").trigger();
        m_plant->take(level, 50);
        m_plant->take(level, 90);
        QTRY_VERIFY(station.popup().isVisible());
    }

    void soundsAreSwitched()
    {
        const Station station(*m_plant->system);
        QAction& sounds = station.entry("Alarm sounds");
        QVERIFY(sounds.isCheckable() && !sounds.isChecked()); // silent at first, as it was asked for
        m_plant->take(level, 90);
        QTRY_VERIFY(station.popup().isVisible());
        QVERIFY(!isSounding());
        sounds.trigger();
        QTRY_VERIFY(isSounding());
        sounds.trigger();
        QVERIFY(!isSounding());
        QCOMPARE(m_speech.said(), QStringList());
    }

    void speechIsSwitched()
    {
        const Station station(*m_plant->system);
        QAction& speech = station.entry("Speech");
        QVERIFY(speech.isCheckable() && !speech.isChecked());
        m_plant->take(pump, 0);
        QTRY_COMPARE(station.label("bannerCounts"), text("S5: 1"));
        QCOMPARE(m_speech.said(), QStringList());
        speech.trigger();
        m_plant->take(valve, 0);
        QTRY_COMPARE(m_speech.said(), QStringList{text("ENG valve closed")});
        QVERIFY(m_heard.sounds().isEmpty());
        QCOMPARE(m_plant->system->problems(), QStringList());
        speech.trigger();
        m_plant->take(level, 90);
        QTRY_COMPARE(station.label("bannerCounts"), text("S9: 1, S5: 1, S3: 1"));
        QCOMPARE(m_speech.said().size(), 1);
    }

    void unlessSilentAlarmsAreHeard()
    {
        const Station station(*m_plant->system, false);
        QVERIFY(station.entry("Alarm sounds").isChecked());
        QVERIFY(station.entry("Speech").isChecked());
        m_plant->take(pump, 0); // of a severity without a sound
        QTRY_COMPARE(m_speech.said(), QStringList{text("ENG pump stopped")});
        m_plant->take(level, 90);
        QTRY_VERIFY(isSounding());
    }

    void whatCantBeHeardIsSaid()
    {
        const Station station(*m_plant->system, false);
        QVERIFY(!station.part<QLabel>("bannerNotice").isVisible());
        QVERIFY(QFile::remove(m_plant->system->project().path(text("long.wav"))));
        m_plant->take(level, 90);
        QTRY_VERIFY(station.part<QLabel>("bannerNotice").isVisible());
        QVERIFY(m_plant->system->problems().constLast().contains(
            text("long.wav: there is no such sound file; alarms of severity 9 are shown, not heard")));
    }

    void theListGoesToThePage()
    {
        const Station station(*m_plant->system);
        m_plant->take(pump, 0);
        m_plant->take(level, 90);
        station.choose("tank overflows");
        station.useTool("goToPage"); // the page in front
        QCOMPARE(station.tabs().count(), 1);
        QCOMPARE(station.selected(), text("level"));
        station.choose("pump stopped");
        station.useTool("goToPage");
        QCOMPARE(station.tabs().count(), 2);
        QCOMPARE(m_plant->system->pages().currentCanvas()->canvasName(), text("second"));
        QCOMPARE(station.selected(), text("pump"));
        station.choose("tank overflows");
        station.press(station.table(), Qt::Key_Return); // back, to the tab that is open already
        QCOMPARE(station.tabs().count(), 2);
        QCOMPARE(station.selected(), text("level"));
        QCOMPARE(m_plant->system->problems(), QStringList());
    }

    void thePopupGoesToThePage()
    {
        const Station station(*m_plant->system);
        station.entry("second").trigger();
        m_plant->take(level, 90);
        QTRY_VERIFY(station.popup().isVisible());
        station.click("popupGoToPage");
        QCOMPARE(m_plant->system->pages().currentCanvas()->canvasName(), text("plant"));
        QCOMPARE(station.selected(), text("level"));
    }

    void anObjectOnNoPageIsTold()
    {
        const Station station(*m_plant->system);
        m_plant->take(valve, 0);
        station.choose("valve closed");
        station.useTool("goToPage");
        QCOMPARE(m_plant->system->problems(), QStringList{text("No page shows VALVE")});
        QCOMPARE(station.tabs().count(), 1);
        QCOMPARE(station.selected(), QString());
    }

    void withoutAPageInFrontOneIsOpened()
    {
        const Station station(*m_plant->system);
        station.entry("Close").trigger();
        QCOMPARE(station.tabs().count(), 0);
        station.click("bannerList");
        m_plant->take(pump, 0);
        QTRY_COMPARE(station.messages().size(), 1);
        QTest::mouseClick(station.table().viewport(), Qt::LeftButton, {},
                          station.table().visualRect(station.table().model()->index(0, 0)).center());
        station.useTool("goToPage");
        QCOMPARE(station.tabs().count(), 1);
        QCOMPARE(station.selected(), text("pump"));
    }

    void theFilterIsKept()
    {
        m_plant->take(pump, 0);
        m_plant->take(level, 90);
        {
            const Station station(*m_plant->system);
            station.choose("pump stopped");
            QCOMPARE(keptFilter(*m_plant->system), QString());
            station.filterSeverity("9");
            QTRY_COMPARE(station.messages(), QStringList{text("pump stopped")});
            AlarmDisplayFilterInfo kept;
            kept.fromSettingInfo(keptFilter(*m_plant->system));
            QCOMPARE(kept.severities, (QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
        }
        const Station again(*m_plant->system);
        QCOMPARE(again.messages(), QStringList{text("pump stopped")});
    }

    void whatTheUserSetGoesBeforeTheProject()
    {
        m_plant->writeSettings(", 'filter': {'Severity': [9], 'ShowToolBar': 0}");
        m_plant->open();
        m_plant->take(pump, 0);
        m_plant->take(level, 90);
        {
            const Station station(*m_plant->system);
            station.press(Qt::Key_F5);
            QCOMPARE(station.messages(), QStringList{text("tank overflows")});
            QVERIFY(!station.part<QWidget>("alarmTools").isVisible());
            QCOMPARE(keptFilter(*m_plant->system), QString()); // the user set nothing yet
            station.part<QAction>("showTools").trigger();
            station.filterSeverity("5");
            station.filterSeverity("9");
            QTRY_COMPARE(station.messages(), QStringList{text("pump stopped")});
        }
        const Station again(*m_plant->system);
        again.press(Qt::Key_F5);
        QCOMPARE(again.messages(), QStringList{text("pump stopped")});
        QVERIFY(again.part<QWidget>("alarmTools").isVisible());
    }

    void keptTextThatIsNoneLeavesTheProjects()
    {
        QSettings(Korvane::getSettingPath({}, true, true), QSettings::IniFormat)
            .setValue(filterKey(*m_plant->system), text("{\"Severity\": [5"));
        m_plant->writeSettings(", 'filter': {'Severity': [9]}");
        m_plant->open();
        m_plant->take(pump, 0);
        m_plant->take(level, 90);
        const Station station(*m_plant->system);
        QCOMPARE(station.messages(), QStringList{text("tank overflows")});
    }

    void alarmsOfAnEarlierRunAreShown()
    {
        m_plant->open(true);
        m_plant->take(pump, 0);
        m_plant->take(level, 90);
        m_plant->open(true);
        QCOMPARE(m_plant->system->problems(), QStringList());
        const Station station(*m_plant->system);
        QCOMPARE(station.messages(), (QStringList{text("tank overflows"), text("pump stopped")}));
        QCOMPARE(station.label("bannerAlarm"), text("2020-09-13 12:26:42.000 LEVEL tank overflows"));
        QCOMPARE(station.label("bannerCounts"), text("S9: 1, S5: 1"));
        QVERIFY(!station.popup().isVisible()); // it is no news
        station.click("bannerAcknowledge");
        QCOMPARE(m_plant->stateOf(level), State::Acknowledged);
    }

    void aWindowIsClosedWhileAlarmsStand()
    {
        {
            const Station station(*m_plant->system, false);
            m_plant->take(level, 90);
            QTRY_VERIFY(isSounding());
            QTRY_VERIFY(station.popup().isVisible());
            station.window->close();
        }
        QVERIFY(!isSounding());
        m_plant->take(pump, 0); // the system goes on without a window
        QSignalSpy changed(&m_plant->system->alarms(), &AlarmSystem::changed);
        QVERIFY(changed.wait());
        QCOMPARE(m_plant->stateOf(pump), State::Unacknowledged);
        const Station again(*m_plant->system);
        QCOMPARE(again.messages(), (QStringList{text("tank overflows"), text("pump stopped")}));
    }

    void twoWindowsShowOneSystem()
    {
        const Station first(*m_plant->system);
        const Station second(*m_plant->system);
        m_plant->take(level, 90);
        for (const Station* station : {&first, &second}) {
            QTRY_COMPARE(station->label("bannerAlarm"), text("2020-09-13 12:26:41.000 LEVEL tank overflows"));
            QTRY_COMPARE(station->messages(), QStringList{text("tank overflows")});
            QTRY_VERIFY(station->popup().isVisible());
        }
        second.click("bannerAcknowledge");
        QTRY_COMPARE(first.label("bannerAlarm"), text("No alarm waits."));
        QTRY_VERIFY(!first.popup().isVisible());
        second.click("bannerList");
        QVERIFY(!first.dock().isVisible()); // each has its own
    }

private:
    OwnSettings m_settings;
    HeardSound m_heard; // before the application
    WrittenSpeech m_speech;
    std::unique_ptr<Plant> m_plant;
};

int main(int argc, char** argv)
{
    tst_AlarmStation test;
    const QApplication application(argc, argv);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_alarmstation.moc"
