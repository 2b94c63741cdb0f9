#include "platform/data/dataserviceinterface.h"
#include "platform/ui/pointbrowserdialog.h"
#include "platform/ui/pointtreemodel.h"
#include "platform/utility/settingpath.h"
#include "tests/support/ownsettings.h"
#include "tests/support/stationlist.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QLocale>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSplitter>
#include <QTreeView>
#include <QtTest>

#include <cstdlib>
#include <memory>
#include <optional>

using Korvane::BrowerItemInfo;
using Korvane::BrowseTypeFlag;
using Korvane::ScadaObjectType;

namespace {

const BrowseTypeFlag everything(0x17);

/// Knows the last hour of P1.FLOW but for its mean; notes what it was asked for.
class LastHour : public DataServiceInterface
{
public:
    bool queryUserAccounts(const QString&, QList<EUserAccount>&) override { return false; }
    QVariant historyValue(ObjectKey object, DataCode::DataField field) override
    {
        asked.append(field);
        if (object != ObjectKey{ScadaObjectType::AnalogPoint, 200001} || field == DataCode::DataField::PastMean)
            return {};
        return 12.5;
    }
    QList<DataCode::DataField> asked;
};

const BrowerItemInfo flow{
    ScadaObjectType::AnalogPoint,         200001,   QStringLiteral("P1.FLOW"), QStringLiteral("P1.FLOW"),
    QStringLiteral("Flow behind pump 1"), QString()};

BrowerItemInfo withField(BrowerItemInfo item, const char* field)
{
    item.property = QLatin1String(field);
    return item;
}

} // namespace

