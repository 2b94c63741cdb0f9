#include "platform/data/datalinkinfo.h"
#include "platform/data/dataserviceinterface.h"
#include "platform/data/logdatainfo.h"
#include "platform/data/scadatagactionstream.h"
#include "scada/binding/tlqgraphicsitem.h"
#include "tests/support/storedbytes.h"
#include "tests/support/testaction.h"
#include "tests/support/testhub.h"
#include "tests/support/testproperties.h"
#include "tests/support/testruntime.h"
#include "tests/support/testshape.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QtTest>

#include <limits>
#include <new>

using DataCode::DataField;
using Korvane::ScadaObjectType;

namespace {

/// The overlays over a shape, in the order in which they were made.
QList<TlqGraphicsItem*> overlays(const TestShape& shape)
{
    QList<TlqGraphicsItem*> found;
    for (QGraphicsItem* child : shape.item->childItems()) {
        if (auto* overlay = dynamic_cast<TlqGraphicsItem*>(child))
            found.append(overlay);
    }
    return found;
}

MwDataDepartment batchOf(quint32 id, const QuorixData& record)
{
    MwDataDepartment batch;
    batch.points[id] = record;
    return batch;
}

/// An action whose targets a value is refused by: it takes nothing and says so.
struct DeafAction : TestAction
{
    using TestAction::TestAction;
    bool updatePointValue(const QuorixData&, ScadaObjectType kind, unsigned int id) override
    {
        ++asked;
        lastKind = kind;
        lastId = id;
        return answer;
    }
    int asked = 0;
    bool answer = false;
    ScadaObjectType lastKind = ScadaObjectType::NoObject;
    unsigned int lastId = 0;
};

} // namespace

