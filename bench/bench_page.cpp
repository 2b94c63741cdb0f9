// A page of 10,000 bound read-outs, 1920 x 1080, off screen: from a batch to the finished frame.
// - paint floor: one image, drawText of the changed values alone, copied to the view;
// - opening and closing the page, and the memory of a bound shape.
// Changed shapes are scattered. The argument is the share of them that changes with a batch, in percent.

#include "bench/support/ratioreport.h"
#include "host/actions/canvasactionmanagerfactory.h"
#include "host/canvas/pagereader.h"
#include "host/canvas/pagerenderer.h"
#include "host/canvas/pagewriter.h"
#include "host/core/korvanecore.h"
#include "host/runtime/dataservice.h"
#include "host/runtime/runtimedatabase.h"

#include <QApplication>
#include <QPainter>

#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <random>

namespace {

constexpr int columns = 100;
constexpr int rows = 100;
constexpr int shapeCount = columns * rows;
constexpr QSize view{1920, 1080};
constexpr quint32 firstId = 200001;

QRectF placeOf(int number)
{
    const double width = double(view.width()) / columns;
    const double height = double(view.height()) / rows;
    return {std::floor(number % columns * width), std::floor(number / columns * height), 18, 10};
}

RuntimeDatabase& database()
{
    static RuntimeDatabase all;
    if (all.count(Korvane::ScadaObjectType::Point) == 0) {
        for (int number = 0; number < shapeCount; ++number) {
            const auto added = all.add({Korvane::ScadaObjectType::AnalogPoint, qint32(firstId) + number,
                                        QStringLiteral("PLANT.UNIT_%1.VALUE").arg(number, 5, 10, QLatin1Char('0'))});
            if (!added)
                qFatal("%s", qPrintable(added.error()));
        }
    }
    return all;
}

QByteArray pageText()
{
    QByteArray text = R"({"format":"korvane-page","version":1,"size":[1920,1080],"layers":[{"name":"all","shapes":[)";
    for (int number = 0; number < shapeCount; ++number) {
        const QRectF place = placeOf(number);
        text += QStringLiteral(
                    R"({"class":"ReadOut","name":"r%1","place":[%2,%3,%4,%5],"properties":{"FontSize":7,"Decimals":1},)"
                    R"("actions":[{"type":2,"version":911,"targets":[{"tag":"PLANT.UNIT_%6.VALUE"}],"settings":{}}]},)")
                    .arg(number)
                    .arg(place.x())
                    .arg(place.y())
                    .arg(place.width())
                    .arg(place.height())
                    .arg(number, 5, 10, QLatin1Char('0'))
                    .toUtf8();
    }
    text.chop(1);
    return text + "]}]}";
}

Page openPage(const QByteArray& text)
{
    static CanvasActionManagerFactory managers(nullptr);
    auto page = PageReader(managers, &database()).read(text, QStringLiteral("page.pws"));
    if (!page)
        qFatal("%s", qPrintable(page.error()));
    page->actions->open(&database());
    return std::move(*page);
}

/// Batches in which the share of the points changes, each to another value than before.
std::vector<MwDataDepartment> batches(int percent)
{
    std::vector<quint32> ids(shapeCount);
    std::iota(ids.begin(), ids.end(), firstId);
    std::mt19937 random(1);
    std::vector<MwDataDepartment> made(8);
    for (std::size_t number = 0; number < made.size(); ++number) {
        std::shuffle(ids.begin(), ids.end(), random);
        for (int place = 0; place < shapeCount * percent / 100; ++place) {
            QuorixData record;
            record.setMember("value", double(random() % 900) / 10 + 10);
            made[number].points.emplace(ids[std::size_t(place)], record);
        }
    }
    return made;
}

void blit(QImage& to, const QImage& from)
{
    QPainter painter(&to);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, 0, from);
}

void BatchToFrame(benchmark::State& state)
{
    Page page = openPage(pageText());
    PageRenderer renderer(*page.canvas);
    renderer.setView(view, 1, {});
    renderer.render();
    QImage screen(view, QImage::Format_RGB32);
    const auto all = batches(int(state.range(0)));
    std::size_t turn = 0;
    for (auto _ : state) {
        page.actions->takeBatch(all[turn++ % all.size()]);
        renderer.render();
        blit(screen, renderer.image());
    }
    korvaneItems(state, 1);
    korvaneRatioLimit(state, 1.5);
}
BENCHMARK(BatchToFrame)->Name("batch to frame, 10,000 shapes")->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

