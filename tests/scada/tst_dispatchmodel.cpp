// Random actions and batches against a slow, literal model of how a batch is dispatched.

#include "platform/data/datadispatcher.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/dataserviceinterface.h"
#include "platform/data/logdatainfo.h"
#include "scada/binding/tlqgraphicsitem.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/testaction.h"
#include "tests/support/testhub.h"
#include "tests/support/testproperties.h"
#include "tests/support/testruntime.h"
#include "tests/support/testshape.h"

#include <QImage>
#include <QPainter>
#include <QtTest>

#include <rapidcheck.h>

#include <limits>
#include <memory>

using Korvane::ScadaObjectType;

namespace {

/// What the overlay of an action should be.
struct ModelOverlay
{
    bool exists = false;
    bool tag = false;
    bool limit = false;
    bool quality = false;
    bool failed = false;
};

/// The stated steps of dispatching, one by one and without any care for cost, over an action's own targets.
class Model
{
public:
    Model(TestAction& action, KorvaneScadaCoreInterface& hub) : m_action(action), m_hub(hub) {}

    bool dispatch(const MwDataDepartment& batch, bool withOverlay)
    {
        const bool result = dispatchToTargets(batch, withOverlay);
        if (withOverlay)
            setSourceFail(batch.points.empty());
        return result;
    }

    const ModelOverlay& overlay() const { return m_overlay; }

    bool takeRecord(const QuorixData& record, qint32 id) { return updatePointValue(record, id); }

private:
    bool dispatchToTargets(const MwDataDepartment& batch, bool withOverlay)
    {
        bool changed = false;
        DataDispatcher dispatcher;
        QMap<ObjectTarget*, QVariant> previous;
        QList<ObjectTarget*> targets;
        m_action.collectTargets(targets);
        for (ObjectTarget* target : targets) {
            if (target->getLogDataInfo())
                continue;
            previous[target] = target->value();
            const ScadaObjectType kind = target->objectKindType();
            if (kind == ScadaObjectType::ApplicationProperty) {
                target->setValue(m_hub.propertyManager()->getProperty(target->getTagString()));
                continue;
            }
            const MwDataDepartment::Records* records = nullptr;
            if (Korvane::isPointObjectType(kind))
                records = &batch.points;
            else if (kind == ScadaObjectType::RtuObject)
                records = &batch.rtus;
            else if (kind == ScadaObjectType::ChannelObject)
                records = &batch.channels;
            if (!records)
                continue;
            const auto found = records->find(static_cast<quint32>(target->getPid()));
            if (found == records->end())
                continue;
            if (target->isMMDataAcceptable()) {
                const QuorixData record = found->second;
                changed |= updatePointValue(record, target->getPid());
                if (withOverlay)
                    updateTlq(record);
            }
            if (target->isDBAcceptable(target->getPid())) {
                previous[target] = target->value();
                dispatcher.addTagValue(target);
            }
        }
        dispatcher.dispatch(batch, m_hub.scadaRuntime(), m_hub.controller());
        for (ObjectTarget* target : targets) {
            if (previous.value(target) != target->value())
                return true;
        }
        return changed;
    }

    bool updatePointValue(const QuorixData& record, qint32 id)
    {
        bool changed = false;
        QList<ObjectTarget*> targets;
        m_action.collectTargets(targets);
        for (ObjectTarget* target : targets) {
            if (target->getPid() != id || !target->isMMDataAcceptable())
                continue;
            const QVariant before = target->value();
            target->setMMValue(&record);
            changed |= target->value() != before;
        }
        return changed;
    }

    static int mark(const QuorixData& record, const char* name)
    {
        return record.GetValue(name) ? record.GetValue(name)->toInt32() : 0;
    }

    void updateTlq(const QuorixData& record)
    {
        const int tag = mark(record, "tag");
        const int limit = mark(record, "limit");
        const int quality = mark(record, "quality");
        if (tag == 0 && limit == 0 && quality == 0) {
            m_overlay = {};
            return;
        }
        m_overlay.exists = true;
        m_overlay.tag = (tag & 0x0F) != 0;
        m_overlay.limit = (limit & 0x1F) != 0;
        m_overlay.quality = (quality & 0x6D) != 0;
    }

    void setSourceFail(bool fail)
    {
        const bool isMarked = m_overlay.tag || m_overlay.limit || m_overlay.quality;
        if (!fail && !isMarked)
            m_overlay = {};
        if (fail)
            m_overlay.exists = true;
        if (m_overlay.exists)
            m_overlay.failed = fail;
    }

