// Dispatching a batch to the single-target actions of a page, against the two things one could do instead:
// - a look-up in a flat hash map and a QVariant compare for each binding, no virtual call;
// - what most applications do: a QObject for each tag, found by id as values come, that signals to one receiver.
// Actions and objects are made in random order of their ids. Dispatching includes pushing changed values onto the shape.

#include "bench/support/ratioreport.h"
#include "platform/data/mwdatadepartment.h"
#include "scada/binding/objecttarget.h"
#include "scada/binding/scadatagactioninterface.h"

#include <QHash>
#include <QObject>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr quint32 firstId = 200001;

/// An action as hosts write them, of any number of targets.
class BoundAction final : public ScadaTagActionInterface
{
public:
    explicit BoundAction(const std::vector<quint32>& ids)
    {
        for (const quint32 id : ids)
            m_targets.push_back(ObjectTarget::fromTagString(QStringLiteral("#%1").arg(id)));
        resolve(nullptr);
    }

    int type() const override { return 1; }
    QString name() const override { return {}; }
    ScadaTagActionInterface* clone(TesselInterface*) const override { return new BoundAction(*this); }
    bool isEqual(const ScadaTagActionInterface&) const override { return false; }
    void toStream(ScadaTagActionStream&) const override {}
    void applyToShape(bool) override {}
    void collectTargets(QList<ObjectTarget*>& out) override
    {
        for (ObjectTarget& target : m_targets)
            out.append(&target);
    }
    void copyTargets(QList<ObjectTarget>& out) override
    {
        for (const ObjectTarget& target : m_targets)
            out.append(target);
    }

private:
    std::vector<ObjectTarget> m_targets;
};

/// The least a single-target action needs.
class OneTarget final : public ScadaTagActionInterface
{
public:
    explicit OneTarget(quint32 id) : m_target(ObjectTarget::fromTagString(QStringLiteral("#%1").arg(id)))
    {
        m_target.resolve(nullptr);
    }

    int type() const override { return 1; }
    QString name() const override { return {}; }
    ScadaTagActionInterface* clone(TesselInterface*) const override { return new OneTarget(*this); }
    bool isEqual(const ScadaTagActionInterface&) const override { return false; }
    void toStream(ScadaTagActionStream&) const override {}
    void applyToShape(bool) override {}
    void collectTargets(QList<ObjectTarget*>& out) override { out.append(&m_target); }
    void copyTargets(QList<ObjectTarget>& out) override { out.append(m_target); }

private:
    ObjectTarget m_target;
};

/// A tag as an object: sets its value and tells its one receiver when it changed.
class TagObject : public QObject
{
    Q_OBJECT

public:
    void setValue(const QVariant& value)
    {
        if (m_value == value)
            return;
        m_value = value;
        Q_EMIT valueChanged(value);
    }

Q_SIGNALS:
    void valueChanged(const QVariant& value);

private:
    QVariant m_value;
};

class Receiver : public QObject
{
    Q_OBJECT

public:
    void take(const QVariant& value) { m_value = value; }

private:
    QVariant m_value;
};

std::vector<quint32> idsInRandomOrder(std::size_t count)
{
    std::vector<quint32> ids(count);
    for (std::size_t i = 0; i < count; ++i)
        ids[i] = firstId + static_cast<quint32>(i);
    std::shuffle(ids.begin(), ids.end(), std::mt19937(3));
    return ids;
}

/// Two batches of all ids, between which a share of the values (in percent) differs.
struct Batches
{
    Batches(std::size_t count, int share)
    {
        std::mt19937 random(5);
        for (MwDataDepartment& batch : both)
            batch.points.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            const bool isChanging = static_cast<int>(random() % 100) < share;
            for (int round = 0; round < 2; ++round) {
                QuorixData record;
                record.setMember("value", QuorixValue(double(i) + (isChanging ? round : 0)));
                record.setMember("tag", QuorixValue(0));
                record.setMember("limit", QuorixValue(0));
                record.setMember("quality", QuorixValue(0));
                both[round].points[firstId + static_cast<quint32>(i)] = record;
            }
        }
    }

    const MwDataDepartment& next() { return both[current ^= 1]; }

    MwDataDepartment both[2];
    int current = 0;
};

