// The designer under a window manager: points dragged with the pointer from the tree onto the page. Runs in
// tests/support/run-on-x11.

#include "apps/designer/designerwindow.h"
#include "host/canvas/canvasview.h"
#include "host/design/designdocument.h"
#include "tests/support/activewindow.h"
#include "tests/support/ownsettings.h"
#include "tests/support/testproject.h"

#include <QDockWidget>
#include <QLineEdit>
#include <QProcess>
#include <QTimer>
#include <QTreeView>
#include <QtTest>

#include <memory>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// Has the X server act as if the user did, without waiting for its end: a drag is worked on meanwhile.
void act(const QStringList& arguments)
{
    QProcess::startDetached(text("xdotool"), arguments);
}

QStringList moveTo(const QPoint& place)
{
    return {text("mousemove"), QString::number(place.x()), QString::number(place.y())};
}

/// Drags from one place of the screen to another, as a hand does: in steps, and then about the place until the widget
/// there heeds it.
class Hand : public QObject
{
public:
    Hand(const QPoint& from, const QPoint& to) : m_to(to)
    {
        constexpr int steps = 5;
        const QStringList pause = {text("sleep"), text("0.05")};
        QStringList all = moveTo(from) + pause + QStringList({text("mousedown"), text("1")}) + pause;
        for (int step = 1; step <= steps; ++step)
            all += moveTo(from + (to - from) * step / steps) + pause;
        QCoreApplication::instance()->installEventFilter(this);
        connect(&m_tremor, &QTimer::timeout, this, [this] { act(moveTo(m_to + QPoint(m_moves++ % 2, 0))); });
        connect(&m_walk, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
                [this] { m_tremor.start(100); });
        m_walk.start(text("xdotool"), all);
    }
    bool hasDropped() const { return m_hasDropped; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        const bool isHere = event->type() == QEvent::DragMove && (QCursor::pos() - m_to).manhattanLength() <= 1;
        if (isHere && m_tremor.isActive()) {
            m_tremor.stop();
            act({text("mouseup"), text("1")});
        }
        m_hasDropped |= event->type() == QEvent::Drop;
        return false;
    }

private:
    const QPoint m_to;
    QProcess m_walk;
    QTimer m_tremor;
    int m_moves = 0;
    bool m_hasDropped = false;
};

/// Returns when the point was dropped.
void drag(const QPoint& from, const QPoint& to)
{
    const Hand hand(from, to);
    QTRY_VERIFY_WITH_TIMEOUT(hand.hasDropped(), 20000);
}

QString bindingsOf(const DesignDocument& document, const char* shape)
{
    const Shape* found = document.canvas().findShape(text(shape));
    QStringList texts;
    if (found) {
        for (const ShapeBinding& binding : document.bindings(*found))
            texts.append(binding.purpose() + QLatin1Char(' ') + binding.tag);
    }
    return texts.join(text(" | "));
}

} // namespace

class tst_DesignerOnX11 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(QGuiApplication::platformName(), text("xcb")); }

    void init()
    {
        m_project = std::make_unique<TestProject>();
        m_project->write("points.csv", "id,name,kind,unit\n200001,FLOW,analog,l/min\n200002,LEVEL,analog,m\n");
        auto opened = DesignSystem::open(m_project->folder());
        QVERIFY(opened);
        m_system = std::move(*opened);
        m_system->scripts().setEnabled(true);
        m_window = std::make_unique<DesignerWindow>(*m_system);
        m_window->resize(1200, 760);
        m_window->move(0, 0);
        QVERIFY(m_window->openPage(text("plant")));
        m_window->show();
        m_window->activateWindow();
        QVERIFY(becomesActive(*m_window));
        m_tree = m_window->findChild<QDockWidget*>(text("points"))->findChild<QTreeView*>();
        m_tree->expandAll();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }
    void cleanup()
    {
        if (m_window->document() && m_window->document()->isModified())
            QVERIFY(m_window->document()->save());
        m_window.reset();
        m_system.reset();
        m_project.reset();
    }

    void aPointIsDraggedOntoThePage()
    {
        drag(onTree("LEVEL"), onPage({300, 150}));
        QTRY_COMPARE(bindingsOf(document(), "LEVEL"), text("Number LEVEL"));
        const Shape* made = document().canvas().findShape(text("LEVEL"));
        QVERIFY(made->place().contains(QPointF(300, 150)));
        QTRY_COMPARE(m_window->selected(), made);
    }

    void aPointIsDraggedOntoAShape()
    {
        drag(onTree("FLOW"), onPage({250, 50}));
        QTRY_COMPARE(bindingsOf(document(), "text"), text("Text FLOW"));
        QTRY_COMPARE(m_window->selected(), document().canvas().findShape(text("text")));
        drag(onTree("LEVEL"), onPage({250, 50}));
        QTRY_COMPARE(bindingsOf(document(), "text"), text("Text LEVEL"));
        QCOMPARE(document().canvas().shapeCount(), std::size_t(3));
        act({text("key"), text("ctrl+z")});
        QTRY_COMPARE(bindingsOf(document(), "text"), text("Text FLOW"));
        act({text("key"), text("ctrl+shift+z")});
        QTRY_COMPARE(bindingsOf(document(), "text"), text("Text LEVEL"));
    }

    void aPointIsDraggedOntoTheLineOfTheSelectedShape()
    {
        m_window->select(document().canvas().findShape(text("text")));
        QDockWidget* binding = m_window->findChild<QDockWidget*>(text("binding"));
        QLineEdit* line = nullptr;
        QTRY_VERIFY((line = binding->findChild<QLineEdit*>(text("pointNameEdit"))) && line->isVisible());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest); // it lies where it will stay
        drag(onTree("FLOW"), line->mapToGlobal(line->rect().center()));
        QTRY_COMPARE(bindingsOf(document(), "text"), text("Text FLOW"));
    }

private:
    DesignDocument& document() const { return *m_window->document(); }
    QPoint onPage(const QPointF& place) const
    {
        const auto* view = m_window->findChild<CanvasView*>();
        return view->viewport()->mapToGlobal(view->renderer().transform().map(place).toPoint());
    }
    QPoint onTree(const char* tag) const
    {
        const QModelIndexList found = m_tree->model()->match(m_tree->model()->index(0, 0), Qt::DisplayRole, text(tag),
                                                             1, Qt::MatchExactly | Qt::MatchRecursive);
        return m_tree->viewport()->mapToGlobal(m_tree->visualRect(found.value(0)).center());
    }

    OwnSettings m_settings;
    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<DesignSystem> m_system;
    std::unique_ptr<DesignerWindow> m_window;
    QTreeView* m_tree = nullptr;
};

QTEST_MAIN(tst_DesignerOnX11)
#include "tst_designeronx11.moc"