    TestAction& m_action;
    KorvaneScadaCoreInterface& m_hub;
    ModelOverlay m_overlay;
};

/// An action that may name a target more than once.
struct RepeatingAction : TestAction
{
    using TestAction::TestAction;
    void collectTargets(QList<ObjectTarget*>& out) override
    {
        for (const int place : order)
            out.append(&targets[static_cast<std::size_t>(place)]);
    }
    std::vector<int> order;
};

ObjectTarget makeTarget()
{
    const auto id = *rc::gen::weightedElement<int>({{4, 1}, {4, 2}, {2, 3}, {1, 0}, {1, 200001}});
    const auto kind = *rc::gen::element(0, 1, 6, 6, 2, 3, 7, -1, 42);
    const auto field = *rc::gen::weightedElement<std::string>(
        {{6, ""}, {1, "HighLimit"}, {1, "UpdateTime"}, {1, "CommState"}, {1, "PastMean"}});
    ObjectTarget target = ObjectTarget::fromTagString(QStringLiteral("theme"));
    target.setLinkData({ScadaObjectType(kind), id, QStringLiteral("theme"), QString::fromStdString(field)});
    if (*rc::gen::inRange(0, 3) == 0)
        target.setValue(*rc::gen::inRange(0, 3));
    if (*rc::gen::inRange(0, 8) == 0) {
        static const LogDataInfo logged;
        target.setLogDataInfo(logged);
    }
    return target;
}

QVariant makeValue()
{
    switch (*rc::gen::inRange(0, 7)) {
    case 0:
        return QStringLiteral("1");
    case 1:
        return std::numeric_limits<double>::quiet_NaN();
    case 2:
        return {};
    case 3:
        return double(*rc::gen::inRange(0, 3)) + 1e-13;
    default:
        return double(*rc::gen::inRange(0, 3));
    }
}

QuorixData makeRecord()
{
    QuorixData record;
    record.setMember("value", QuorixValue(makeValue()));
    for (const char* name : {"tag", "limit", "quality"}) {
        if (*rc::gen::inRange(0, 3) == 0)
            record.setMember(name, QuorixValue(*rc::gen::element(0, 1, 2, 0x10, 0x80, 0x100)));
    }
    if (*rc::gen::inRange(0, 4) == 0)
        record.setMember("commState", QuorixValue(*rc::gen::inRange(0, 2)));
    return record;
}

MwDataDepartment makeBatch()
{
    MwDataDepartment batch;
    for (MwDataDepartment::Records* records : {&batch.points, &batch.rtus, &batch.channels}) {
        for (const quint32 id : {0U, 1U, 2U, 3U, 200001U}) {
            if (*rc::gen::inRange(0, 3) == 0)
                (*records)[id] = makeRecord();
        }
    }
    return batch;
}

ModelOverlay overlayOf(const TestShape& shape)
{
    ModelOverlay seen;
    for (QGraphicsItem* child : shape.item->childItems()) {
        auto* overlay = dynamic_cast<TlqGraphicsItem*>(child);
        if (!overlay)
            continue;
        RC_ASSERT(!seen.exists); // an action has one overlay at most
        seen.exists = true;
        QImage image(1, 12, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        overlay->setRect(QRectF(0, 4, 1, 4));
        overlay->paint(&painter, nullptr, nullptr);
        for (int y = 0; y < image.height(); ++y) {
            seen.tag |= image.pixel(0, y) == qRgb(0, 255, 255);
            seen.limit |= image.pixel(0, y) == qRgb(255, 0, 255);
            seen.quality |= image.pixel(0, y) == qRgb(255, 255, 0);
            seen.failed |= image.pixel(0, y) == qRgb(255, 0, 0);
        }
    }
    return seen;
}

/// Both actions hold the same values, as far as one can tell two NaNs apart.
bool holdSameValues(const TestAction& a, const TestAction& b)
{
    for (std::size_t place = 0; place < a.targets.size(); ++place) {
        const QVariant& one = a.targets[place].value();
        const QVariant& other = b.targets[place].value();
        const bool areNan = qIsNaN(one.toDouble()) && qIsNaN(other.toDouble());
        if (one.userType() != other.userType() || (one != other && !areNan))
            return false;
    }
    return true;
}

} // namespace

class tst_DispatchModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomBatchesGiveWhatTheStepsSay_data()
    {
        QTest::addColumn<int>("mostTargets");
        QTest::newRow("few targets") << 6;
        QTest::newRow("many targets") << 40;
    }
    void randomBatchesGiveWhatTheStepsSay()
    {
        QFETCH(int, mostTargets);
        TestRuntime runtime;
        runtime.setFieldValue(1, DataCode::DataField::HighLimit, 80.0);
        TestProperties properties;
        struct Service : DataServiceInterface
        {
            bool queryUserAccounts(const QString&, QList<EUserAccount>&) override { return false; }
            QVariant historyValue(ObjectKey object, DataCode::DataField) override { return object.id * 10; }
        };
        Service service;
        TestHub hub;
        hub.setScadaRuntime(&runtime);
        hub.setAppPropertyManager(&properties);
        hub.setDataServiceInterface(&service);

        QVERIFY(rc::check("results, values and overlays", [&] {
            TestShape shape;
            RepeatingAction real(&shape);
            const int count = *rc::gen::inRange(0, mostTargets);
            for (int i = 0; i < count; ++i)
                real.targets.push_back(makeTarget());
            for (int i = 0; i < count; ++i)
                real.order.push_back(i);
            if (count > 0 && *rc::gen::arbitrary<bool>())
                real.order.push_back(*rc::gen::inRange(0, count)); // a target that stands twice
            TestShape otherShape;
            RepeatingAction literal(&otherShape);
            literal.targets = real.targets;
            literal.order = real.order;
            Model model(literal, hub);

            const int batches = *rc::gen::inRange(1, 6);
            for (int i = 0; i < batches; ++i) {
                properties.values.insert(QStringLiteral("theme"), *rc::gen::inRange(0, 2));
                const MwDataDepartment batch = makeBatch();
                const bool withOverlay = *rc::gen::arbitrary<bool>();
                const bool expected = model.dispatch(batch, withOverlay);
                RC_ASSERT(real.dispatchValue(&hub, batch, withOverlay) == expected);
                RC_ASSERT(holdSameValues(real, literal));
                const QuorixData single = makeRecord();
                const auto id = *rc::gen::inRange(0, 4);
                RC_ASSERT(real.updatePointValue(single, ScadaObjectType::Point, static_cast<unsigned int>(id)) ==
                          model.takeRecord(single, id));
                RC_ASSERT(holdSameValues(real, literal));
                const ModelOverlay seen = overlayOf(shape);
                RC_ASSERT(seen.exists == model.overlay().exists);
                RC_ASSERT(seen.failed == model.overlay().failed);
                // The failed stroke can cover another mark's: what it covers can't be seen.
                if (!seen.failed) {
                    RC_ASSERT(seen.tag == model.overlay().tag);
                    RC_ASSERT(seen.limit == model.overlay().limit);
                    RC_ASSERT(seen.quality == model.overlay().quality);
                }
            }
        }));
    }