void dispatch(benchmark::State& state, double limit)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    std::vector<std::unique_ptr<ScadaTagActionInterface>> actions;
    for (const quint32 id : idsInRandomOrder(count))
        actions.push_back(std::make_unique<OneTarget>(id));
    Batches batches(count, int(state.range(1)));
    const auto pass = [&actions](const MwDataDepartment& batch) {
        for (const auto& action : actions) {
            action->readDataFromSource(nullptr, batch, 0);
            action->updateDatatoTarget(false);
        }
    };
    pass(batches.next()); // the first batch fills every value, whatever share changes later
    for (auto _ : state)
        pass(batches.next());
    korvaneItems(state, count);
    korvaneRatioLimit(state, limit);
}

void plainLoop(benchmark::State& state)
{
    struct Binding
    {
        quint32 id = 0;
        QVariant value;
    };
    const auto count = static_cast<std::size_t>(state.range(0));
    std::vector<Binding> bindings;
    for (const quint32 id : idsInRandomOrder(count))
        bindings.push_back({id, {}});
    Batches batches(count, int(state.range(1)));
    std::size_t changed = 0;
    const auto pass = [&bindings, &changed](const MwDataDepartment& batch) {
        for (Binding& binding : bindings) {
            const auto found = batch.points.find(binding.id);
            if (found == batch.points.end())
                continue;
            const QVariant value = found->second.GetValue("value")->toVariant();
            if (value == binding.value)
                continue;
            binding.value = value;
            ++changed;
        }
    };
    pass(batches.next());
    for (auto _ : state) {
        pass(batches.next());
        benchmark::DoNotOptimize(changed);
    }
    korvaneItems(state, count);
}

/// Values go to their tags as they come, found by id.
void objectPerTag(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    Receiver receiver;
    QHash<quint32, TagObject*> tags;
    std::vector<std::unique_ptr<TagObject>> owned;
    for (const quint32 id : idsInRandomOrder(count)) {
        owned.push_back(std::make_unique<TagObject>());
        tags.insert(id, owned.back().get());
        QObject::connect(owned.back().get(), &TagObject::valueChanged, &receiver, &Receiver::take);
    }
    Batches batches(count, int(state.range(1)));
    const auto pass = [&tags](const MwDataDepartment& batch) {
        for (const auto& [id, record] : batch.points) {
            if (TagObject* tag = tags.value(id))
                tag->setValue(record.GetValue("value")->toVariant());
        }
    };
    pass(batches.next());
    for (auto _ : state)
        pass(batches.next());
    korvaneItems(state, count);
}

/// Actions of so many targets each, a thousand targets in all.
void targetsPerAction(benchmark::State& state, std::size_t targets)
{
    constexpr std::size_t count = 1000;
    const std::vector<quint32> ids = idsInRandomOrder(count);
    std::vector<std::unique_ptr<BoundAction>> actions;
    for (std::size_t first = 0; first < count; first += targets) {
        const auto begin = ids.begin() + static_cast<std::ptrdiff_t>(first);
        actions.push_back(
            std::make_unique<BoundAction>(std::vector<quint32>(begin, begin + static_cast<std::ptrdiff_t>(targets))));
    }
    Batches batches(count, 100);
    for (auto _ : state) {
        const MwDataDepartment& batch = batches.next();
        for (const auto& action : actions) {
            action->readDataFromSource(nullptr, batch, 0);
            action->updateDatatoTarget(false);
        }
    }
    korvaneItems(state, count);
    if (targets > 1)
        korvaneRatioLimit(state, 1.5);
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::vector<std::int64_t>> sizesAndShares = {{1000, 10000, 100000, 1000000}, {0, 1, 10, 100}};
    const auto add = [](const char* name, auto function) { return benchmark::RegisterBenchmark(name, function); };
    add("dispatch by points and % changed", [](benchmark::State& state) {
        dispatch(state, 5);
    })->ArgsProduct(sizesAndShares);
    add("dispatch by points and % changed (plain)", plainLoop)->ArgsProduct(sizesAndShares);
    // Three times as fast among 10,000, one and a half times from there on.
    add("dispatch against an object per tag", [](benchmark::State& state) {
        dispatch(state, state.range(0) == 10000 ? 0.33 : 0.67);
    })->ArgsProduct({{10000, 100000, 1000000}, {100}});
    add("dispatch against an object per tag (plain)", objectPerTag)->ArgsProduct({{10000, 100000, 1000000}, {100}});
    for (const std::size_t targets : {10U, 100U, 1000U}) {
        const std::string name = "a target of an action of " + std::to_string(targets);
        add(name.c_str(), [targets](benchmark::State& state) { targetsPerAction(state, targets); });
        add((name + " (plain)").c_str(), [](benchmark::State& state) { targetsPerAction(state, 1); });
    }
    return korvaneBenchmarkMain(argc, argv);
}

#include "bench_dispatch.moc"
