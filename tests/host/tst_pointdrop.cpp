// Points dragged from the tree and dropped on the view of a page.

#include "host/canvas/canvasview.h"
#include "host/design/pointdrop.h"
#include "host/design/pointtree.h"
#include "platform/ui/kvpointmimedata.h"
#include "tests/support/designdesk.h"
#include "tests/support/offscreenwarnings.h"

#include <QDragEnterEvent>
#include <QMenu>
#include <QRubberBand>
#include <QSignalSpy>
#include <QtTest>

namespace {

using Korvane::ScadaObjectType;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

const QByteArray points = "id,name,kind,unit,station,description\n"
                          "200001,FLOW,analog,l/min,North,Flow behind the pump\n"
                          "200002,LEVEL,analog,m,North,\n"
                          "100001,PUMP,digital,,South,The pump runs\n";

/// The page of 400 by 200, at its own size: a panel below, a bar bound to FLOW, a trend of two curves.
const QByteArray page = TestProject::json(
    "{'format':'korvane-page','version':1,'size':[400,200],'layers':[{'name':'a','shapes':["
    "{'class':'Rectangle','name':'panel','place':[10,10,380,180]},"
    "{'class':'Bar','name':'bar','place':[20,20,40,100],'actions':[{'type':2,'targets':[{'tag':'FLOW'}]}]},"
    "{'class':'Trend','name':'trend','place':[200,20,150,100],"
    "'actions':[{'type':9,'targets':[{'tag':'FLOW'},{'tag':'LEVEL'}]}]}]}]}");

const Korvane::BrowerItemInfo level{ScadaObjectType::AnalogPoint, 200002, text("LEVEL"), text("LEVEL"), {}, {}};

struct Table : DesignDesk
{
    explicit Table() : DesignDesk(page, points)
    {
        view = std::make_unique<CanvasView>(document->canvas());
        view->setOperated(false);
        view->resize(440, 240); // with some room around the page
        view->setZoom(1);
        drop = std::make_unique<PointDrop>(*view, *document);
        QObject::connect(drop.get(), &PointDrop::dropped, [this](const Shape* shape) { dropped.append(shape); });
        view->show();
        if (!QTest::qWaitForWindowExposed(view.get()))
            qFatal("the view does not come up");
    }
    ~Table() { view.reset(); }

