#include "scada/widgets/pointselectwidget.h"

#include "platform/ui/kvpointmimedata.h"
#include "platform/ui/pointbrowserdialog.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/narrowstyle.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/ownsettings.h"
#include "tests/support/stationlist.h"

#include <QApplication>
#include <QDropEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>

#include <memory>
#include <optional>

using Korvane::BrowerItemInfo;
using Korvane::BrowseTypeFlag;
using Korvane::ScadaObjectType;

namespace {

constexpr int pastValueColumn = 1; ///< of the browser's fields

/// The widget with its protected operation in reach, and what it emitted, in the order of emission.
class Selection : public PointSelectWidget
{
public:
    Selection()
    {
        connect(this, &PointSelectWidget::linkInfoChanged, [this](const QString& text) { emitted.append(text); });
        connect(this, &PointSelectWidget::browserItemSelected, [this](const BrowerItemInfo& source) {
            emitted.append(QStringLiteral("selected"));
            selected.append(source);
        });
    }

    using PointSelectWidget::updateLinkSource;

    template <typename Child>
    Child* find(const char* name) const
    {
        return findChild<Child*>(QLatin1String(name));
    }
    QLineEdit* edit() const { return find<QLineEdit>("pointNameEdit"); }
    QToolButton* button() const { return find<QToolButton>("moreBtn"); }
    QGridLayout* grid() const { return find<QGridLayout>("gridLayout"); }
    QList<PointBrowserDialog*> browsers() const { return findChildren<PointBrowserDialog*>(); }
    /// Opens the browser, or brings it back.
    PointBrowserDialog* browse() const
    {
        QTest::mouseClick(button(), Qt::LeftButton);
        return browsers().value(0);
    }

    QStringList emitted;
    QList<BrowerItemInfo> selected;
};

BrowerItemInfo itemOf(ScadaObjectType type, const char* tag, const char* name, const char* field)
{
    return {type, 7, QLatin1String(tag), QLatin1String(name), QStringLiteral("described"), QLatin1String(field)};
}

const BrowerItemInfo limitOfFlow = itemOf(ScadaObjectType::AnalogPoint, "P1.FLOW", "FLOW", "HighLimit");

/// Drags \p data in over \p over and, maybe, drops it there.
struct Drag
{
    explicit Drag(const QMimeData& data, Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction)
        : enter(QPoint(5, 5), actions, &data, Qt::LeftButton, Qt::NoModifier),
          drop(QPointF(5, 5), actions, &data, Qt::LeftButton, Qt::NoModifier)
    {
    }
    void over(QWidget* target) { QCoreApplication::sendEvent(target, &enter); }
    void dropOn(QWidget* target)
    {
        over(target);
        QCoreApplication::sendEvent(target, &drop);
    }

    QDragEnterEvent enter;
    QDropEvent drop;
};

QString countIn(const PointBrowserDialog* browser)
{
    return browser->findChild<QLabel*>(QStringLiteral("countLabel"))->text();
}

} // namespace

