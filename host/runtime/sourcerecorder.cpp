#include "host/runtime/sourcerecorder.h"

#include "host/sources/recordingwriter.h"

namespace {

constexpr qint64 beginning = 1772438400000; // 2026-03-02 08:00 UTC
constexpr qint64 stepMs = 100;

} // namespace

tl::expected<quint64, QString> recordSource(const LiveSystem::Options& options, const QString& fileName,
                                            std::chrono::milliseconds duration)
{
    qint64 machineMs = beginning;
    LiveSystem::Options recorded = options;
    recorded.machineClock = [&machineMs] { return machineMs; };
    recorded.isStored = false;
    if (const auto address = SourceAddress::parse(options.source);
        address && address->kind == SourceAddress::Kind::StandardInput)
        return tl::make_unexpected(
            QStringLiteral("standard input comes in its own time and can't be recorded at once"));
    const auto system = LiveSystem::open(recorded);
    if (!system)
        return tl::make_unexpected(system.error());
    DataService& service = (*system)->dataService();
    std::vector<SourcePoint> points;
    for (const ObjectKey key : (*system)->database().objects(Korvane::ScadaObjectType::Point)) {
        const RuntimeDatabase::Object* object = (*system)->database().object(key);
        if (object->control.kind != ControlSetting::Kind::Manual) // no source has those
            points.push_back({key, object->name, {}});
    }
    RecordingWriter writer(fileName, points);
    if (const auto opened = writer.open(); !opened)
        return tl::make_unexpected(opened.error());
    for (const auto& source : service.sources()) {
        QObject::connect(source.get(), &ValueSource::delivered,
                         [&writer](const std::vector<Sample>& samples) { writer.write(samples); });
    }
    (*system)->start();
    for (const qint64 end = beginning + duration.count(); machineMs < end; machineMs += stepMs)
        service.tick();
    service.stop();
    if (const auto finished = writer.finish(); !finished)
        return tl::make_unexpected(finished.error());
    return service.figures().samples;
}
