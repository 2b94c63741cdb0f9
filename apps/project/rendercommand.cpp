#include "apps/project/commandline.h"
#include "apps/project/commands.h"
#include "apps/support/program.h"
#include "host/canvas/pagepicture.h"
#include "host/design/designdocument.h"
#include "host/design/designsystem.h"
#include "host/runtime/livesystem.h"

#include <QEventLoop>
#include <QTimer>

namespace {

constexpr std::chrono::seconds longestWait{10}; ///< for the first values

struct Picture
{
    QString page;
    QString file;
    double zoom = 1;
};

using Done = tl::expected<void, QString>;

Done drawAsStored(const QString& folder, const Picture& picture)
{
    const auto system = DesignSystem::open(folder);
    if (!system)
        return tl::make_unexpected(system.error());
    const auto document = (*system)->openPage(picture.page);
    if (!document)
        return tl::make_unexpected(document.error());
    for (const QString& problem : (*document)->page().problems)
        Program::complain(problem);
    return PagePicture::write((*document)->canvas(), picture.file, picture.zoom);
}

Done drawWithValues(const QString& folder, const QString& source, const Picture& picture)
{
    LiveSystem::Options options;
    options.folder = folder;
    options.source = source;
    options.isStored = false;
    const auto system = LiveSystem::open(options);
    if (!system)
        return tl::make_unexpected(system.error());
    const auto page = (*system)->openPage(picture.page);
    if (!page)
        return tl::make_unexpected(page.error());
    QEventLoop waiting;
    const DataService& service = (*system)->dataService();
    QObject::connect(&service, &DataService::batchSent, &waiting, [&] {
        if (service.figures().samples > 0)
            waiting.quit();
    });
    QTimer::singleShot(longestWait, &waiting, &QEventLoop::quit);
    (*page)->actions->setShown(true);
    (*system)->start();
    waiting.exec();
    if (service.figures().samples == 0)
        return tl::make_unexpected(QStringLiteral("%1: no values came").arg(source));
    return PagePicture::write(*(*page)->canvas, picture.file, picture.zoom);
}

} // namespace

int Commands::render(const QStringList& arguments)
{
    CommandLine line("render", "Draws a page into a file.");
    line.addArgument("page", "Name of the page.");
    line.addFolder();
    line.addOption("o output", "The file: .pdf and .svg for vectors, .png and others for an image. Needed.", "file");
    line.addOption("zoom", "Size of the picture, 0.1 to 8; 1 for the page's own.", "factor");
    line.addOption("source", "Where values come from, as the runtime takes it; without it the page shows none.",
                   "address");
    if (const auto ended = line.parse(arguments))
        return *ended;
    Picture picture{line.argument(0), line.value("output")};
    bool isZoom = true;
    if (line.isSet("zoom"))
        picture.zoom = line.value("zoom").toDouble(&isZoom);
    if (picture.file.isEmpty() || !isZoom || !(picture.zoom >= 0.1 && picture.zoom <= 8)) {
        Program::complain(picture.file.isEmpty()
                              ? QStringLiteral("-o FILE says where the picture goes; --help tells more")
                              : QStringLiteral("--zoom: a factor from 0.1 to 8"));
        return ExitCode::wrongUsage;
    }
    const Done done = line.isSet("source") ? drawWithValues(line.folder(), line.value("source"), picture)
                                           : drawAsStored(line.folder(), picture);
    if (!done)
        Program::complain(done.error());
    return done ? ExitCode::fine : ExitCode::failed;
}