class tst_PointSelectWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        dropOffscreenWarnings();
        QApplication::setStyle(new NarrowStyle);
    }
    void init()
    {
        m_list.emplace(someStations());
        m_widget = std::make_unique<Selection>();
        m_widget->show();
    }
    void cleanup()
    {
        m_widget.reset();
        m_list.reset();
    }

    void theFormIsNamedTitledAndSized()
    {
        QWidget parent;
        const PointSelectWidget widget(&parent);
        QCOMPARE(widget.parentWidget(), &parent);
        QCOMPARE(widget.objectName(), QStringLiteral("PointSelectWidget"));
        QCOMPARE(widget.windowTitle(), QStringLiteral("PointSelectWidget"));
        QCOMPARE(widget.size(), QSize(376, 22));
        QVERIFY(widget.acceptDrops());
    }

    void theFormsLayoutsNestAsDesigned()
    {
        auto* outer = qobject_cast<QGridLayout*>(m_widget->layout());
        QVERIFY(outer);
        QCOMPARE(outer->objectName(), QStringLiteral("gridLayout_2"));
        QCOMPARE(outer->horizontalSpacing(), 6);
        QCOMPARE(outer->verticalSpacing(), 6);
        QCOMPARE(outer->contentsMargins(), QMargins());
        QCOMPARE(outer->count(), 1);
        QCOMPARE(outer->itemAtPosition(0, 0)->layout(), m_widget->grid());

        const QGridLayout* grid = m_widget->grid();
        QCOMPARE(grid->horizontalSpacing(), 6);
        QCOMPARE(grid->verticalSpacing(), 6);
        QCOMPARE(grid->sizeConstraint(), QLayout::SetDefaultConstraint);
        QCOMPARE(grid->count(), 4);
        QCOMPARE(grid->itemAtPosition(0, 0)->widget(), m_widget->find<QLabel>("label"));
        QCOMPARE(grid->itemAtPosition(0, 1)->widget(), m_widget->edit());
        QCOMPARE(grid->itemAtPosition(0, 2)->widget(), m_widget->button());
        QSpacerItem* spacer = grid->itemAtPosition(0, 3)->spacerItem();
        QVERIFY(spacer);
        QCOMPARE(spacer->sizeHint(), QSize(13, 20));
        QCOMPARE(spacer->sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
        QCOMPARE(spacer->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
    }

    void theFormsPartsAreAsDesigned()
    {
        const auto* label = m_widget->find<QLabel>("label");
        QCOMPARE(label->text(), QStringLiteral("Point Name : "));
        QCOMPARE(label->alignment(), Qt::AlignRight | Qt::AlignTrailing | Qt::AlignVCenter);
        QVERIFY(!m_widget->edit()->acceptDrops());
        QCOMPARE(m_widget->button()->text(), QStringLiteral("..."));
        QCOMPARE(m_widget->edit()->nextInFocusChain(), m_widget->button());
        m_widget->activateWindow();
        m_widget->edit()->setFocus();
        QTRY_VERIFY(m_widget->edit()->hasFocus());
        QTest::keyClick(m_widget->edit(), Qt::Key_Tab);
        QVERIFY(m_widget->button()->hasFocus());
    }

    void everyTextIsLookedUpUnderTheClass()
    {
        const MarkingTranslator translator;
        const Selection widget;
        QCOMPARE(widget.windowTitle(), QStringLiteral("PointSelectWidget::PointSelectWidget"));
        QCOMPARE(widget.find<QLabel>("label")->text(), QStringLiteral("PointSelectWidget::Point Name : "));
        QCOMPARE(widget.button()->text(), QStringLiteral("PointSelectWidget::..."));
        QCOMPARE(PointSelectWidget::tr("x"), QStringLiteral("PointSelectWidget::x"));
        QCOMPARE(translatedFromUtf8<PointSelectWidget>("x"), QStringLiteral("PointSelectWidget::x"));
    }

    void signalsAndSlotsStandInTheirOrder()
    {
        const QMetaObject& meta = PointSelectWidget::staticMetaObject;
        QList<QByteArray> signatures;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            signatures.append(meta.method(i).methodSignature());
        QCOMPARE(signatures,
                 (QList<QByteArray>{"linkInfoChanged(QString)", "browserItemSelected(Korvane::BrowerItemInfo)",
                                    "dlgDestroyed(QObject*)", "slotBrowsePoint()", "reset()", "updateBrowserItem()",
                                    "handleTextChange(QString)"}));
        for (int i = 0; i < signatures.size(); ++i)
            QCOMPARE(meta.method(meta.methodOffset() + i).methodType(),
                     i < 2 ? QMetaMethod::Signal : QMetaMethod::Slot);
    }

    void theTextIsTheTag()
    {
        QCOMPARE(m_widget->getTagString(), QString());
        m_widget->setTagString(QStringLiteral("@R::RTU1"));
        QCOMPARE(m_widget->edit()->text(), QStringLiteral("@R::RTU1"));
        m_widget->edit()->setText(QStringLiteral(" no tag: at all "));
        QCOMPARE(m_widget->getTagString(), QStringLiteral(" no tag: at all "));
    }

    void everyChangeIsToldOnce()
    {
        m_widget->setTagString(QStringLiteral("FLOW"));
        m_widget->setTagString(QStringLiteral("FLOW"));
        QCOMPARE(m_widget->emitted, QStringList{QStringLiteral("FLOW")});
        QTest::keyClicks(m_widget->edit(), QStringLiteral("12"));
        QCOMPARE(m_widget->emitted.mid(1), QStringList({QStringLiteral("FLOW1"), QStringLiteral("FLOW12")}));
        m_widget->reset();
        m_widget->reset();
        QCOMPARE(m_widget->emitted.mid(3), QStringList{QString()});
        QCOMPARE(m_widget->getTagString(), QString());
    }

    void handlingATextOnlyTellsIt()
    {
        m_widget->setTagString(QStringLiteral("FLOW"));
        m_widget->handleTextChange(QStringLiteral("FLOW"));
        m_widget->handleTextChange(QStringLiteral("other"));
        QCOMPARE(m_widget->emitted,
                 QStringList({QStringLiteral("FLOW"), QStringLiteral("FLOW"), QStringLiteral("other")}));
        QCOMPARE(m_widget->getTagString(), QStringLiteral("FLOW"));
    }

    void theLabelCanBeChangedAndHidden()
    {
        auto* label = m_widget->find<QLabel>("label");
        m_widget->setLabel(QStringLiteral("Set point:"));
        QCOMPARE(label->text(), QStringLiteral("Set point:"));
        m_widget->hideName();
        QVERIFY(label->isHidden());
        m_widget->setShowLabel(true);
        QVERIFY(label->isVisible());
        m_widget->setShowLabel(false);
        QVERIFY(label->isHidden());
    }

    void theSpacerIsTakenOutButNotDeleted()
    {
        const std::unique_ptr<QLayoutItem> spacer(m_widget->grid()->itemAtPosition(0, 3));
        const int width = m_widget->edit()->width();
        m_widget->removeSpacer();
        QCOMPARE(m_widget->grid()->count(), 3);
        QVERIFY(!m_widget->grid()->itemAtPosition(0, 3));
        QCOMPARE(spacer->sizeHint(), QSize(13, 20));
        QTRY_VERIFY(m_widget->edit()->width() > width);
        m_widget->removeSpacer();
        QCOMPARE(m_widget->grid()->count(), 3);
    }

    void aDragOfAnyKindIsWelcome_data()
    {
        QTest::addColumn<bool>("isPoint");
        QTest::newRow("a point") << true;
        QTest::newRow("a plain text") << false;
    }
    void aDragOfAnyKindIsWelcome()
    {
        QFETCH(bool, isPoint);
        QMimeData text;
        text.setText(QStringLiteral("P1.FLOW"));
        const KVPointMimeData point(limitOfFlow);
        Drag drag(isPoint ? static_cast<const QMimeData&>(point) : text);
        drag.enter.ignore();
        drag.over(m_widget.get());
        QVERIFY(drag.enter.isAccepted());
        QCOMPARE(drag.enter.dropAction(), drag.enter.proposedAction());
        QCOMPARE(m_widget->emitted, QStringList());
    }

    void onlyADragInThePointFormatGetsTheProposedAction()
    {
        QMimeData text;
        text.setText(QStringLiteral("P1.FLOW"));
        QMimeData bytes;
        bytes.setData(QStringLiteral("application/KVPoint_MimeData"), "P1.FLOW");
        const KVPointMimeData point(limitOfFlow);
        const auto actionAfter = [this](const QMimeData& data) {
            Drag drag(data, Qt::CopyAction | Qt::LinkAction);
            drag.enter.setDropAction(Qt::LinkAction);
            drag.over(m_widget.get());
            return drag.enter.isAccepted() ? drag.enter.dropAction() : Qt::IgnoreAction;
        };
        QVERIFY(actionAfter(point) != Qt::LinkAction);
        QVERIFY(actionAfter(bytes) != Qt::LinkAction);
        QCOMPARE(actionAfter(text), Qt::LinkAction);
    }

    void aDroppedPointIsTakenMovedAndTold()
    {
        const KVPointMimeData point(limitOfFlow);
        Drag drag(point);
        QCOMPARE(drag.drop.dropAction(), Qt::CopyAction);
        QList<QPair<bool, Qt::DropAction>> whenTold;
        const auto note = [&] { whenTold.append({drag.drop.isAccepted(), drag.drop.dropAction()}); };
        connect(m_widget.get(), &PointSelectWidget::linkInfoChanged, note);
        connect(m_widget.get(), &PointSelectWidget::browserItemSelected, note);
        drag.drop.ignore();
        drag.dropOn(m_widget.get());
        QVERIFY(drag.drop.isAccepted());
        QCOMPARE(drag.drop.dropAction(), Qt::MoveAction);
        QCOMPARE(whenTold, (QList<QPair<bool, Qt::DropAction>>{{false, Qt::CopyAction}, {true, Qt::MoveAction}}));
        QCOMPARE(m_widget->getTagString(), QStringLiteral("P1.FLOW"));
        QCOMPARE(m_widget->emitted, QStringList({QStringLiteral("P1.FLOW"), QStringLiteral("selected")}));
        QCOMPARE(m_widget->selected, QList<BrowerItemInfo>{limitOfFlow});
    }

    void thePointThatStandsThereIsToldAsSelectedAlone()
    {
        const KVPointMimeData point(limitOfFlow);
        m_widget->setTagString(QStringLiteral("P1.FLOW"));
        m_widget->emitted.clear();
        Drag(point).dropOn(m_widget.get());
        QCOMPARE(m_widget->emitted, QStringList{QStringLiteral("selected")});
    }

    void aPointDroppedOnTheEditGoesToTheWidget()
    {
        const KVPointMimeData point(limitOfFlow);
        m_widget->setTagString(QStringLiteral("before"));
        Drag drag(point);
        drag.dropOn(m_widget->edit());
        QVERIFY(drag.drop.isAccepted());
        QCOMPARE(m_widget->getTagString(), QStringLiteral("P1.FLOW")); // in place of the text, not in the middle of it
        QCOMPARE(m_widget->selected.size(), 1);
    }

    void whatIsNoPointDropsOffWithoutATrace_data()
    {
        QTest::addColumn<QString>("format");
        QTest::newRow("a plain text") << QStringLiteral("text/plain");
        QTest::newRow("bytes in the format alone") << KVPointMimeData::format(); // the class counts
    }
    void whatIsNoPointDropsOffWithoutATrace()
    {
        QFETCH(QString, format);
        QMimeData data;
        data.setData(format, "P1.FLOW");
        m_widget->setTagString(QStringLiteral("before"));
        m_widget->emitted.clear();
        for (QWidget* target : {static_cast<QWidget*>(m_widget.get()), static_cast<QWidget*>(m_widget->edit())}) {
            Drag drag(data);
            drag.drop.ignore();
            drag.dropOn(target);
            QVERIFY(drag.enter.isAccepted());
            QVERIFY(!drag.drop.isAccepted());
        }
        QCOMPARE(m_widget->getTagString(), QStringLiteral("before"));
        QCOMPARE(m_widget->emitted, QStringList());
    }

    void itemsAsWritten_data()
    {
        QTest::addColumn<BrowerItemInfo>("item");
        QTest::addColumn<QString>("plain");
        QTest::addColumn<QString>("withField");
        const auto row = [](const char* name, const BrowerItemInfo& item, const char* plain, const char* withField) {
            QTest::newRow(name) << item << QString::fromLatin1(plain) << QString::fromLatin1(withField);
        };
        using Type = ScadaObjectType;
        row("an analog point by its tag", limitOfFlow, "P1.FLOW", "P1.FLOW:HighLimit");
        row("a digital point", itemOf(Type::DigitalPoint, "P1.RUN", "RUN", "Tag"), "P1.RUN", "P1.RUN:Tag");
        row("a point of no known kind", itemOf(Type::Point, "P1.X", "X", "Value"), "P1.X", "P1.X:Value");
        row("a point without a field", itemOf(Type::AnalogPoint, "P1.FLOW", "FLOW", ""), "P1.FLOW", "P1.FLOW");
        row("a unit by its name", itemOf(Type::RtuObject, "shown", "RTU1", "Scan"), "shown", "@R::RTU1:Scan");
        row("a line", itemOf(Type::ChannelObject, "shown", "COM1", ""), "shown", "@C::COM1");
        row("a property", itemOf(Type::ApplicationProperty, "shown", "Shift", ""), "shown", "@::Shift");
        row("no object", itemOf(Type::NoObject, "shown", "5", ""), "shown", "5");
        row("nothing", BrowerItemInfo(), "", "");
    }
    void itemsAsWritten()
    {
        QFETCH(BrowerItemInfo, item);
        QFETCH(QString, plain);
        QFETCH(QString, withField);
        m_widget->updateLinkSource(item);
        QCOMPARE(m_widget->getTagString(), plain);
        m_widget->setShowProperty(true);
        QCOMPARE(m_widget->getTagString(), plain);
        m_widget->updateLinkSource(item);
        QCOMPARE(m_widget->getTagString(), withField);
        QCOMPARE(m_widget->selected, QList<BrowerItemInfo>());
    }

    void theBrowserOpensAtThePointThatIsTyped()
    {
        m_widget->setTagString(QStringLiteral("P2.FLOW"));
        const PointBrowserDialog* browser = m_widget->browse();
        QVERIFY(browser && browser->isVisible());
        QCOMPARE(browser->parentWidget(), m_widget.get());
        QCOMPARE(browser->windowType(), Qt::Window);
        QVERIFY(!browser->isModal());
        QVERIFY(browser->testAttribute(Qt::WA_DeleteOnClose));
        QTRY_COMPARE(QApplication::activeWindow(), browser);
        QVERIFY(!browser->isPropertyViewShown());
        QCOMPARE(browser->getSelectedItem().tag, QStringLiteral("P2.FLOW"));
        QCOMPARE(m_widget->emitted, QStringList{QStringLiteral("P2.FLOW")});
    }

    void theBrowserOpensAtTheFieldThatIsTyped()
    {
        m_widget->setShowProperty(true);
        m_widget->setTagString(QStringLiteral("P2.FLOW:HighLimit"));
        const PointBrowserDialog* browser = m_widget->browse();
        QVERIFY(browser->isPropertyViewShown());
        QCOMPARE(browser->getSelectedItem().tag, QStringLiteral("P2.FLOW"));
        QCOMPARE(browser->getSelectedItem().property, QStringLiteral("HighLimit"));
    }

    void theBrowserShowsNoPastValues() // having no data service to ask for them
    {
        m_widget->setShowProperty(true);
        m_widget->setTagString(QStringLiteral("P1.FLOW"));
        const auto* fields = m_widget->browse()->findChild<QTreeView*>(QStringLiteral("fieldsView"));
        QVERIFY(fields->isVisible());
        QVERIFY(fields->isColumnHidden(pastValueColumn));
        const QAbstractItemModel* model = fields->model();
        QVERIFY(model->rowCount() > 1);
        for (int row = 0; row < model->rowCount(); ++row)
            QCOMPARE(model->index(row, pastValueColumn).data().toString(), QString());
    }

    void withoutFieldsTheFieldThatIsTypedIsNotChosen()
    {
        m_widget->setTagString(QStringLiteral("P2.FLOW:HighLimit"));
        const PointBrowserDialog* browser = m_widget->browse();
        m_widget->setShowProperty(true);
        QCOMPARE(browser->getSelectedItem().tag, QStringLiteral("P2.FLOW"));
        QCOMPARE(browser->getSelectedItem().property, QString());
    }

    void theBrowserOpensWhateverIsTyped_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QString();
        QTest::newRow("a number") << QStringLiteral("12.5");
        QTest::newRow("no tag") << QStringLiteral("@R::");
        QTest::newRow("an unknown point") << QStringLiteral("NO.SUCH:Value");
    }
    void theBrowserOpensWhateverIsTyped()
    {
        QFETCH(QString, text);
        m_widget->setTagString(text);
        const PointBrowserDialog* browser = m_widget->browse();
        QVERIFY(browser->isVisible());
        QCOMPARE(browser->getSelectedItem(), BrowerItemInfo());
        QCOMPARE(m_widget->getTagString(), text);
    }

    void aSecondPressBringsTheBrowserBackWhereItStood()
    {
        m_widget->setTagString(QStringLiteral("P1.FLOW"));
        PointBrowserDialog* browser = m_widget->browse();
        m_widget->setTagString(QStringLiteral("P2.FLOW"));
        QCOMPARE(m_widget->browse(), browser);
        QCOMPARE(m_widget->browsers().size(), 1);
        QCOMPARE(browser->getSelectedItem().tag, QStringLiteral("P1.FLOW")); // kept
        browser->hide();
        QCOMPARE(m_widget->browse(), browser);
        QVERIFY(browser->isVisible());
    }

    void theButtonOpensOnRelease()
    {
        QTest::mousePress(m_widget->button(), Qt::LeftButton);
        QCOMPARE(m_widget->browsers().size(), 0);
        QTest::mouseRelease(m_widget->button(), Qt::LeftButton);
        QCOMPARE(m_widget->browsers().size(), 1);
    }

    void fieldsAreShownAtOnceInAnOpenBrowser()
    {
        const PointBrowserDialog* browser = m_widget->browse();
        m_widget->setShowProperty(true);
        QVERIFY(browser->isPropertyViewShown());
        m_widget->setShowProperty(false);
        QVERIFY(!browser->isPropertyViewShown());
    }

    void okTakesWhatIsSelectedEachTime()
    {
        PointBrowserDialog* browser = m_widget->browse();
        browser->locateToPoint(ScadaObjectType::AnalogPoint, 200001);
        const BrowerItemInfo flow = browser->getSelectedItem();
        Q_EMIT browser->emitOk();
        QCOMPARE(m_widget->emitted, QStringList({QStringLiteral("P1.FLOW"), QStringLiteral("selected")}));
        QVERIFY(browser->isVisible());
        browser->locateToPoint(ScadaObjectType::RtuObject, 1);
        Q_EMIT browser->emitOk();
        QCOMPARE(m_widget->getTagString(), QStringLiteral("@R::RTU1"));
        Q_EMIT browser->emitOk();
        QCOMPARE(m_widget->emitted.mid(2),
                 QStringList({QStringLiteral("@R::RTU1"), QStringLiteral("selected"), QStringLiteral("selected")}));
        QCOMPARE(m_widget->selected.size(), 3);
        QCOMPARE(m_widget->selected.first(), flow);
        QCOMPARE(m_widget->browsers().size(), 1);
    }

    void withoutABrowserThereIsNothingToTake()
    {
        m_widget->setTagString(QStringLiteral("P2.FLOW"));
        m_widget->emitted.clear();
        m_widget->updateBrowserItem();
        const QPointer<PointBrowserDialog> browser = m_widget->browse();
        browser->locateToPoint(ScadaObjectType::AnalogPoint, 200001);
        browser->close();
        QTRY_VERIFY(!browser);
        m_widget->updateBrowserItem();
        QCOMPARE(m_widget->getTagString(), QStringLiteral("P2.FLOW"));
        QCOMPARE(m_widget->emitted, QStringList());
    }

    void okTakesTheFieldToo()
    {
        m_widget->setShowProperty(true);
        PointBrowserDialog* browser = m_widget->browse();
        browser->locateToPoint(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("LowLimit"));
        Q_EMIT browser->emitOk();
        QCOMPARE(m_widget->getTagString(), QStringLiteral("P1.FLOW:LowLimit"));
        QCOMPARE(m_widget->selected.first().property, QStringLiteral("LowLimit"));
    }

    void aClosedBrowserIsForgotten()
    {
        const QPointer<PointBrowserDialog> first = m_widget->browse();
        first->close();
        QTRY_VERIFY(!first);
        m_widget->setShowProperty(true); // passed to none
        m_widget->setTagString(QStringLiteral("P1.RUN"));
        const PointBrowserDialog* second = m_widget->browse();
        QVERIFY(second && second->isVisible() && second->isPropertyViewShown());
        QCOMPARE(second->getSelectedItem().tag, QStringLiteral("P1.RUN"));
    }

    void anEndThatIsReportedIsTheBrowsersEnd()
    {
        PointBrowserDialog* first = m_widget->browse();
        m_widget->dlgDestroyed(nullptr);
        m_widget->browse();
        QCOMPARE(m_widget->browsers().size(), 2);
        delete first;
        m_widget->browse(); // the second one's end was not reported, the first one's was
        QCOMPARE(m_widget->browsers().size(), 2);
    }

    void theKindsAreThoseOfTheNextBrowser()
    {
        const QPointer<PointBrowserDialog> first = m_widget->browse();
        QCOMPARE(countIn(first), QStringLiteral("7 of 7"));
        m_widget->setBrowserType(Korvane::BrowseType::AnalogPoints);
        m_widget->browse();
        QCOMPARE(countIn(first), QStringLiteral("7 of 7"));
        first->close();
        QTRY_VERIFY(!first);
        QCOMPARE(countIn(m_widget->browse()), QStringLiteral("3 of 3"));
    }

    void theBrowserGoesWithTheWidget()
    {
        const QPointer<PointBrowserDialog> browser = m_widget->browse();
        m_widget.reset();
        QVERIFY(!browser);
    }

private:
    OwnSettings m_settings;
    std::optional<StationList> m_list;
    std::unique_ptr<Selection> m_widget;
};

QTEST_MAIN(tst_PointSelectWidget)
#include "tst_pointselectwidget.moc"
