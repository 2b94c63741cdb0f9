// The operator's widgets under a real pointer and real keys. Runs in tests/support/run-on-x11.

#include "platform/ui/kvpointmimedata.h"
#include "scada/widgets/controlconfirm.h"
#include "scada/widgets/pointselectwidget.h"
#include "scada/widgets/pointtooltipwidget.h"
#include "tests/scada/confirmedcommands.h"
#include "tests/support/activewindow.h"
#include "tests/support/testcore.h"

#include <QDrag>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QProcess>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QtTest>

#include <memory>

namespace {

/// Has the X server act as if the user did: "key Return", "type text", "mousemove 10 10".
void act(const QStringList& arguments)
{
    QCOMPARE(QProcess::execute(QStringLiteral("xdotool"), arguments), 0);
}
void press(const char* key)
{
    act({QStringLiteral("key"), QString::fromLatin1(key)});
}
void type(const char* text)
{
    act({QStringLiteral("type"), QString::fromLatin1(text)});
}

const Korvane::BrowerItemInfo pointOfFlow{Korvane::ScadaObjectType::AnalogPoint,
                                          200001,
                                          QStringLiteral("P1.FLOW"),
                                          QStringLiteral("P1.FLOW"),
                                          QStringLiteral("Flow behind pump 1"),
                                          QStringLiteral("HighLimit")};

/// A list from which a point and a plain text can be dragged off; it keeps what became of the drags.
class Source : public QListWidget
{
public:
    Source()
    {
        addItems({QStringLiteral("P1.FLOW"), QStringLiteral("some text")});
        setDragEnabled(true);
    }

    /// The middle of a row on the screen.
    QPoint placeOf(int row) const { return viewport()->mapToGlobal(visualRect(model()->index(row, 0)).center()); }

    QList<Qt::DropAction> ended;

protected:
    void startDrag(Qt::DropActions) override
    {
        auto* drag = new QDrag(this);
        if (currentRow() == 0) {
            drag->setMimeData(new KVPointMimeData(pointOfFlow));
        } else {
            auto* text = new QMimeData;
            text->setText(currentItem()->text());
            drag->setMimeData(text);
        }
        ended.append(drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::CopyAction));
    }
};

/// Drags with the real pointer, in small moves as a hand does; \returns at the drop's end.
void drag(const QPoint& from, const QPoint& to)
{
    QStringList steps = {QStringLiteral("mousemove"), QString::number(from.x()), QString::number(from.y()),
                         QStringLiteral("mousedown"), QStringLiteral("1")};
    constexpr int moves = 6;
    for (int i = 1; i <= moves; ++i) {
        const QPoint at = from + (to - from) * i / moves;
        steps += {QStringLiteral("sleep"), QStringLiteral("0.05"), QStringLiteral("mousemove"), QString::number(at.x()),
                  QString::number(at.y())};
    }
    steps += {QStringLiteral("sleep"), QStringLiteral("0.05"), QStringLiteral("mouseup"), QStringLiteral("1")};
    QProcess hand;
    hand.start(QStringLiteral("xdotool"), steps); // beside the event loop, which the drag needs
    QTRY_COMPARE(hand.state(), QProcess::NotRunning);
    QCOMPARE(hand.exitCode(), 0);
}

QPoint middleOf(const QWidget* widget)
{
    return widget->mapToGlobal(widget->rect().center());
}

} // namespace

