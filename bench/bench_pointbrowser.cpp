// The point browser's filter among 100,000 points in 200 stations, keystroke by keystroke: the tree alone beside a
// plain loop over the names, then the whole dialog until it is painted.

#include "bench/support/ratioreport.h"
#include "platform/data/pointdirectory.h"
#include "platform/ui/pointbrowserdialog.h"
#include "platform/ui/pointtreemodel.h"
#include "tests/support/ownsettings.h"

#include <QApplication>
#include <QLineEdit>

#include <vector>

namespace {

constexpr int stationCount = 200;
constexpr int pointsInEach = 500;

/// "ST042.PUMP_07.FLOW_3" in "Station 42", "Flow 3 behind pump 7".
std::vector<PointDirectory::Station> makeStations()
{
    std::vector<PointDirectory::Station> stations;
    qint32 id = Korvane::firstAnalogPointId;
    for (int s = 0; s < stationCount; ++s) {
        PointDirectory::Station station{QStringLiteral("Station %1").arg(s), {}};
        for (int i = 0; i < pointsInEach; ++i) {
            const QString name = QStringLiteral("ST%1.PUMP_%2.FLOW_%3")
                                     .arg(s, 3, 10, QLatin1Char('0'))
                                     .arg(i / 10, 2, 10, QLatin1Char('0'))
                                     .arg(i % 10);
            const QString description = QStringLiteral("Flow %1 behind pump %2").arg(i % 10).arg(i / 10);
            station.objects.push_back({{Korvane::ScadaObjectType::AnalogPoint, id++}, name, description});
        }
        stations.push_back(std::move(station));
    }
    return stations;
}

const std::vector<PointDirectory::Station>& stations()
{
    static const std::vector<PointDirectory::Station> all = makeStations();
    return all;
}

class Directory : public PointDirectory
{
public:
    Directory() { registerDirectory(this); }
    ObjectKey findPoint(QStringView) const override { return {}; }
    std::vector<Station> stations() const override { return ::stations(); }
};

/// A text in the filter and the one that the keystroke makes of it.
struct Keystroke
{
    const char* name;
    const char* before;
    const char* after;
};
constexpr Keystroke keystrokes[] = {
    {"the first letter", "", "p"},
    {"the third letter", "pu", "pum"},
    {"few are left", "pump_07.flow_", "pump_07.flow_3"},
    {"no match", "pump_", "pump_x"},
    {"clearing", "pump_07.flow_3", ""},
};

void filterTree(benchmark::State& state, Keystroke keystroke)
{
    PointTreeModel tree(stations(), Korvane::BrowseType::AnalogPoints);
    for (auto _ : state) {
        state.PauseTiming();
        tree.setFilter(QLatin1String(keystroke.before));
        state.ResumeTiming();
        tree.setFilter(QLatin1String(keystroke.after));
        int shown = tree.shownCount();
        benchmark::DoNotOptimize(shown);
    }
    korvaneRatioLimit(state, 1.5);
}

void filterPlainly(benchmark::State& state, Keystroke keystroke)
{
    const QString text = QLatin1String(keystroke.after);
    for (auto _ : state) {
        int shown = 0;
        for (const PointDirectory::Station& station : stations()) {
            for (const PointDirectory::Entry& object : station.objects)
                shown += object.name.contains(text, Qt::CaseInsensitive) ? 1 : 0;
        }
        benchmark::DoNotOptimize(shown);
    }
}

void strikeKey(benchmark::State& state, Keystroke keystroke)
{
    const Directory directory;
    PointBrowserDialog dialog(nullptr, Qt::Window, Korvane::BrowseType::AnalogPoints, nullptr);
    dialog.show();
    auto* filter = dialog.findChild<QLineEdit*>();
    for (auto _ : state) {
        state.PauseTiming();
        filter->setText(QLatin1String(keystroke.before));
        QCoreApplication::processEvents();
        state.ResumeTiming();
        filter->setText(QLatin1String(keystroke.after));
        QCoreApplication::processEvents();
    }
}

void openDialog(benchmark::State& state)
{
    const Directory directory;
    for (auto _ : state) {
        PointBrowserDialog dialog(nullptr, Qt::Window, Korvane::BrowseType::AnalogPoints, nullptr);
        dialog.show();
        QCoreApplication::processEvents();
    }
}

void ignore(QtMsgType, const QMessageLogContext&, const QString&)
{
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(ignore); // the screen that is none remarks on every window
    const QApplication application(argc, argv);
    const OwnSettings settings;
    for (const Keystroke& keystroke : keystrokes) {
        const std::string name = std::string("filter 100,000 points, ") + keystroke.name;
        benchmark::RegisterBenchmark(name.c_str(), filterTree, keystroke);
        if (*keystroke.after)
            benchmark::RegisterBenchmark((name + " (plain)").c_str(), filterPlainly, keystroke);
    }
    for (const Keystroke& keystroke : keystrokes) {
        const std::string name = std::string("keystroke until painted, ") + keystroke.name;
        benchmark::RegisterBenchmark(name.c_str(), strikeKey, keystroke);
    }
    benchmark::RegisterBenchmark("open the browser", openDialog);
    return korvaneBenchmarkMain(argc, argv);
}
