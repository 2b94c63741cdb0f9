// The project tool on a large project: 500 pages of 1,000 shapes each. How long it takes to check it, and to rename a point
// that every page shows, beside the time that reading all files takes.

#include "host/checking/projectcheck.h"
#include "host/core/project.h"
#include "host/projectfiles/filechanges.h"
#include "host/projectfiles/objectrenamer.h"
#include "host/projectfiles/taguses.h"
#include "host/runtime/pointlist.h"
#include "scada/binding/objecttarget.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <ctime>

namespace {

constexpr int pageCount = 500;
constexpr int shapeCount = 1000; ///< of a page
constexpr int pointCount = 10000;
constexpr double checkLimit = 10; // seconds
constexpr double renameLimit = 5;

QByteArray nameOf(int point)
{
    return "PLANT.UNIT_" + QByteArray::number(point) + ".VALUE";
}

void write(const QString& name, const QByteArray& bytes)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s: %s", qPrintable(name), qPrintable(file.errorString()));
}

/// A read-out; every tenth one has a rule besides, every twentieth a script.
QByteArray shapeText(int page, int shape)
{
    const QByteArray tag = nameOf(shape == 0 ? 0 : (page * shapeCount + shape) % pointCount);
    const QByteArray record = ObjectTarget::fromTagString(QString::fromLatin1(tag)).makeByteStream().toBase64();
    QByteArray text =
        "  {\n   \"class\": \"ReadOut\",\n   \"name\": \"r" + QByteArray::number(shape) + "\",\n   \"place\": [" +
        QByteArray::number(shape % 40 * 40) + ", " + QByteArray::number(shape / 40 * 20) +
        ", 38, 18],\n   \"properties\": {\n    \"FontSize\": 9,\n    \"Decimals\": 1\n   },\n   \"actions\": [{\n"
        "     \"type\": 2,\n     \"version\": 911,\n     \"targets\": [{\n       \"tag\": \"" +
        tag + "\",\n       \"record\": \"" + record + "\"\n      }],\n     \"settings\": {}\n    }";
    if (shape % 10 == 0) {
        text += ", {\n     \"type\": 4,\n     \"version\": 911,\n     \"rules\": [{\n       \"when\": [{\n         "
                "\"tag\": \"" +
                tag +
                "\",\n         \"operator\": \">\",\n         \"bound\": \"100\"\n        }],\n       \"set\": {\n"
                "        \"FillColor\": \"#c0392b\"\n       }\n      }],\n     \"settings\": {}\n    }";
    }
    text += "]";
    if (shape % 20 == 0) {
        text += ",\n   \"events\": [{\n     \"trigger\": 8,\n     \"type\": 1001,\n     \"script\": [\n      \"level = "
                "tags.read(\\\"" +
                tag + "\\\")\",\n      \"log.info(\\\"%s\\\" % level)\"\n     ]\n    }]";
    }
    return text + "\n  }";
}

void writeProject(const QString& folder)
{
    QDir().mkpath(folder + QStringLiteral("/pages"));
    write(folder + QStringLiteral("/project.json"), "{\"version\": 1, \"startPage\": \"page0\"}");
    QByteArray points = "id,name,kind\n";
    for (int point = 0; point < pointCount; ++point)
        points += QByteArray::number(Korvane::firstAnalogPointId + point) + ',' + nameOf(point) + ",analog\n";
    write(folder + QStringLiteral("/points.csv"), points);
    for (int page = 0; page < pageCount; ++page) {
        QByteArray text =
            "{\n \"format\": \"korvane-page\",\n \"version\": 1,\n \"layers\": [{\"name\": \"all\", \"shapes\": [\n";
        for (int shape = 0; shape < shapeCount; ++shape)
            text += shapeText(page, shape) + (shape + 1 < shapeCount ? ",\n" : "\n");
        write(folder + QStringLiteral("/pages/page%1.pws").arg(page), text + "]}]}\n");
    }
}

/// How long something takes; what other programs took of the machine meanwhile only counts as passed.
class Stopwatch
{
public:
    Stopwatch() : m_begin(std::clock()) { m_passed.start(); }
    double busySeconds() const { return static_cast<double>(std::clock() - m_begin) / CLOCKS_PER_SEC; }
    double passedSeconds() const { return static_cast<double>(m_passed.nsecsElapsed()) / 1e9; }

private:
    std::clock_t m_begin;
    QElapsedTimer m_passed;
};

void readAll(const Project& project)
{
    const Stopwatch watch;
    qint64 bytes = 0;
    for (const QString& page : project.pages()) {
        QFile file(project.pageFile(page));
        if (file.open(QIODevice::ReadOnly))
            bytes += file.readAll().size();
    }
    std::printf("reading %d pages of %d shapes, %lld MB: %.2f s\n", pageCount, shapeCount,
                static_cast<long long>(bytes >> 20), watch.busySeconds());
}

bool check(const QString& folder)
{
    const Stopwatch watch;
    const std::size_t found = ProjectCheck::run(folder).size();
    const double taken = watch.busySeconds();
    std::printf("check: %.2f s (at most %.0f), %.2f s passed, %zu findings\n", taken, checkLimit, watch.passedSeconds(),
                found);
    return found == 0 && taken < checkLimit;
}

bool rename(const Project& project, RuntimeDatabase& database)
{
    const Stopwatch watch;
    const auto asked = ObjectRenamer::ask(database, QString::fromLatin1(nameOf(0)), QStringLiteral("RENAMED"));
    const auto changes = FileChanges::begin(project.folder);
    if (!asked || !changes)
        qFatal("the point can't be renamed");
    const auto result = ObjectRenamer::run(project, *asked, changes->get());
    if (!result || !(*changes)->commit(QStringLiteral("rename")))
        qFatal("the point was not renamed");
    const double taken = watch.busySeconds();
    std::printf("rename: %.2f s (at most %.0f), %.2f s passed, %zu places in %zu files\n", taken, renameLimit,
                watch.passedSeconds(), result->changes.size(), (*changes)->count());
    return taken < renameLimit;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QTemporaryDir folder;
    writeProject(folder.path());
    const auto project = Project::read(folder.path());
    RuntimeDatabase database;
    if (!project || !PointList::load(project->pointFile(), database))
        qFatal("the project can't be read");
    readAll(*project);
    bool isFast = check(folder.path());
    const Stopwatch watch;
    const std::size_t uses =
        TagUse::of(*project, database, database.findPoint(QString::fromLatin1(nameOf(0)))).uses.size();
    std::printf("where-used: %.2f s, %zu places\n", watch.busySeconds(), uses);
    isFast &= rename(*project, database);
    return isFast ? 0 : 1;
}