void PaintFloor(benchmark::State& state)
{
    QImage image(view, QImage::Format_RGB32);
    image.fill(Qt::white);
    QImage screen(view, QImage::Format_RGB32);
    const auto all = batches(int(state.range(0)));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(7);
    std::size_t turn = 0;
    for (auto _ : state) {
        {
            QPainter painter(&image);
            painter.setFont(font);
            for (const auto& [id, record] : all[turn++ % all.size()].points) {
                const QRectF place = placeOf(int(id - firstId));
                painter.fillRect(place, Qt::white);
                painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter,
                                 QString::number(record.GetValue("value")->toDouble(), 'f', 1));
            }
        }
        blit(screen, image);
    }
    korvaneItems(state, 1);
}
BENCHMARK(PaintFloor)->Name("batch to frame, 10,000 shapes (plain)")->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

void IdleBatch(benchmark::State& state)
{
    Page page = openPage(pageText());
    PageRenderer renderer(*page.canvas);
    renderer.setView(view, 1, {});
    const auto all = batches(10);
    page.actions->takeBatch(all[0]);
    renderer.render();
    for (auto _ : state) {
        page.actions->takeBatch(all[0]);
        benchmark::DoNotOptimize(renderer.render());
    }
    korvaneItems(state, 1000);
}
BENCHMARK(IdleBatch)->Name("a value that did not change");

void OpenAndClose(benchmark::State& state)
{
    const QByteArray text = pageText();
    for (auto _ : state)
        openPage(text);
    korvaneItems(state, 1);
}
BENCHMARK(OpenAndClose)->Name("open and close a page of 10,000 shapes")->Unit(benchmark::kMillisecond);

void Close(benchmark::State& state)
{
    const QByteArray text = pageText();
    for (auto _ : state) {
        state.PauseTiming();
        auto page = std::make_unique<Page>(openPage(text));
        state.ResumeTiming();
        page.reset();
    }
    korvaneItems(state, 1);
}
BENCHMARK(Close)->Name("close a page of 10,000 shapes")->Unit(benchmark::kMillisecond);

void ServiceSamples(benchmark::State& state)
{
    struct Source : ValueSource
    {
        QString description() const override { return {}; }
        std::vector<ObjectKey> objects() const override { return {}; }
        void start(qint64) override {}
        void advance(qint64) override {}
    };
    qint64 now = 1'600'000'000'000;
    RuntimeDatabase points;
    for (int number = 0; number < shapeCount; ++number) {
        const auto added = points.add(
            {Korvane::ScadaObjectType::AnalogPoint, qint32(firstId) + number, QStringLiteral("P%1").arg(number)});
        if (!added)
            qFatal("%s", qPrintable(added.error()));
    }
    KorvaneCore core([&now] { return QDateTime::fromMSecsSinceEpoch(now, Qt::UTC); });
    DataService service(points, *core.scadaCoreInterface());
    auto source = std::make_unique<Source>();
    Source* feed = source.get();
    service.addSource(std::move(source));
    std::vector<Sample> samples(50'000);
    std::mt19937 random(1);
    for (auto _ : state) {
        now += 50;
        for (Sample& sample : samples)
            sample = {{Korvane::ScadaObjectType::AnalogPoint, qint32(firstId + random() % shapeCount)},
                      now,
                      double(random() % 100)};
        Q_EMIT feed->delivered(samples);
        service.tick();
    }
    korvaneItems(state, samples.size());
}
BENCHMARK(ServiceSamples)->Name("a sample through the data service");

void printMemory()
{
    const QByteArray text = pageText();
    openPage(text); // what is made once only
    malloc_trim(0);
    const auto before = mallinfo2().uordblks;
    auto page = std::make_unique<Page>(openPage(text));
    const auto open = mallinfo2().uordblks;
    page.reset();
    const auto closed = mallinfo2().uordblks;
    std::printf("memory of a bound shape: %zu bytes (at most 2048); kept after closing the page: %.1f bytes a shape\n",
                (open - before) / shapeCount, (double(closed) - double(before)) / shapeCount);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int result = korvaneBenchmarkMain(argc, argv);
    printMemory();
    return result;
}
