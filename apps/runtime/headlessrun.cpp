#include "apps/runtime/headlessrun.h"

#include "host/actions/canvasactionmanager.h"
#include "host/canvas/canvas.h"
#include "host/canvas/pagepicture.h"
#include "host/canvas/pagerenderer.h"
#include "host/inspection/alarmreport.h"
#include "host/inspection/pointreport.h"
#include "host/runtime/livesystem.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPainter>
#include <QStandardPaths>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <vector>

namespace {

constexpr std::chrono::seconds usualRun{5};

} // namespace

void HeadlessRun::printReport(LiveSystem& system)
{
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    const DataService::Figures& figures = system.dataService().figures();
    out << PointReport::text(system.database());
    out << QStringLiteral("%1 samples taken, %2 ignored, %3 batches, %4 points without a reliable value\n")
               .arg(figures.samples)
               .arg(figures.ignoredSamples)
               .arg(figures.batches)
               .arg(system.dataService().failedPoints());
    constexpr int mostLines = 50;
    out << AlarmReport::text(system.alarms(), mostLines);
}

int HeadlessRun::runBenchmark(Page& page)
{
    const auto* manager = dynamic_cast<const CanvasActionManager*>(page.actions.get());
    PageRenderer renderer(*page.canvas);
    renderer.setView(page.canvas->size().toSize(), 1, {});
    QImage screen(page.canvas->size().toSize(), QImage::Format_RGB32);
    std::vector<double> lagsMs;
    int frames = 0;
    const auto drawing = QObject::connect(&m_system.dataService(), &DataService::batchSent, [&] {
        renderer.render();
        QPainter painter(&screen);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(0, 0, renderer.image());
        ++frames;
        const qint64 newest = m_system.dataService().figures().newestSampleMs;
        if (newest > 0)
            lagsMs.push_back(static_cast<double>(m_system.nowMs() - newest) / m_system.speed());
    });
    page.actions->setShown(true);
    renderer.render();
    m_system.start();
    QTimer::singleShot(m_options.after.value_or(usualRun), QCoreApplication::instance(), &QCoreApplication::quit);
    const quint64 shownBefore = manager->updateCount();
    const std::clock_t begin = std::clock();
    QElapsedTimer elapsed;
    elapsed.start();
    QCoreApplication::exec();
    const double cpuSeconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    const double seconds = static_cast<double>(elapsed.elapsed()) / 1000;
    QObject::disconnect(drawing);

    const quint64 shown = manager->updateCount() - shownBefore;
    QTextStream out(stdout);
    out << QStringLiteral("%1 shapes, %2 s, %3 samples, %4 frames\n")
               .arg(page.canvas->shapeCount())
               .arg(seconds, 0, 'f', 1)
               .arg(m_system.dataService().figures().samples)
               .arg(frames);
    out << QStringLiteral("%1 values shown, %2 us of processor time each, %3 % of a core\n")
               .arg(shown)
               .arg(shown ? cpuSeconds * 1e6 / static_cast<double>(shown) : 0, 0, 'f', 2)
               .arg(cpuSeconds / seconds * 100, 0, 'f', 1);
    if (!lagsMs.empty()) {
        std::sort(lagsMs.begin(), lagsMs.end());
        out << QStringLiteral("from sample to frame: median %1 ms, worst %2 ms\n")
                   .arg(lagsMs[lagsMs.size() / 2], 0, 'f', 0)
                   .arg(lagsMs.back(), 0, 'f', 0);
    }
    return 0;
}

int HeadlessRun::run(Page& page)
{
    page.actions->setShown(true);
    m_system.start();
    QTimer::singleShot(m_options.after.value_or(usualRun), QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();

    printReport(m_system);
    QString picture = m_options.screenshot;
    if (picture.isEmpty())
        picture = QStandardPaths::writableLocation(QStandardPaths::TempLocation) +
                  QStringLiteral("/korvane-%1.png").arg(page.canvas->canvasName());
    if (const auto written = PagePicture::write(*page.canvas, picture, m_options.zoom); !written) {
        QTextStream(stderr) << written.error() << '\n';
        return 1;
    }
    QTextStream(stdout) << QStringLiteral("picture of page \"%1\": %2\n")
                               .arg(page.canvas->canvasName(), QFileInfo(picture).absoluteFilePath());
    return 0;
}