class tst_PointBrowserDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void init()
    {
        QFile::remove(Korvane::getSettingPath(QString(), true, true));
        m_list.emplace(someStations());
    }
    void cleanup()
    {
        m_dialog.reset();
        m_list.reset();
    }

    void itComesUpWithTheFilterReadyAndNothingSelected()
    {
        open();
        QCOMPARE(m_dialog->windowTitle(), QStringLiteral("Points"));
        QVERIFY(!m_dialog->isModal());
        QVERIFY(filter()->hasFocus());
        QCOMPARE(count(), QStringLiteral("7 of 7"));
        QCOMPARE(outline(), QStringLiteral("North intake, Pump house, (no station)"));
        QVERIFY(objects()->isVisible());
        QVERIFY(!ok()->isEnabled());
        QCOMPARE(m_dialog->getSelectedItem(), BrowerItemInfo());
        QVERIFY(!m_dialog->isPropertyViewShown());
        QVERIFY(!fields()->isVisible());
    }

    void theKindsAreThoseAskedFor()
    {
        open(BrowseTypeFlag(7));
        QCOMPARE(count(), QStringLiteral("6 of 6"));
        m_dialog->locateToPoint(ScadaObjectType::ChannelObject, 1);
        QCOMPARE(m_dialog->getSelectedItem(), BrowerItemInfo());
    }

    void theListIsThatOfTheMaking()
    {
        open();
        m_list.reset();
        QCOMPARE(count(), QStringLiteral("7 of 7"));
        QTest::keyClicks(filter(), QStringLiteral("level"));
        QCOMPARE(count(), QStringLiteral("1 of 7"));
    }

    void anEmptyListSaysWhy()
    {
        open(BrowseTypeFlag());
        QVERIFY(explanation()->isVisible());
        QVERIFY(!objects()->isVisible());
        QCOMPARE(explanation()->text(),
                 QStringLiteral("The point list has no objects of the kinds that can be chosen here."));

        m_list.reset();
        open();
        QVERIFY(explanation()->isVisible());
        QCOMPARE(explanation()->text(), QStringLiteral("No point list is loaded, so there is nothing to choose from."));
        QCOMPARE(count(), QStringLiteral("0 of 0"));
        QVERIFY(!filter()->isEnabled());
        QVERIFY(!ok()->isEnabled());
        m_dialog->setShowPropertyView(true);
        m_dialog->locateToPoint(ScadaObjectType::Point, 200001, QStringLiteral("HighLimit"));
        QCOMPARE(m_dialog->getSelectedItem(), BrowerItemInfo());
    }

    void typingFilters()
    {
        open();
        QTest::keyClicks(filter(), QStringLiteral("Flow"));
        QCOMPARE(count(), QStringLiteral("2 of 7"));
        QCOMPARE(outline(), QStringLiteral("North intake, P1.FLOW, Pump house, P2.FLOW"));
        QTest::keyClicks(filter(), QStringLiteral("x"));
        QCOMPARE(count(), QStringLiteral("0 of 7"));
        QVERIFY(explanation()->isVisible());
        QCOMPARE(explanation()->text(), QStringLiteral("No name, description or station contains \"Flowx\"."));
        QTest::keyClick(filter(), Qt::Key_Backspace);
        QVERIFY(objects()->isVisible());
        QCOMPARE(count(), QStringLiteral("2 of 7"));
    }

    void stationsOpenForFewMatchesOnly()
    {
        PointDirectory::Station large{QStringLiteral("Large"), {}};
        for (int i = 0; i < 1201; ++i) {
            const QString name = (i < 201 ? QStringLiteral("few.%1") : QStringLiteral("many.%1")).arg(i);
            large.objects.push_back({{ScadaObjectType::AnalogPoint, 200001 + i}, name, {}});
        }
        m_list.emplace(std::vector<PointDirectory::Station>{large});
        open();
        const QModelIndex top = objects()->model()->index(0, 0);
        filter()->setText(QStringLiteral("few"));
        QCOMPARE(count(), QStringLiteral("201 of 1,201"));
        QVERIFY(!objects()->isExpanded(top));
        filter()->setText(QStringLiteral("few.1"));
        QCOMPARE(count(), QStringLiteral("111 of 1,201")); // 1, 10 to 19, 100 to 199
        QVERIFY(objects()->isExpanded(objects()->model()->index(0, 0)));
        filter()->clear();
        QVERIFY(!objects()->isExpanded(objects()->model()->index(0, 0)));
    }

    void theStationsThatWereOpenAreOpenAgain()
    {
        open();
        objects()->expand(objects()->model()->index(1, 0));
        QTest::keyClicks(filter(), QStringLiteral("level"));
        QCOMPARE(outline(), QStringLiteral("North intake, LEVEL"));
        QTest::keyClick(filter(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(filter(), Qt::Key_Delete);
        QCOMPARE(outline(), QStringLiteral("North intake, Pump house, P2.FLOW, DOOR, (no station)"));
    }

    void keysAloneTakeAnObject()
    {
        open();
        QSignalSpy taken(m_dialog.get(), &PointBrowserDialog::emitOk);
        QTest::keyClicks(filter(), QStringLiteral("flow"));
        QTest::keyClick(filter(), Qt::Key_Return);
        QVERIFY(taken.isEmpty());
        QTest::keyClick(filter(), Qt::Key_Down);
        QVERIFY(objects()->hasFocus());
        QCOMPARE(m_dialog->getSelectedItem(), flow);
        QTest::keyClick(objects(), Qt::Key_Return);
        QCOMPARE(taken.size(), 1);
        QVERIFY(m_dialog->isVisible());

        QTest::keyClick(objects(), Qt::Key_Down); // to the next station
        QCOMPARE(m_dialog->getSelectedItem(), BrowerItemInfo());
        QTest::keyClick(objects(), Qt::Key_Return);
        QCOMPARE(taken.size(), 1);
        QTest::keyClick(objects(), Qt::Key_Down);
        QTest::keyClick(objects(), Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(taken.size(), 2);
        QCOMPARE(m_dialog->getSelectedItem().tag, QStringLiteral("P2.FLOW"));
    }

    void downGoesToTheFirstStationWhereNoneIsOpen()
    {
        open();
        QTest::keyClick(filter(), Qt::Key_Down);
        QVERIFY(objects()->hasFocus());
        QCOMPARE(objects()->currentIndex().data().toString(), QStringLiteral("North intake"));
        QVERIFY(!ok()->isEnabled());
    }

    void downKeepsWhatIsSelected()
    {
        open();
        m_dialog->locateToPoint(ScadaObjectType::DigitalPoint, 100002);
        QTest::keyClick(filter(), Qt::Key_Down);
        QVERIFY(objects()->hasFocus());
        QCOMPARE(m_dialog->getSelectedItem().tag, QStringLiteral("DOOR"));
    }

    void downStaysWhereThereIsNothing()
    {
        open();
        QTest::keyClicks(filter(), QStringLiteral("zzz"));
        QTest::keyClick(filter(), Qt::Key_Down);
        QVERIFY(filter()->hasFocus());
        filter()->setText(QStringLiteral("flow"));
        QVERIFY(objects()->isVisible());
        QVERIFY(filter()->hasFocus());
    }

    void theFilterIsReadyEachTimeItComesUp()
    {
        open();
        QTest::keyClick(filter(), Qt::Key_Down);
        QCOMPARE(m_dialog->focusWidget(), objects());
        m_dialog->hide();
        m_dialog->show();
        QCOMPARE(m_dialog->focusWidget(), filter());
    }

    void theButtonTakesWhatIsSelected()
    {
        open();
        QSignalSpy taken(m_dialog.get(), &PointBrowserDialog::emitOk);
        QTest::mouseClick(ok(), Qt::LeftButton);
        QVERIFY(taken.isEmpty());
        clickOn(QStringLiteral("LEVEL"));
        QVERIFY(ok()->isEnabled());
        QTest::mouseClick(ok(), Qt::LeftButton);
        QCOMPARE(taken.size(), 1);
        QCOMPARE(m_dialog->getSelectedItem().number, 200002);
        QVERIFY(m_dialog->isVisible());
        clickOn(QStringLiteral("North intake"));
        QVERIFY(!ok()->isEnabled());
    }

    void aClickedObjectCanBeLetGo()
    {
        open();
        clickOn(QStringLiteral("LEVEL"));
        const QModelIndex level = objects()->currentIndex();
        QTest::mouseClick(objects()->viewport(), Qt::LeftButton, Qt::ControlModifier,
                          objects()->visualRect(level).center());
        QVERIFY(!ok()->isEnabled());
        QCOMPARE(m_dialog->getSelectedItem(), BrowerItemInfo());
        QSignalSpy taken(m_dialog.get(), &PointBrowserDialog::emitOk);
        QTest::keyClick(objects(), Qt::Key_Return);
        QVERIFY(taken.isEmpty());
    }

    void aDoubleClickTakesAnObjectAndOpensAStation()
    {
        open();
        QSignalSpy taken(m_dialog.get(), &PointBrowserDialog::emitOk);
        const QModelIndex station = objects()->model()->index(1, 0);
        QVERIFY(!objects()->isExpanded(station));
        doubleClick(objects(), station);
        QVERIFY(taken.isEmpty());
        QVERIFY(objects()->isExpanded(station));
        doubleClick(objects(), objects()->model()->index(1, PointTreeModel::Description, station));
        QCOMPARE(taken.size(), 1);
        QCOMPARE(m_dialog->getSelectedItem().tag, QStringLiteral("DOOR"));
    }

    void escapeAndTheButtonClose()
    {
        open();
        QTest::keyClick(filter(), Qt::Key_Escape);
        QVERIFY(!m_dialog->isVisible());
        m_dialog->show();
        QTest::mouseClick(m_dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Close), Qt::LeftButton);
        QVERIFY(!m_dialog->isVisible());
    }

    void itIsDeletedOnClosingWhereThatIsAskedFor()
    {
        const QPointer<PointBrowserDialog> dialog = new PointBrowserDialog(nullptr, Qt::Window, everything, nullptr);
        dialog->layout()->setSizeConstraint(QLayout::SetNoConstraint);
        QSignalSpy destroyed(dialog, SIGNAL(destroyed(QObject*)));
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->show();
        dialog->locateToPoint(ScadaObjectType::Point, 200001);
        QTest::keyClick(dialog, Qt::Key_Escape);
        QTRY_VERIFY(!dialog);
        QCOMPARE(destroyed.size(), 1);
    }

    void locating_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("tag");
        QTest::newRow("an analog point") << 1 << 200002 << "LEVEL";
        QTest::newRow("a point of either kind") << 6 << 100002 << "DOOR";
        QTest::newRow("a unit") << 2 << 1 << "@R::RTU1";
        QTest::newRow("a line") << 3 << 1 << "@C::COM1";
        QTest::newRow("what is not listed changes nothing") << 1 << 200009 << "P1.FLOW";
        QTest::newRow("nothing changes nothing") << -1 << 0 << "P1.FLOW";
        QTest::newRow("a property of the application changes nothing") << 7 << 1 << "P1.FLOW";
    }
    void locating()
    {
        QFETCH(int, type);
        QFETCH(int, number);
        QFETCH(QString, tag);
        open();
        m_dialog->locateToPoint(ScadaObjectType::AnalogPoint, 200001);
        m_dialog->locateToPoint(ScadaObjectType(type), number);
        QCOMPARE(m_dialog->getSelectedItem().tag, tag);
        QVERIFY(ok()->isEnabled());
        QVERIFY(objects()->isExpanded(objects()->currentIndex().parent()));
    }

    void whatWasLocatedIsInTheMiddle()
    {
        PointDirectory::Station large{QStringLiteral("Large"), {}};
        for (int i = 0; i < 1000; ++i)
            large.objects.push_back({{ScadaObjectType::AnalogPoint, 200001 + i}, QStringLiteral("P%1").arg(i), {}});
        m_list.emplace(std::vector<PointDirectory::Station>{large});
        m_dialog = std::make_unique<PointBrowserDialog>(nullptr, Qt::Window, everything, nullptr);
        m_dialog->layout()->setSizeConstraint(QLayout::SetNoConstraint);
        m_dialog->resize(860, 1500);
        m_dialog->locateToPoint(ScadaObjectType::Point, 200701);
        m_dialog->show();
        QVERIFY(isInTheMiddle());
        m_dialog->locateToPoint(ScadaObjectType::Point, 200101);
        QVERIFY(isInTheMiddle());
    }

    void locatingClearsAFilterThatHidesTheObject()
    {
        open();
        QTest::keyClicks(filter(), QStringLiteral("flow"));
        m_dialog->locateToPoint(ScadaObjectType::Point, 200003);
        QCOMPARE(filter()->text(), QStringLiteral("flow"));
        m_dialog->locateToPoint(ScadaObjectType::Point, 200009);
        QCOMPARE(filter()->text(), QStringLiteral("flow"));
        QCOMPARE(m_dialog->getSelectedItem().number, 200003);
        m_dialog->locateToPoint(ScadaObjectType::Point, 100002);
        QCOMPARE(filter()->text(), QString());
        QCOMPARE(m_dialog->getSelectedItem().number, 100002);
    }

    void whatTheFilterHidesComesBackSelected()
    {
        open();
        showFields();
        m_dialog->locateToPoint(ScadaObjectType::Point, 200001, QStringLiteral("HighLimit"));
        QTest::keyClicks(filter(), QStringLiteral("door"));
        QCOMPARE(m_dialog->getSelectedItem(), BrowerItemInfo());
        QVERIFY(!ok()->isEnabled());
        QCOMPARE(fields()->model()->rowCount(), 0);
        filter()->setText(QStringLiteral("flow"));
        QCOMPARE(m_dialog->getSelectedItem(), withField(flow, "HighLimit"));
        QVERIFY(ok()->isEnabled());
        filter()->setText(QStringLiteral("door"));
        QTest::keyClick(filter(), Qt::Key_Down);
        filter()->clear();
        QCOMPARE(m_dialog->getSelectedItem().tag, QStringLiteral("DOOR"));
    }

    void theTagNeverCarriesTheField()
    {
        open();
        showFields();
        m_dialog->locateToPoint(ScadaObjectType::Point, 200001, QStringLiteral("HighLimit"));
        QCOMPARE(m_dialog->getSelectedItem(), withField(flow, "HighLimit"));
        m_dialog->setShowPropertyView(false);
        QVERIFY(!m_dialog->isPropertyViewShown());
        QCOMPARE(m_dialog->getSelectedItem(), flow);
        showFields();
        QCOMPARE(m_dialog->getSelectedItem(), withField(flow, "HighLimit"));
    }

    void theFieldsAreThoseOfTheKind_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("some");
        QTest::newRow("analog") << 1 << 200001 << 54 << "Value HighLimit TodayMaximum PastMoment";
        QTest::newRow("digital") << 0 << 100001 << 30 << "Value StatusName TodayOnCount PastMoment";
        QTest::newRow("unit") << 2 << 1 << 8 << "UpdateTime CommState ScanState CommOfflineTime";
        QTest::newRow("line") << 3 << 1 << 5 << "CommState CommOnlineTime CommOfflineTime DriverState";
    }
    void theFieldsAreThoseOfTheKind()
    {
        QFETCH(int, type);
        QFETCH(int, number);
        QFETCH(int, count);
        QFETCH(QString, some);
        open();
        showFields();
        QVERIFY(m_dialog->isPropertyViewShown());
        QCOMPARE(fields()->model()->rowCount(), 0);
        m_dialog->locateToPoint(ScadaObjectType(type), number);
        QCOMPARE(fields()->model()->rowCount(), count); // with the row for none
        QCOMPARE(fields()->currentIndex().row(), 0);
        QCOMPARE(fields()->currentIndex().data().toString(), QStringLiteral("(no field)"));
        for (const QString& name : some.split(QLatin1Char(' '))) {
            m_dialog->locateToPoint(ScadaObjectType(type), number, name);
            QCOMPARE(m_dialog->getSelectedItem().property, name);
            QCOMPARE(fields()->currentIndex().data().toString(), name);
        }
        for (const char* unknown : {"", "value", "(no field)", "Nothing"}) {
            m_dialog->locateToPoint(ScadaObjectType(type), number, QLatin1String(unknown));
            QCOMPARE(m_dialog->getSelectedItem().property, QString());
        }
    }

    void aFieldIsChosenByMouseAndKeys()
    {
        open();
        showFields();
        m_dialog->locateToPoint(ScadaObjectType::AnalogPoint, 200001);
        QSignalSpy taken(m_dialog.get(), &PointBrowserDialog::emitOk);
        QTest::mouseClick(fields()->viewport(), Qt::LeftButton, {}, fields()->visualRect(fieldRow(1)).center());
        QCOMPARE(m_dialog->getSelectedItem(), withField(flow, "Value"));
        QTest::keyClick(fields(), Qt::Key_Down);
        QCOMPARE(m_dialog->getSelectedItem(), withField(flow, "ValueWithUnit"));
        QTest::keyClick(fields(), Qt::Key_Return);
        QCOMPARE(taken.size(), 1);
        doubleClick(fields(), fieldRow(3));
        QCOMPARE(taken.size(), 2);
        QCOMPARE(m_dialog->getSelectedItem(), withField(flow, "PointName"));
        QTest::keyClick(fields(), Qt::Key_Home);
        QCOMPARE(m_dialog->getSelectedItem(), flow);
    }

    void theFieldStaysForTheNextObjectThatHasIt()
    {
        open();
        showFields();
        m_dialog->locateToPoint(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("TodayMean"));
        clickOn(QStringLiteral("LEVEL"));
        QCOMPARE(m_dialog->getSelectedItem().property, QStringLiteral("TodayMean"));
        clickOn(QStringLiteral("P1.RUN"));
        QCOMPARE(m_dialog->getSelectedItem().property, QString());
        m_dialog->locateToPoint(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("TodayMean"));
        m_dialog->locateToPoint(ScadaObjectType::AnalogPoint, 200002);
        QCOMPARE(m_dialog->getSelectedItem().property, QString());
    }

    void contentsSayWhatAFieldHolds_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("contents");
        QTest::newRow("a limit") << 1 << 200001 << "HighLimit"
                                 << "in the point's unit";
        QTest::newRow("a sum over time") << 1 << 200001 << "TodayAccumulated"
                                         << "in the point's unit times hours";
        QTest::newRow("a duration") << 0 << 100001 << "TodayOnDuration"
                                    << "in seconds";
        QTest::newRow("a ratio") << 2 << 1 << "TodayCommRatio"
                                 << "in percent";
        QTest::newRow("events") << 0 << 100001 << "TodayOnCount"
                                << "count";
        QTest::newRow("a state") << 3 << 1 << "DriverState"
                                 << "state";
        QTest::newRow("a text") << 1 << 200001 << "PointName"
                                << "text";
        QTest::newRow("a time") << 1 << 200001 << "UpdateTime"
                                << "time";
        QTest::newRow("no field") << 1 << 200001 << ""
                                  << "";
    }
    void contentsSayWhatAFieldHolds()
    {
        QFETCH(int, type);
        QFETCH(int, number);
        QFETCH(QString, field);
        QFETCH(QString, contents);
        open();
        showFields();
        m_dialog->locateToPoint(ScadaObjectType(type), number, field);
        QCOMPARE(fieldCell(QStringLiteral("Contents")), contents);
    }

    void withoutADataServiceThereAreNoPastValues()
    {
        open();
        showFields();
        QVERIFY(fields()->isColumnHidden(1));
    }

    void pastValuesStandBesideTheirFields()
    {
        LastHour service;
        open(everything, &service);
        m_dialog->locateToPoint(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("PastMaximum"));
        QVERIFY(service.asked.isEmpty()); // nobody sees it
        showFields();
        QVERIFY(!fields()->isColumnHidden(1));
        using DataCode::DataField;
        const QList<DataField> past{DataField::PastMaximum, DataField::PastMinimum, DataField::PastMean,
                                    DataField::PastAccumulated, DataField::PastMoment};
        QCOMPARE(service.asked, past);
        QCOMPARE(fieldCell(QStringLiteral("Last hour")), QStringLiteral("12.5"));
        m_dialog->locateToPoint(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("PastMean"));
        QCOMPARE(fieldCell(QStringLiteral("Last hour")), QStringLiteral("-"));
        m_dialog->locateToPoint(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("HighLimit"));
        QCOMPARE(fieldCell(QStringLiteral("Last hour")), QString());

        service.asked.clear();
        clickOn(QStringLiteral("P1.RUN"));
        QCOMPARE(service.asked, QList<DataField>{DataField::PastMoment});
    }

    void itsLayoutComesBack()
    {
        const QRect placed(40, 50, 640, 400);
        open();
        showFields();
        m_dialog->setGeometry(placed);
        objects()->header()->resizeSection(0, 333);
        fields()->header()->resizeSection(0, 111);
        dragHandle(-70);
        const QList<int> sizes = splitter()->sizes();
        open();
        showFields();
        QCOMPARE(m_dialog->geometry(), placed);
        QCOMPARE(objects()->header()->sectionSize(0), 333);
        QCOMPARE(fields()->header()->sectionSize(0), 111);
        QCOMPARE(splitter()->sizes(), sizes);
    }

    void theWidthOfTheFieldsOutlivesADialogWithoutThem()
    {
        open();
        showFields();
        dragHandle(-50);
        fields()->header()->resizeSection(0, 111);
        const QList<int> sizes = splitter()->sizes();
        m_dialog->setShowPropertyView(false);
        open();
        open();
        showFields();
        QCOMPARE(splitter()->sizes(), sizes);
        QCOMPARE(fields()->header()->sectionSize(0), 111);
    }

    void settingsOfOtherGroupsStay()
    {
        const QString file = Korvane::getSettingPath(QString(), true, true);
        QSettings(file, QSettings::IniFormat).setValue(QStringLiteral("other/key"), 5);
        open();
        m_dialog.reset();
        const QSettings settings(file, QSettings::IniFormat);
        QCOMPARE(settings.value(QStringLiteral("other/key")).toInt(), 5);
        QVERIFY(!settings.value(QStringLiteral("PointBrowserDialog/Geometry")).toByteArray().isEmpty());
    }

    void aDamagedLayoutLeavesTheDefault()
    {
        open();
        const QSize plain = m_dialog->size();
        const int width = objects()->header()->sectionSize(0);
        m_dialog.reset();
        {
            QSettings settings(Korvane::getSettingPath(QString(), true, true), QSettings::IniFormat);
            for (const char* key : {"Geometry", "Columns", "FieldColumns", "Splitter"})
                settings.setValue(QLatin1String("PointBrowserDialog/") + QLatin1String(key), QByteArray("none"));
        }
        open();
        QCOMPARE(m_dialog->size(), plain);
        QCOMPARE(objects()->header()->sectionSize(0), width);
    }