class tst_WidgetsOnX11 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb")); }

    void init()
    {
        m_desk = std::make_unique<QWidget>();
        auto* rows = new QVBoxLayout(m_desk.get());
        m_source = new Source;
        m_target = new PointSelectWidget;
        rows->addWidget(m_source);
        rows->addWidget(m_target);
        m_desk->resize(400, 300);
        m_desk->show();
        m_desk->activateWindow();
        QVERIFY(becomesActive(*m_desk));
    }
    void cleanup() { m_desk.reset(); }

    void aPointIsDraggedOntoTheEdit_data()
    {
        QTest::addColumn<bool>("withField");
        QTest::addColumn<QString>("text");
        QTest::newRow("the tag") << false << QStringLiteral("P1.FLOW");
        QTest::newRow("the tag with the field") << true << QStringLiteral("P1.FLOW:HighLimit");
    }
    void aPointIsDraggedOntoTheEdit()
    {
        QFETCH(bool, withField);
        QFETCH(QString, text);
        m_target->setTagString(QStringLiteral("before"));
        m_target->setShowProperty(withField);
        const QSignalSpy changed(m_target, &PointSelectWidget::linkInfoChanged);
        const QSignalSpy selected(m_target, &PointSelectWidget::browserItemSelected);
        drag(m_source->placeOf(0), middleOf(edit()));
        QTRY_COMPARE(m_source->ended, QList<Qt::DropAction>{Qt::MoveAction});
        QCOMPARE(m_target->getTagString(), text);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(selected.size(), 1);
        QCOMPARE(selected.first().first().value<Korvane::BrowerItemInfo>(), pointOfFlow);
    }

    void aTextIsDraggedOntoTheEditInVain()
    {
        m_target->setTagString(QStringLiteral("before"));
        const QSignalSpy changed(m_target, &PointSelectWidget::linkInfoChanged);
        const QSignalSpy selected(m_target, &PointSelectWidget::browserItemSelected);
        drag(m_source->placeOf(1), middleOf(edit()));
        QTRY_COMPARE(m_source->ended.size(), 1);
        QVERIFY(m_source->ended.first() != Qt::MoveAction); // nobody took it off the source
        QCOMPARE(m_target->getTagString(), QStringLiteral("before"));
        QCOMPARE(changed.size(), 0);
        QCOMPARE(selected.size(), 0);
    }

    void aTagIsTyped()
    {
        const QSignalSpy changed(m_target, &PointSelectWidget::linkInfoChanged);
        const QPoint place = middleOf(edit());
        act({QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y()),
             QStringLiteral("click"), QStringLiteral("1")});
        QTRY_VERIFY(edit()->hasFocus());
        type("@R::RTU1");
        QTRY_COMPARE(m_target->getTagString(), QStringLiteral("@R::RTU1"));
        QCOMPARE(changed.size(), 8);
        QCOMPARE(changed.last().first().toString(), QStringLiteral("@R::RTU1"));
    }

    void aCommandIsConfirmedByKeysAlone()
    {
        TestUsers users;
        SecuredProject project;
        TestCore core;
        core.users = &users;
        core.project = &project;
        ControlConfirm dialog(m_desk.get(), &core, QStringLiteral("CB-101 : OPEN"));
        auto* password = dialog.findChild<QLineEdit*>(QStringLiteral("password"));
        const QList<ShownBox> boxes = boxesDuring([&] {
            const int result = resultOf(dialog, [&] {
                QVERIFY(becomesActive(dialog));
                press("Tab"); // past the user
                QTRY_VERIFY(password->hasFocus());
                type("wrong");
                press("Return");
                QTRY_COMPARE(users.asked.size(), 1);
                QVERIFY(becomesActive(dialog));
                press("ctrl+a");
                type("k1");
                QTRY_COMPARE(password->text(), QStringLiteral("k1"));
                press("Return");
            });
            QCOMPARE(result, int(QDialog::Accepted));
        });
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(users.asked.last().second, QStringLiteral("k1"));
    }

    void aTipEndsWhenThePointerLeavesAWidget()
    {
        const QPoint inside = m_source->placeOf(0);
        act({QStringLiteral("mousemove"), QString::number(inside.x()), QString::number(inside.y())});
        QTRY_VERIFY(m_source->underMouse());
        const QPointer<PointToolTipWidget> tip =
            PointToolTipWidget::showTip(QStringLiteral("P1.FLOW"), QString(), inside + QPoint(30, 0), m_source);
        QVERIFY(QTest::qWaitForWindowExposed(tip));
        act({QStringLiteral("mousemove"), QString::number(inside.x() + 5), QString::number(inside.y())});
        type("x");
        QTRY_VERIFY(m_source->mapFromGlobal(QCursor::pos()).x() > 0);
        QVERIFY(tip && tip->isVisible());
        const QPoint outside = middleOf(edit());
        act({QStringLiteral("mousemove"), QString::number(outside.x()), QString::number(outside.y())});
        QTRY_VERIFY(!tip);
    }

private:
    QLineEdit* edit() const { return m_target->findChild<QLineEdit*>(); }

    std::unique_ptr<QWidget> m_desk;
    Source* m_source = nullptr;
    PointSelectWidget* m_target = nullptr;
};

QTEST_MAIN(tst_WidgetsOnX11)
#include "tst_widgetsonx11.moc"
