#include "apps/runtime/headlessrun.h"

#include "host/canvas/canvas.h"
#include "host/canvas/pagerenderer.h"
#include "host/inspection/pointreport.h"
#include "host/runtime/livesystem.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTextStream>
#include <QTimer>

namespace {

constexpr std::chrono::seconds usualRun{5};

} // namespace

void HeadlessRun::printPoints(LiveSystem& system)
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
}

bool HeadlessRun::writePicture(Page& page, const QString& fileName) const
{
    PageRenderer renderer(*page.canvas);
    renderer.setView((page.canvas->size() * m_options.zoom).toSize(), m_options.zoom, {});
    renderer.render();
    return renderer.image().save(fileName);
}

int HeadlessRun::run(Page& page)
{
    page.actions->setShown(true);
    m_system.start();
    QTimer::singleShot(m_options.after.value_or(usualRun), QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();

    printPoints(m_system);
    QString picture = m_options.screenshot;
    if (picture.isEmpty())
        picture = QStandardPaths::writableLocation(QStandardPaths::TempLocation) +
                  QStringLiteral("/korvane-%1.png").arg(page.canvas->canvasName());
    if (!writePicture(page, picture)) {
        QTextStream(stderr) << QStringLiteral("%1: can't be written\n").arg(picture);
        return 1;
    }
    QTextStream(stdout) << QStringLiteral("picture of page \"%1\": %2\n")
                               .arg(page.canvas->canvasName(), QFileInfo(picture).absoluteFilePath());
    return 0;
}