private:
    void open(BrowseTypeFlag types = everything, DataServiceInterface* service = nullptr)
    {
        m_dialog.reset();
        m_dialog = std::make_unique<PointBrowserDialog>(nullptr, Qt::Window, types, service);
        m_dialog->layout()->setSizeConstraint(QLayout::SetNoConstraint); // no hints to pass on to the screen
        m_dialog->show();
        m_dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    }

    void showFields()
    {
        m_dialog->setShowPropertyView(true);
        QTRY_VERIFY(splitter()->sizes().at(1) > 0); // once they have a place
    }

    template <typename Widget>
    Widget* child(const char* name) const
    {
        return m_dialog->findChild<Widget*>(QLatin1String(name));
    }
    QLineEdit* filter() const { return child<QLineEdit>("filterEdit"); }
    QTreeView* objects() const { return child<QTreeView>("objectsView"); }
    QTreeView* fields() const { return child<QTreeView>("fieldsView"); }
    QLabel* explanation() const { return child<QLabel>("explanationLabel"); }
    QSplitter* splitter() const { return child<QSplitter>("splitter"); }
    QString count() const { return child<QLabel>("countLabel")->text(); }
    QPushButton* ok() const { return m_dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok); }
    QModelIndex fieldRow(int row) const { return fields()->model()->index(row, 0); }

    /// The cell of the selected field under that title.
    QString fieldCell(const QString& title) const
    {
        const QAbstractItemModel* model = fields()->model();
        for (int column = 0; column < model->columnCount(); ++column) {
            if (model->headerData(column, Qt::Horizontal).toString() == title)
                return fields()->currentIndex().sibling(fields()->currentIndex().row(), column).data().toString();
        }
        return QStringLiteral("no such column");
    }

    /// The rows that the tree shows, from the top.
    QString outline() const
    {
        QStringList rows;
        for (QModelIndex row = objects()->model()->index(0, 0); row.isValid(); row = objects()->indexBelow(row))
            rows.append(row.data().toString());
        return rows.join(QLatin1String(", "));
    }

    bool isInTheMiddle() const
    {
        const QRect row = objects()->visualRect(objects()->currentIndex());
        const int distance = row.center().y() - objects()->viewport()->rect().center().y();
        return row.isValid() && std::abs(distance) <= 2 * row.height();
    }

    /// Moves the bar between tree and fields.
    void dragHandle(int distance)
    {
        QSplitterHandle* handle = splitter()->handle(1);
        const QList<int> before = splitter()->sizes();
        const QPoint start = handle->rect().center();
        QTest::mousePress(handle, Qt::LeftButton, {}, start);
        // QTest::mouseMove tells of no button.
        const QPoint end = start + QPoint(distance, 0);
        QMouseEvent move(QEvent::MouseMove, end, handle->mapToGlobal(end), Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(handle, &move);
        QTest::mouseRelease(handle, Qt::LeftButton, {}, handle->rect().center());
        QCOMPARE(splitter()->sizes().first(), before.first() + distance);
    }

    void clickOn(const QString& name)
    {
        objects()->expandAll();
        for (QModelIndex row = objects()->model()->index(0, 0); row.isValid(); row = objects()->indexBelow(row)) {
            if (row.data().toString() != name)
                continue;
            QTest::mouseClick(objects()->viewport(), Qt::LeftButton, {}, objects()->visualRect(row).center());
            return;
        }
        QFAIL(qPrintable(QLatin1String("no row ") + name));
    }

    /// As the window system tells it: press, release, double click, release.
    static void doubleClick(QTreeView* view, const QModelIndex& index)
    {
        const QPoint place = view->visualRect(index).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, place);
    }

    OwnSettings m_settings;
    std::optional<StationList> m_list;
    std::unique_ptr<PointBrowserDialog> m_dialog;
};

QTEST_MAIN(tst_PointBrowserDialog)
#include "tst_pointbrowserdialog.moc"