    QPoint at(const QPointF& place) const { return view->renderer().transform().map(place).toPoint(); }
    QRubberBand& frame() const { return *view->findChild<QRubberBand*>(); }
    bool isEntered(const QPointF& place, const QMimeData& data) const
    {
        QDragEnterEvent enter(at(place), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(view->viewport(), &enter);
        return enter.isAccepted();
    }
    bool moveTo(const QPointF& place, const QMimeData& data) const
    {
        if (!isEntered(place, data))
            return false;
        QDragMoveEvent move(at(place), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(view->viewport(), &move);
        return move.isAccepted();
    }
    bool dropAt(const QPointF& place, const QMimeData& data) const
    {
        if (!moveTo(place, data))
            return false;
        QDropEvent event(at(place), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(view->viewport(), &event);
        return event.isAccepted();
    }

    std::unique_ptr<CanvasView> view;
    std::unique_ptr<PointDrop> drop;
    QList<const Shape*> dropped;
};

constexpr QPointF onBar{40, 60};
constexpr QPointF onTrend{270, 60};
constexpr QPointF onPanel{130, 150};
constexpr QPointF beside{-10, 100};

} // namespace

class tst_PointDrop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void onAPanelAReadOutIsMade()
    {
        const Table table;
        const KVPointMimeData data(level);
        QVERIFY(table.dropAt(onPanel, data));
        const Shape* made = table.shape("LEVEL");
        QVERIFY(made);
        QVERIFY(made->place().contains(onPanel));
        QCOMPARE(table.dropped, QList<const Shape*>({made}));
        QCOMPARE(table.bindings(made), text("Number LEVEL"));
    }

    void onAShapeThePointTakesThePlaceOfItsOwn()
    {
        const Table table;
        QVERIFY(table.dropAt(onBar, KVPointMimeData(level)));
        QCOMPARE(table.bindings(table.shape("bar")), text("Number LEVEL"));
        QCOMPARE(table.dropped, QList<const Shape*>({table.shape("bar")}));
        QCOMPARE(table.document->canvas().shapeCount(), std::size_t(3));
    }

    void aShapeOfSeveralPointsAsksWhich()
    {
        const Table table;
        const KVPointMimeData data({ScadaObjectType::DigitalPoint, 100001, text("PUMP"), text("PUMP"), {}, {}});
        QVERIFY(table.dropAt(onTrend, data));
        QCOMPARE(table.document->undoStack().count(), 0); // not yet
        auto* menu = table.view->findChild<QMenu*>(text("bindings"));
        QTRY_VERIFY(menu->isVisible());
        QStringList entries;
        for (const QAction* action : menu->actions()) {
            if (!action->isSeparator() && action->isEnabled())
                entries.append(action->text());
        }
        QCOMPARE(entries, QStringList({text("FLOW"), text("LEVEL"), text("As another curve")}));
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
        QCOMPARE(table.bindings(table.shape("trend")), text("Trend, value 1 FLOW | Trend, value 2 PUMP"));
        QCOMPARE(table.dropped, QList<const Shape*>({table.shape("trend")}));
        QTRY_VERIFY(!table.view->findChild<QMenu*>(text("bindings")));
    }

    void anotherCurveIsOffered()
    {
        const Table table;
        QVERIFY(table.dropAt(onTrend, KVPointMimeData(level)));
        auto* menu = table.view->findChild<QMenu*>(text("bindings"));
        QTRY_VERIFY(menu->isVisible());
        QTest::keyClick(menu, Qt::Key_Up);
        QTest::keyClick(menu, Qt::Key_Return);
        QCOMPARE(table.bindings(table.shape("trend")),
                 text("Trend, value 1 FLOW | Trend, value 2 LEVEL | Trend, value 3 LEVEL"));
    }

    void aMenuLeftChangesNothing()
    {
        const Table table;
        QVERIFY(table.dropAt(onTrend, KVPointMimeData(level)));
        auto* menu = table.view->findChild<QMenu*>(text("bindings"));
        QTRY_VERIFY(menu->isVisible());
        QTest::keyClick(menu, Qt::Key_Escape);
        QTRY_VERIFY(!table.view->findChild<QMenu*>(text("bindings")));
        QCOMPARE(table.document->undoStack().count(), 0);
    }

    void anythingElseIsRefused()
    {
        const Table table;
        QMimeData plain;
        plain.setText(text("FLOW"));
        QVERIFY(!table.dropAt(onPanel, plain));
        QMimeData alike; // as another program may send it
        alike.setData(KVPointMimeData::format(), "FLOW");
        QVERIFY(!table.dropAt(onPanel, alike));
        QVERIFY(!table.frame().isVisible());
        const KVPointMimeData data(level);
        QVERIFY(!table.dropAt(beside, data)); // of the page
        QVERIFY(table.isEntered(beside, data));
        QVERIFY(!table.isEntered(onPanel, plain));
        table.moveTo(onPanel, data); // the view waits for a drop
        QDropEvent direct(table.at(onPanel), Qt::CopyAction, &plain, Qt::LeftButton, {});
        QCoreApplication::sendEvent(table.view->viewport(), &direct);
        QVERIFY(!direct.isAccepted());
        QCOMPARE(table.document->undoStack().count(), 0);
        QCOMPARE(table.dropped, QList<const Shape*>());
    }

    void whatIsUnderThePointerIsFramed()
    {
        const Table table;
        const KVPointMimeData data(level);
        table.moveTo(onBar, data);
        QVERIFY(table.frame().isVisible());
        QCOMPARE(table.frame().geometry(), table.view->viewportRect(*table.shape("bar")));
        table.moveTo(onPanel, data);
        const QRectF place = table.document->readOutPlace(text("LEVEL"), onPanel);
        QCOMPARE(table.frame().geometry(), table.view->viewportRect(place));
        QVERIFY(table.frame().geometry().contains(table.at(onPanel)));
        table.moveTo(beside, data);
        QVERIFY(!table.frame().isVisible());
        table.moveTo(onBar, data);
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(table.view->viewport(), &leave);
        QVERIFY(!table.frame().isVisible());
        table.dropAt(onBar, data);
        QVERIFY(!table.frame().isVisible());
    }

    void theTreeShowsThePointsAndFilters()
    {
        const Table table;
        PointTree tree;
        auto& view = *tree.findChild<QTreeView*>();
        auto& filter = *tree.findChild<QLineEdit*>();
        const auto rows = [&view] {
            QStringList names;
            for (int station = 0; station < view.model()->rowCount(); ++station) {
                const QModelIndex parent = view.model()->index(station, 0);
                for (int row = 0; row < view.model()->rowCount(parent); ++row)
                    names.append(view.model()->index(row, 0, parent).data().toString());
            }
            return names;
        };
        QCOMPARE(rows(), QStringList({text("FLOW"), text("LEVEL"), text("PUMP")}));
        QCOMPARE(tree.findChild<QLabel*>()->text(), text("3 of 3"));
        view.expand(view.model()->index(1, 0));
        QTest::keyClicks(&filter, text("behind"));
        QCOMPARE(rows(), QStringList({text("FLOW")}));
        QCOMPARE(tree.findChild<QLabel*>()->text(), text("1 of 3"));
        QVERIFY(view.isExpanded(view.model()->index(0, 0))); // what is found is seen
        tree.show();
        QVERIFY(QTest::qWaitForWindowActive(&tree));
        filter.setFocus();
        QTest::keyClick(&filter, Qt::Key_Down);
        QVERIFY(view.hasFocus());
        QCOMPARE(tree.currentItem().tag, text("FLOW"));
        filter.clear();
        QCOMPARE(tree.currentItem().tag, text("FLOW"));
        QVERIFY(!view.isExpanded(view.model()->index(0, 0)) || view.isExpanded(view.model()->index(1, 0)));
    }

    void theTreeDragsAPoint()
    {
        const Table table;
        const PointTree tree;
        const QAbstractItemModel& model = *tree.findChild<QTreeView*>()->model();
        const QModelIndex station = model.index(0, 0);
        const QModelIndex second = model.index(1, 0, station);
        QVERIFY(tree.findChild<QTreeView*>()->dragEnabled());
        QVERIFY(!(model.flags(station) & Qt::ItemIsDragEnabled));
        QVERIFY(model.flags(second) & Qt::ItemIsDragEnabled);
        QVERIFY(!model.mimeData({station}));
        const std::unique_ptr<QMimeData> data(model.mimeData({station, second}));
        const auto* point = qobject_cast<KVPointMimeData*>(data.get());
        QVERIFY(point);
        QCOMPARE(point->getData().tag, text("LEVEL"));
        QCOMPARE(model.mimeTypes(), QStringList(KVPointMimeData::format()));
    }

    void aTreeWithoutPointsSaysSo()
    {
        const PointTree tree;
        QCOMPARE(tree.findChild<QLabel*>()->text(), text("The project has no points."));
    }
};

QTEST_MAIN(tst_PointDrop)
#include "tst_pointdrop.moc"