    void numericTargetsAllocateNothing_data()
    {
        QTest::addColumn<int>("targets");
        for (const int targets : {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 33, 99, 100, 1000})
            QTest::addRow("%d targets", targets) << targets;
    }
    void numericTargetsAllocateNothing()
    {
        QFETCH(int, targets);
        TestHub hub;
        TestAction action;
        MwDataDepartment batches[2];
        for (int i = 0; i < targets; ++i) {
            action.add(QStringLiteral("#%1").arg(200001 + i));
            batches[0].points[quint32(200001 + i)] = testRecord(1.0 + i);
            batches[1].points[quint32(200001 + i)] = testRecord(2.0 + i);
        }
        // The lists grow with the first batches and never again.
        for (int i = 0; i < 4; ++i)
            action.dispatchValue(&hub, batches[i % 2], true);
        const AllocationCounter counter;
        bool isChanged = true;
        for (int i = 0; i < 20; ++i)
            isChanged &= action.dispatchValue(&hub, batches[i % 2], true);
        QCOMPARE(counter.count(), std::size_t(0));
        QVERIFY(isChanged);
    }

    void dispatchesNest_data()
    {
        QTest::addColumn<int>("others");
        QTest::newRow("few targets") << 0;
        QTest::newRow("many targets") << 50;
    }
    void dispatchesNest()
    {
        QFETCH(int, others);
        /// Dispatches another action's batch, and its own once more, while it takes a value.
        struct Nesting : TestAction
        {
            bool updatePointValue(const QuorixData& data, ScadaObjectType kind, unsigned int id) override
            {
                if (depth++ == 0) {
                    const QuorixData own = testRecord(0.5);
                    verify(inner->updatePointValue(own, kind, 200002));
                    verify(inner->targets.front().value() == QVariant(0.5));
                    verify(inner->dispatchValue(hub, *batch, false));
                    verify(dispatchValue(hub, *batch, false));
                }
                return TestAction::updatePointValue(data, kind, id);
            }
            static void verify(bool holds) { QVERIFY(holds); }
            TestAction* inner = nullptr;
            KorvaneScadaCoreInterface* hub = nullptr;
            const MwDataDepartment* batch = nullptr;
            int depth = 0;
        };
        TestHub hub;
        MwDataDepartment batch;
        batch.points[200001] = testRecord(1.0);
        batch.points[200002] = testRecord(2.0);
        TestAction inner;
        inner.add(QStringLiteral("#200002"));
        Nesting outer;
        outer.inner = &inner;
        outer.hub = &hub;
        outer.batch = &batch;
        outer.add(QStringLiteral("#200001"));
        outer.add(QStringLiteral("#200002"));
        for (int i = 0; i < others; ++i)
            outer.add(QStringLiteral("#%1").arg(200003 + i));
        QVERIFY(outer.dispatchValue(&hub, batch, false));
        QCOMPARE(outer.targets[0].value(), QVariant(1.0));
        QCOMPARE(outer.targets[1].value(), QVariant(2.0));
        QCOMPARE(inner.targets[0].value(), QVariant(2.0));
    }
};

QTEST_MAIN(tst_DispatchModel)
#include "tst_dispatchmodel.moc"