class tst_ScadaTagActionInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void afterConstructionTheShapeIsSetOnce()
    {
        TestAction action;
        QVERIFY(!action.shape());
        action.updateDatatoTarget(false);
        QCOMPARE(action.applied, 1);
        QVERIFY(!action.lastForce);
        action.updateDatatoTarget(false);
        QCOMPARE(action.applied, 1);
        action.updateDatatoTarget(true);
        QCOMPARE(action.applied, 2);
        QVERIFY(action.lastForce);
    }

    void itKeepsTheShapeItIsGiven()
    {
        TestShape shape;
        TestShape other;
        TestAction action(&shape);
        QCOMPARE(action.shape(), &shape);
        action.setShape(&other);
        QCOMPARE(action.shape(), &other);
        action.setShape(nullptr);
        QVERIFY(!action.shape());
    }

    // Actions built elsewhere depend on the places.
    void virtualOperationsStandInTheirPlaces()
    {
        QFile header(QStringLiteral(KORVANE_SOURCE_DIR "/scada/binding/scadatagactioninterface.h"));
        QVERIFY(header.open(QIODevice::ReadOnly));
        static const QRegularExpression operation(QStringLiteral("^    virtual [^\n]*?(~?\\w+)\\("),
                                                  QRegularExpression::MultilineOption);
        QStringList names;
        for (auto found = operation.globalMatch(QString::fromUtf8(header.readAll())); found.hasNext();)
            names.append(found.next().captured(1));
        const QStringList expected = {
            QStringLiteral("~ScadaTagActionInterface"), // 1
            QStringLiteral("type"),                     // 2, pure
            QStringLiteral("fromStream"),               // 3, empty
            QStringLiteral("applyToShape"),             // 4, pure
            QStringLiteral("name"),                     // 5, pure
            QStringLiteral("replaceText"),              // 6
            QStringLiteral("clone"),                    // 7, pure
            QStringLiteral("isEqual"),                  // 8, pure
            QStringLiteral("setShape"),                 // 9
            QStringLiteral("toStream"),                 // 10, pure
            QStringLiteral("collectTargets"),           // 11, pure
            QStringLiteral("copyTargets"),              // 12, pure
            QStringLiteral("setTagString"),             // 13
            QStringLiteral("geometryChanged"),          // 14, empty
            QStringLiteral("runItSelf"),                // 15, empty
            QStringLiteral("interactMouseEvent"),       // 16
            QStringLiteral("timeOut"),                  // 17, empty
            QStringLiteral("updatePointValue"),         // 18
        };
        QCOMPARE(names, expected);
    }

    void optionalOperationsDoNothing()
    {
        TestAction action;
        QMap<QString, QVariant> values{{QStringLiteral("a"), 1}};
        action.fromStream(ScadaTagActionStream(), values);
        action.geometryChanged(QTransform());
        action.runItSelf(nullptr, nullptr);
        action.timeOut();
        QCOMPARE(values, (QMap<QString, QVariant>{{QStringLiteral("a"), 1}}));
        QVERIFY(!action.interactMouseEvent());
        QCOMPARE(action.applied, 0);
    }

    void aCopySharesNoOverlayAndCountsAsChanged()
    {
        TestShape shape;
        TestAction action(&shape);
        action.updateDatatoTarget(false);
        action.setSourceFail(true);
        QCOMPARE(overlays(shape).size(), 1);

        TestAction copy(action);
        QCOMPARE(copy.shape(), &shape);
        copy.applied = 0;
        copy.updateDatatoTarget(false);
        QCOMPARE(copy.applied, 1);
        copy.setDisplayTlq(false); // reaches no overlay
        QVERIFY(overlays(shape).constFirst()->isVisible());
        copy.setSourceFail(true);
        QCOMPARE(overlays(shape).size(), 2);
    }

    void assignmentSharesTheOverlayAndTheChangedState()
    {
        TestShape shape;
        TestAction action(&shape);
        action.updateDatatoTarget(false);
        action.setSourceFail(true);

        TestAction assigned;
        assigned = action;
        QCOMPARE(assigned.shape(), &shape);
        assigned.applied = 0;
        assigned.updateDatatoTarget(false);
        QCOMPARE(assigned.applied, 0); // the other was refreshed, so this one counts as refreshed too
        assigned.setSourceFail(true);
        QCOMPARE(overlays(shape).size(), 1);
        assigned.setDisplayTlq(false);
        QVERIFY(!overlays(shape).constFirst()->isVisible());
    }

    void itsEndLeavesTheOverlayToTheShape()
    {
        TestShape shape;
        {
            TestAction action(&shape);
            action.setSourceFail(true);
        }
        QCOMPARE(overlays(shape).size(), 1);
    }

    void nameAndIdAreTheFirstTargets()
    {
        TestAction action;
        QVERIFY(action.tagName().isEmpty());
        QCOMPARE(action.tagid(), 0);
        action.add(QStringLiteral("#200001"));
        action.add(QStringLiteral("#200002"));
        QCOMPARE(action.tagName(), QStringLiteral("#200001"));
        QCOMPARE(action.tagid(), 200001);
    }

    void tagStringsAreSetReplacedAndResolved()
    {
        TestAction action;
        action.targets.resize(3);
        action.setTagString(QStringLiteral("A.B:HighLimit"));
        for (ObjectTarget& target : action.targets) {
            QCOMPARE(target.getTagString(), QStringLiteral("A.B:HighLimit"));
            QVERIFY(ObjectTarget(target).replacePointName(nullptr, {{QStringLiteral("A"), QStringLiteral("X")}}));
        }
        action.targets[1].setTagString(QStringLiteral("C"));

        QVERIFY(!action.replaceText(QStringLiteral("a"), QStringLiteral("X"))); // letter case counts
        QVERIFY(action.replaceText(QStringLiteral("A"), QStringLiteral("X")));  // though one does not contain it
        QCOMPARE(action.targets[0].getTagString(), QStringLiteral("X.B:HighLimit"));
        QCOMPARE(action.targets[1].getTagString(), QStringLiteral("C"));
        QCOMPARE(action.targets[2].getTagString(), QStringLiteral("X.B:HighLimit")); // every target is processed

        TestRuntime runtime;
        runtime.add(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("X.B"));
        action.resolve(&runtime);
        QCOMPARE(action.targets[0].getTagString(), QStringLiteral("X.B"));
        QCOMPARE(action.targets[0].getPid(), 200001);
        QCOMPARE(action.targets[1].getPid(), 0);
        QCOMPARE(action.targets[2].getPid(), 200001);
    }

    void aBatchChangesOnlyWhatItHolds()
    {
        TestHub hub;
        TestAction action;
        ObjectTarget& bound = action.add(QStringLiteral("#200001"));
        ObjectTarget& other = action.add(QStringLiteral("#200002"));
        action.updateDatatoTarget(false);
        action.readDataFromSource(&hub, batchOf(200001, testRecord(1.5)), 0);
        QCOMPARE(bound.value(), QVariant(1.5));
        QVERIFY(!other.value().isValid());
        action.updateDatatoTarget(false);
        QCOMPARE(action.applied, 2);

        action.readDataFromSource(&hub, batchOf(200001, testRecord(1.5)), 0); // the same again
        action.updateDatatoTarget(false);
        QCOMPARE(action.applied, 2);
        action.readDataFromSource(&hub, batchOf(200003, testRecord(9)), 0); // someone else's
        action.updateDatatoTarget(false);
        QCOMPARE(action.applied, 2);
    }

    void aBatchWithoutAChangeTakesBackTheOneBefore()
    {
        TestHub hub;
        TestAction action;
        action.add(QStringLiteral("#200001"));
        action.updateDatatoTarget(false);
        action.readDataFromSource(&hub, batchOf(200001, testRecord(1.5)), 0);
        action.readDataFromSource(&hub, batchOf(200001, testRecord(1.5)), 0);
        action.updateDatatoTarget(false); // kept: each batch starts from "not changed"
        QCOMPARE(action.applied, 1);
    }

    void eachKindHasItsMap_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<int>("map"); // 1 points, 2 units, 3 lines, 0 none
        QTest::newRow("digital point") << "#100001" << 1;
        QTest::newRow("analog point") << "#200001" << 1;
        QTest::newRow("point of unknown kind") << "#7" << 1;
        QTest::newRow("unit") << "@R::#7" << 2;
        QTest::newRow("line") << "@C::#7" << 3;
        QTest::newRow("constant") << "7" << 0;
    }
    void eachKindHasItsMap()
    {
        QFETCH(QString, tag);
        QFETCH(int, map);
        TestHub hub;
        for (int filled = 1; filled <= 3; ++filled) {
            TestAction action;
            ObjectTarget& target = action.add(tag);
            target.setValue(-1);
            MwDataDepartment batch;
            (filled == 1   ? batch.points
             : filled == 2 ? batch.rtus
                           : batch.channels)[quint32(target.getPid())] = testRecord(5);
            QCOMPARE(action.dispatchValue(&hub, batch, false), filled == map);
            QCOMPARE(target.value(), QVariant(filled == map ? 5 : -1));
        }
    }

    void anUnknownKindIsSkipped()
    {
        TestHub hub;
        TestAction action;
        // A stored record can name any kind: 42, with the id 7.
        StoredBytes stream(bytesOf("0000002A 00000007 00000002 0058 0000"));
        action.add(QString()).fromStream(stream, ScadaTagActionStream());
        MwDataDepartment batch;
        batch.points[7] = batch.rtus[7] = batch.channels[7] = testRecord(5);
        QVERIFY(!action.dispatchValue(&hub, batch, true));
    }

    void theVirtualUpdateIsAskedOncePerTargetInTheBatch()
    {
        TestHub hub;
        DeafAction action;
        action.add(QStringLiteral("#200001"));
        action.add(QStringLiteral("#200001"));
        action.add(QStringLiteral("#200002"));
        QVERIFY(!action.dispatchValue(&hub, batchOf(200001, testRecord(1)), false));
        QCOMPARE(action.asked, 2);
        QCOMPARE(action.lastKind, ScadaObjectType::AnalogPoint);
        QCOMPARE(action.lastId, 200001U);
        action.answer = true; // its word counts though no value changed
        QVERIFY(action.dispatchValue(&hub, batchOf(200001, testRecord(1)), false));
    }

    void withoutTargetsOnlyTheSourceCounts()
    {
        TestHub hub;
        TestShape shape;
        TestAction action(&shape);
        QVERIFY(!action.dispatchValue(&hub, MwDataDepartment(), true));
        QCOMPARE(overlays(shape).size(), 1);
        QVERIFY(overlays(shape).constFirst()->isNoTLQ());
        QVERIFY(!action.dispatchValue(&hub, batchOf(1, testRecord(1)), true));
        QVERIFY(overlays(shape).isEmpty());
        QVERIFY(!action.dispatchValue(&hub, MwDataDepartment(), false));
        QVERIFY(overlays(shape).isEmpty());
    }

    void aFailedSourceShowsUntilTheNextBatch()
    {
        TestHub hub;
        TestShape shape(QRectF(1, 2, 30, 40));
        TestAction action(&shape);
        action.add(QStringLiteral("#200001"));
        action.readDataFromSource(&hub, MwDataDepartment(), 1);
        QCOMPARE(overlays(shape).size(), 1);
        QCOMPARE(overlays(shape).constFirst()->boundingRect(), QRectF(1, 2, 30, 40));
        QImage image(40, 50, QImage::Format_RGB32);
        image.fill(Qt::white);
        {
            QPainter painter(&image);
            overlays(shape).constFirst()->paint(&painter, nullptr, nullptr);
        }
        QCOMPARE(image.pixel(15, 22), qRgb(255, 0, 0)); // on the centre line

        action.readDataFromSource(&hub, batchOf(200001, testRecord(1, 0, 1)), 1); // a limit mark keeps it
        QCOMPARE(overlays(shape).size(), 1);
        QVERIFY(!overlays(shape).constFirst()->isNoTLQ());
        action.readDataFromSource(&hub, MwDataDepartment(), 1);
        QCOMPARE(overlays(shape).size(), 1);
        action.readDataFromSource(&hub, batchOf(200002, testRecord(1)), 1); // the point is not in it: its mark stays
        QCOMPARE(overlays(shape).size(), 1);
        action.readDataFromSource(&hub, batchOf(200001, testRecord(1)), 1);
        QVERIFY(overlays(shape).isEmpty());
    }

    void aBatchOfUnitsAloneIsAFailedSource()
    {
        TestHub hub;
        TestShape shape;
        TestAction action(&shape);
        MwDataDepartment batch;
        batch.rtus[1] = testRecord(1);
        action.readDataFromSource(&hub, batch, 1);
        QCOMPARE(overlays(shape).size(), 1);
    }

    void zeroMarksRemoveTheOverlayOfAFailedSource()
    {
        TestShape shape;
        TestAction action(&shape);
        action.setSourceFail(true);
        action.updateTLQ(testRecord(1));
        QVERIFY(overlays(shape).isEmpty());
        action.setSourceFail(false); // nothing left to take back
        QVERIFY(overlays(shape).isEmpty());
    }

    void marksThatDrawNothingStillMakeAnOverlay()
    {
        TestShape shape;
        TestAction action(&shape);
        action.updateTLQ(testRecord(1, 0, 0, 2));
        QCOMPARE(overlays(shape).size(), 1);
        QVERIFY(overlays(shape).constFirst()->isNoTLQ());
        action.setSourceFail(false); // which shows nothing, and so is removed
        QVERIFY(overlays(shape).isEmpty());
    }

    void recordsMayLackMembersOrHoldOthers_data()
    {
        QTest::addColumn<QVariant>("tag");
        QTest::addColumn<bool>("shown");
        QTest::newRow("absent") << QVariant() << false;
        QTest::newRow("a text with a number") << QVariant(QStringLiteral("1")) << true;
        QTest::newRow("another text") << QVariant(QStringLiteral("x")) << false;
        QTest::newRow("a real number") << QVariant(1.9) << true;
        QTest::newRow("a real number below one") << QVariant(0.9) << false;
        QTest::newRow("NaN") << QVariant(std::numeric_limits<double>::quiet_NaN()) << false;
        QTest::newRow("a list") << QVariant(QStringList{QStringLiteral("1")}) << false;
    }
    void recordsMayLackMembersOrHoldOthers()
    {
        QFETCH(QVariant, tag);
        TestShape shape;
        TestAction action(&shape);
        QuorixData record;
        record.setMember("tag", QuorixValue(tag));
        action.updateTLQ(record);
        const bool isShown = !overlays(shape).isEmpty();
        QTEST(isShown, "shown");
    }

    void withoutAShapeOrItsItemThereIsNoOverlay()
    {
        TestAction withoutShape;
        withoutShape.updateTLQ(testRecord(1, 1, 1, 1));
        withoutShape.setSourceFail(true);
        withoutShape.setSourceFail(false);
        withoutShape.setDisplayTlq(false);

        TestShape shape;
        shape.scene.removeItem(shape.item);
        delete shape.item;
        shape.item = nullptr;
        TestAction withoutItem(&shape);
        withoutItem.updateTLQ(testRecord(1, 1, 1, 1));
        withoutItem.setSourceFail(true);
        withoutItem.updateTLQ(testRecord(1));
        QVERIFY(shape.scene.items().isEmpty());
    }

    void anItemOnNoSceneHasAnOverlayToo()
    {
        TestShape shape;
        shape.scene.removeItem(shape.item);
        TestAction action(&shape);
        action.updateTLQ(testRecord(1, 1));
        QCOMPARE(overlays(shape).size(), 1);
        action.updateTLQ(testRecord(1));
        QVERIFY(overlays(shape).isEmpty());
        shape.scene.addItem(shape.item);
    }

    void aGeometryThatIsNoneGivesANullRect()
    {
        TestShape shape;
        shape.setNamedProperty(QStringLiteral("Geometry"), QStringLiteral("everywhere"));
        TestAction action(&shape);
        action.setSourceFail(true);
        QVERIFY(overlays(shape).constFirst()->boundingRect().isNull());
    }

    void theOverlayIsHiddenAndShown()
    {
        TestShape shape;
        TestAction action(&shape);
        action.setDisplayTlq(false); // none there: one made later is visible
        action.setSourceFail(true);
        QVERIFY(overlays(shape).constFirst()->isVisible());
        action.setDisplayTlq(false);
        QVERIFY(!overlays(shape).constFirst()->isVisible());
        action.setDisplayTlq(true);
        QVERIFY(overlays(shape).constFirst()->isVisible());
    }

    void aLoggedTargetWithAValueChangesWithEveryBatch()
    {
        TestHub hub;
        TestAction action;
        ObjectTarget& logged = action.add(QStringLiteral("#200001:PastMean"));
        logged.setLogDataInfo({});
        QVERIFY(!action.dispatchValue(&hub, batchOf(200001, testRecord(1)), false)); // it holds no value yet
        logged.setValue(5);
        QVERIFY(action.dispatchValue(&hub, batchOf(200001, testRecord(1)), false));
        QVERIFY(action.dispatchValue(&hub, batchOf(200001, testRecord(1)), false));
        QVERIFY(action.dispatchValue(&hub, MwDataDepartment(), false));
        QCOMPARE(logged.value(), QVariant(5)); // and is left alone
    }

    void aLoggedTargetIsHeldAgainstNoOtherActionsValue()
    {
        TestHub hub;
        TestAction before; // its previous values stood where the logged target's would
        before.add(QStringLiteral("#200001")).setValue(5);
        before.add(QStringLiteral("#200002")).setValue(5);
        QVERIFY(!before.dispatchValue(&hub, batchOf(200003, testRecord(1)), false));
        TestAction action;
        ObjectTarget& logged = action.add(QStringLiteral("#200001:PastMean"));
        logged.setLogDataInfo({});
        logged.setValue(5);
        action.add(QStringLiteral("#200002"));
        QVERIFY(action.dispatchValue(&hub, batchOf(200003, testRecord(1)), false));
    }

    void anotherTargetsUpdateReachesALoggedOneOfTheSamePoint()
    {
        TestHub hub;
        TestAction action;
        ObjectTarget& logged = action.add(QStringLiteral("#200001"));
        logged.setLogDataInfo({});
        action.add(QStringLiteral("#200001"));
        QVERIFY(action.dispatchValue(&hub, batchOf(200001, testRecord(1)), false));
        QCOMPARE(logged.value(), QVariant(1));
    }

    void propertiesComeFromTheirManager()
    {
        TestHub hub;
        TestProperties properties;
        properties.values.insert(QStringLiteral("theme"), QStringLiteral("dark"));
        TestAction action;
        ObjectTarget& target = action.add(QStringLiteral("@::theme"));
        QVERIFY(!action.dispatchValue(&hub, MwDataDepartment(), false)); // no manager: the value stays
        hub.setAppPropertyManager(&properties);
        QVERIFY(action.dispatchValue(&hub, MwDataDepartment(), false));
        QCOMPARE(target.value(), QVariant(QStringLiteral("dark")));
        QVERIFY(!action.dispatchValue(&hub, MwDataDepartment(), false));
        properties.values.clear();
        QVERIFY(action.dispatchValue(&hub, MwDataDepartment(), false));
        QVERIFY(!target.value().isValid());
        QVERIFY(!action.dispatchValue(nullptr, MwDataDepartment(), false));
    }

    void aPropertysValueIsTakenAtOnce()
    {
        TestAction action;
        ObjectTarget& theme = action.add(QStringLiteral("@::theme"));
        ObjectTarget& point = action.add(QStringLiteral("theme"));
        action.updateDatatoTarget(false);
        QVERIFY(!action.updatePropertyValue(QStringLiteral("Theme"), 1)); // the name exactly
        QVERIFY(action.updatePropertyValue(QStringLiteral("theme"), 1));
        QCOMPARE(theme.value(), QVariant(1));
        QVERIFY(!point.value().isValid());
        action.updateDatatoTarget(false);
        QCOMPARE(action.applied, 2);
        QVERIFY(!action.updatePropertyValue(QStringLiteral("theme"), 1));
        action.updateDatatoTarget(false);
        QCOMPARE(action.applied, 2);
        QVERIFY(action.updatePropertyValue(QStringLiteral("theme"), 2));
        QVERIFY(!action.updatePropertyValue(QStringLiteral("theme"), 2)); // leaves the state: still to be refreshed
        action.updateDatatoTarget(false);
        QCOMPARE(action.applied, 3);
    }

    void fieldsOfTheDatabaseAreDispatched()
    {
        TestHub hub;
        TestRuntime runtime;
        hub.setScadaRuntime(&runtime);
        runtime.setFieldValue(200001, DataField::HighLimit, 80.0);
        TestAction action;
        ObjectTarget& limit = action.add(QStringLiteral("#200001:HighLimit"));
        QVERIFY(!action.dispatchValue(&hub, batchOf(200002, testRecord(1)), false)); // its point is not in the batch
        QVERIFY(!limit.value().isValid());
        QVERIFY(action.dispatchValue(&hub, batchOf(200001, testRecord(1)), false));
        QCOMPARE(limit.value(), QVariant(80.0));
        QVERIFY(!action.dispatchValue(&hub, batchOf(200001, testRecord(2)), false));
        hub.setScadaRuntime(nullptr);
        QVERIFY(!action.dispatchValue(&hub, batchOf(200001, testRecord(2)), false));
        QCOMPARE(limit.value(), QVariant(80.0));
    }

    void aSingleRecordRefreshesAtOnce()
    {
        TestShape shape;
        TestAction action(&shape);
        ObjectTarget& target = action.add(QStringLiteral("#200001"));
        QuorixData record = testRecord(1.5, 1);
        action.updateRTValue(record, ScadaObjectType::AnalogPoint, 200001, 0);
        QCOMPARE(target.value(), QVariant(1.5));
        QCOMPARE(action.applied, 1);
        QVERIFY(!action.lastForce);
        QVERIFY(overlays(shape).isEmpty());
        action.updateDatatoTarget(false); // already refreshed
        QCOMPARE(action.applied, 1);

        action.updateRTValue(record, ScadaObjectType::AnalogPoint, 200001, 1); // unchanged, but with the overlay
        QCOMPARE(action.applied, 1);
        QCOMPARE(overlays(shape).size(), 1);
        action.updateRTValue(record, ScadaObjectType::AnalogPoint, 200002, 0);
        QCOMPARE(action.applied, 1);
    }

    void theDefaultUpdateTakesEveryMatchingTarget_data()
    {
        QTest::addColumn<int>("others"); // targets of other points beside: few are searched in line, many by buckets
        QTest::newRow("few") << 1;
        QTest::newRow("many") << 100;
    }
    void theDefaultUpdateTakesEveryMatchingTarget()
    {
        QFETCH(int, others);
        TestAction action;
        action.add(QStringLiteral("#200001"));
        action.add(QStringLiteral("#200001:HighLimit")); // no record supplies it
        for (int i = 0; i < others; ++i)
            action.add(QStringLiteral("#%1").arg(200002 + i));
        action.add(QStringLiteral("@R::#200001")); // matched by id alone
        const QuorixData record = testRecord(3);
        QVERIFY(action.updatePointValue(record, ScadaObjectType::AnalogPoint, 200001));
        QCOMPARE(action.targets.front().value(), QVariant(3));
        QVERIFY(!action.targets[1].value().isValid());
        QVERIFY(!action.targets[2].value().isValid());
        QCOMPARE(action.targets.back().value(), QVariant(3));
        QVERIFY(!action.updatePointValue(record, ScadaObjectType::AnalogPoint, 200001));
    }

    void aSingleRecordWithoutAChangeTakesBackAPendingOne()
    {
        TestHub hub;
        TestAction action;
        action.add(QStringLiteral("#200001"));
        action.updateDatatoTarget(false);
        QuorixData record = testRecord(1.5);
        action.readDataFromSource(&hub, batchOf(200001, record), 0);
        action.updateRTValue(record, ScadaObjectType::AnalogPoint, 200001, 0);
        action.updateDatatoTarget(false);
        QCOMPARE(action.applied, 1);
    }

    void nullTargetsAreLeftOut()
    {
        struct WithNull : TestAction
        {
            void collectTargets(QList<ObjectTarget*>& out) override
            {
                out.append(nullptr);
                TestAction::collectTargets(out);
                out.append(nullptr);
            }
        };
        TestHub hub;
        WithNull action;
        ObjectTarget& target = action.add(QStringLiteral("#200001"));
        QVERIFY(action.dispatchValue(&hub, batchOf(200001, testRecord(3)), false));
        QCOMPARE(target.value(), QVariant(3));
        QVERIFY(action.updatePointValue(testRecord(4), ScadaObjectType::AnalogPoint, 200001));
        QCOMPARE(target.value(), QVariant(4));
    }

    void pastValuesComeFromTheDataService()
    {
        struct Service : DataServiceInterface
        {
            bool queryUserAccounts(const QString&, QList<EUserAccount>&) override { return false; }
            QVariant historyValue(ObjectKey object, DataField field) override
            {
                return object.id == 200001 && field == DataField::PastMean ? QVariant(7.5) : QVariant();
            }
        };
        TestHub hub;
        Service service;
        hub.setDataServiceInterface(&service);
        TestAction action;
        ObjectTarget& past = action.add(QStringLiteral("#200001:PastMean"));
        QVERIFY(action.dispatchValue(&hub, batchOf(200001, testRecord(1)), false));
        QCOMPARE(past.value(), QVariant(7.5));
    }

    void anOverrideMayHandOverToTheBaseAndBindAnew_data() { theDefaultUpdateTakesEveryMatchingTarget_data(); }
    void anOverrideMayHandOverToTheBaseAndBindAnew()
    {
        /// Scales what the base took, and binds its last target to another point when the first has a value.
        struct Scaling : TestAction
        {
            bool updatePointValue(const QuorixData& data, ScadaObjectType kind, unsigned int id) override
            {
                const bool isChanged = TestAction::updatePointValue(data, kind, id);
                ObjectTarget& first = targets.front();
                if (id == 200001) {
                    first.setValue(first.value().toDouble() * 10);
                    targets.back().setLinkData({ScadaObjectType::AnalogPoint, 209999, QStringLiteral("X"), QString()});
                }
                return isChanged;
            }
        };
        QFETCH(int, others);
        TestHub hub;
        Scaling action;
        for (int i = 0; i <= others; ++i)
            action.add(QStringLiteral("#%1").arg(200001 + i));
        MwDataDepartment batch = batchOf(200001, testRecord(2.0));
        batch.points[209999] = testRecord(9.0);
        QVERIFY(action.dispatchValue(&hub, batch, false));
        QCOMPARE(action.targets.front().value(), QVariant(20.0));
        QCOMPARE(action.targets.back().value(), QVariant(9.0)); // visited last, under the id it has by then
    }

    void actionsMayBeUsedWhileTargetsAreCollected()
    {
        /// Hands out a part's targets beside its own, and resolves the part first.
        struct Composite : TestAction
        {
            void collectTargets(QList<ObjectTarget*>& out) override
            {
                TestAction::collectTargets(out);
                part.resolve(nullptr);
                part.collectTargets(out);
            }
            TestAction part;
        };
        TestHub hub;
        Composite action;
        ObjectTarget& own = action.add(QStringLiteral("#200001"));
        action.part.targets.push_back(ObjectTarget::fromTagString(QStringLiteral("@R::#7")));
        MwDataDepartment batch = batchOf(200001, testRecord(1));
        batch.rtus[7] = testRecord(2);
        QVERIFY(action.dispatchValue(&hub, batch, false));
        QCOMPARE(own.value(), QVariant(1));
        QCOMPARE(action.part.targets.front().value(), QVariant(2));
        QCOMPARE(own.getTagString(), QStringLiteral("#200001"));
    }

    void collectingMayFail()
    {
        struct Failing : TestAction
        {
            void collectTargets(QList<ObjectTarget*>& out) override
            {
                TestAction::collectTargets(out);
                if (isFailing)
                    throw std::bad_alloc();
            }
            bool isFailing = true;
        };
        TestHub hub;
        Failing action;
        action.add(QStringLiteral("#200001"));
        QVERIFY_EXCEPTION_THROWN(action.dispatchValue(&hub, batchOf(200001, testRecord(1)), false), std::bad_alloc);
        action.isFailing = false;
        QVERIFY(action.dispatchValue(&hub, batchOf(200001, testRecord(1)), false));
        TestAction other;
        QVERIFY(!other.dispatchValue(&hub, batchOf(200001, testRecord(1)), false)); // nothing is left over for it
    }

    void aRecordWithoutAValueOverNotANumberIsAChange()
    {
        TestAction action;
        action.add(QStringLiteral("#200001")).setValue(std::numeric_limits<double>::quiet_NaN());
        QVERIFY(action.updatePointValue(QuorixData(), ScadaObjectType::AnalogPoint, 200001));
        action.targets.front().setValue(4);
        QVERIFY(!action.updatePointValue(QuorixData(), ScadaObjectType::AnalogPoint, 200001));
    }

    void aRecordWithoutAValueLeavesTheOneBefore()
    {
        TestHub hub;
        TestAction action;
        ObjectTarget& target = action.add(QStringLiteral("#200001"));
        target.setValue(4);
        QVERIFY(!action.dispatchValue(&hub, batchOf(200001, QuorixData()), true));
        QCOMPARE(target.value(), QVariant(4));
    }

    void notANumberChangesWithEveryBatch()
    {
        TestHub hub;
        TestAction action;
        action.add(QStringLiteral("#200001"));
        const MwDataDepartment batch = batchOf(200001, testRecord(std::numeric_limits<double>::quiet_NaN()));
        QVERIFY(action.dispatchValue(&hub, batch, false));
        QVERIFY(action.dispatchValue(&hub, batch, false));
    }

    void anActionOfOneTargetIsSmall()
    {
        // A name of 20 characters: its text is shared by both tag strings, and by the bare name after resolving.
        constexpr std::size_t text = 24 + 2 * (20 + 1); // Qt's header, and the characters with their end
        struct OneTarget : ScadaTagActionInterface
        {
            ObjectTarget target;
        };
        QVERIFY(sizeof(OneTarget) + text <= 256);
    }
};

QTEST_MAIN(tst_ScadaTagActionInterface)
#include "tst_scadatagactioninterface.moc"
