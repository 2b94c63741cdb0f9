// From the sample that crosses a limit to the first sound sample that reaches the device, written through ALSA's file
// plugin, beside the same sound on an output that is started at once: worst and median of some alarms. Times of this
// machine; the difference is what alarms add to Qt's audio.

#include "host/alarms/alarmannunciator.h"
#include "host/alarms/alarmmanager.h"
#include "host/alarms/korvanescadaalarmprocessor.h"
#include "host/runtime/runtimedatabase.h"
#include "scada/audio/waveplayer.h"
#include "tests/support/heardsound.h"

#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int rounds = 15;
constexpr ObjectKey flow{Korvane::ScadaObjectType::AnalogPoint, 200001};

QString soundFile()
{
    return QStringLiteral(KORVANE_SOURCE_DIR "/demo/water-loop/sounds/urgent.wav");
}

/// Milliseconds until the device has a sample, after \p start.
template <typename Start>
double untilHeard(const HeardSound& heard, const Start& start)
{
    heard.clear();
    QElapsedTimer timer;
    timer.start();
    start();
    while (heard.samples().isEmpty())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

void print(const char* what, std::vector<double>& times)
{
    std::sort(times.begin(), times.end());
    std::printf("%-44s median %6.1f ms, worst %6.1f ms\n", what, times[times.size() / 2], times.back());
}

std::vector<double> outputAlone(const HeardSound& heard)
{
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        WavePlayer player;
        times.push_back(untilHeard(heard, [&] { player.play(soundFile()); }));
    }
    return times;
}

std::vector<double> alarms(const HeardSound& heard)
{
    RuntimeDatabase database;
    RuntimeDatabase::Object object;
    object.type = flow.type;
    object.id = flow.id;
    object.name = QStringLiteral("FLOW");
    object.high = 100;
    object.alarm.severities[AlarmSetting::placeOf(ScadaAlarm::Cause::High)] = 8;
    if (!database.add(object))
        return {};
    AlarmManager manager(&QDateTime::currentDateTimeUtc);
    KorvaneScadaAlarmProcessor processor(database, manager);
    processor.watchAll();
    AlarmPresentation presentation;
    presentation.severities.setSoundPath(8, soundFile());
    presentation.severities.setSpeechOn(false);
    std::vector<double> times;
    qint64 timeMs = 0;
    for (int round = 0; round < rounds; ++round) {
        WavePlayer player;
        AlarmAnnunciator annunciator(manager, player, nullptr, presentation);
        times.push_back(untilHeard(heard, [&] { database.takeSample({flow, ++timeMs, 101, 0}); }));
        database.takeSample({flow, ++timeMs, 99, 0});
        manager.acknowledge(manager.standing(flow, ScadaAlarm::Cause::High), {});
    }
    return times;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const HeardSound heard;
    const QApplication application(argc, argv);
    auto alone = outputAlone(heard);
    auto raised = alarms(heard);
    print("player alone, to the first sample", alone);
    print("sample beyond its limit, to the first sample", raised);
    return 0;
}
