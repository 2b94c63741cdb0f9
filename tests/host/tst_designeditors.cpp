// The editors of what a shape shows and does, worked with keys; the dialogs for binding a point and for a page's access.

#include "host/design/accessdialog.h"
#include "host/design/bindingeditor.h"
#include "host/design/bindpointdialog.h"
#include "host/design/operationeditor.h"
#include "host/design/tagfield.h"
#include "platform/database/useraccountdatabase.h"
#include "platform/ui/kvpointmimedata.h"
#include "tests/support/designdesk.h"
#include "tests/support/offscreenwarnings.h"

#include <QDialogButtonBox>
#include <QDropEvent>
#include <QListWidget>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

namespace {

using Kind = Operation::Kind;
using Korvane::ScadaObjectType;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

const QByteArray points = "id,name,kind\n200001,FLOW,analog\n200002,LEVEL,analog\n100001,PUMP,digital\n";

const QByteArray page =
    TestProject::json("{'format':'korvane-page','version':1,'size':[400,200],'layers':[{'name':'a','shapes':["
                      "{'class':'ReadOut','name':'bound','place':[20,20,90,30],'actions':["
                      "{'type':2,'targets':[{'tag':'FLOW'}]},"
                      "{'type':5,'rules':[{'when':[{'tag':'PUMP','operator':'==','bound':'1'}],"
                      "'set':{'Visible':false}}]}]},"
                      "{'class':'ReadOut','name':'free','place':[20,60,90,30]},"
                      "{'class':'Trend','name':'trend','place':[200,60,90,30]},"
                      "{'class':'Hologram','name':'lost','place':[200,10,90,30]},"
                      "{'class':'Button','name':'button','place':[20,100,90,30],'operation':{'kind':'operate',"
                      "'tag':'PUMP','value':1,'key':'F5','input':{'later':1},'by':'hand'}}]}]}");

class Accounts : public UserAccountDatabase
{
public:
    Accounts() { registerDatabase(this); }
    EntityMultiResult<EUserAccount> allUserAccounts() const override
    {
        const auto account = [](int number, const char* name) {
            return EUserAccount{EUserAccount::State::Stored, number, text(name)};
        };
        return {{account(3, "kim"), account(5, "lee"), account(8, "park")}, {}};
    }
};

struct Room : DesignDesk
{
    Room() : DesignDesk(page, points) {}
    ~Room()
    {
        bindings.showShape(nullptr, nullptr);
        operations.showShape(nullptr, nullptr);
    }
    void edit(const char* name)
    {
        bindings.showShape(document.get(), shape(name));
        operations.showShape(document.get(), shape(name));
        for (QWidget* editor : {static_cast<QWidget*>(&bindings), static_cast<QWidget*>(&operations)}) {
            editor->show();
            if (!QTest::qWaitForWindowExposed(editor))
                qFatal("an editor does not come up");
        }
    }
    QList<TagField*> fields() const
    {
        QList<TagField*> shown;
        for (TagField* field : bindings.findChildren<TagField*>()) {
            if (!field->isHidden())
                shown.append(field);
        }
        return shown;
    }
    static QLineEdit& lineOf(QWidget& field) { return *field.findChild<QLineEdit*>(text("pointNameEdit")); }
    /// Writes over the line and is done with it.
    static void enter(QLineEdit& line, const char* typed)
    {
        line.selectAll();
        QTest::keyClick(&line, Qt::Key_Delete);
        QTest::keyClicks(&line, text(typed));
        QTest::keyClick(&line, Qt::Key_Return);
    }
    template <typename Widget>
    Widget& part(const char* name) const
    {
        return *operations.findChild<Widget*>(text(name));
    }
    /// As the user chooses it in the list.
    static void choose(QComboBox& box, int place)
    {
        box.setCurrentIndex(place);
        Q_EMIT box.activated(place);
    }
    const Operation* operation(const char* name) const { return document->operation(*shape(name)); }
    QUndoStack& undo() const { return document->undoStack(); }

    BindingEditor bindings;
    OperationEditor operations;
};

enum KindPlace { NoCommand, Select, Operate, SetPoint, Raise, Lower, EnterValue };
enum ModePlace { Fixed, Entered, Within, Listed };

} // namespace

class tst_DesignEditors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void eachBindingHasALine()
    {
        Room room;
        room.edit("bound");
        QCOMPARE(room.fields().size(), 2);
        QCOMPARE(room.fields()[0]->tag(), text("FLOW"));
        QCOMPARE(room.fields()[1]->tag(), text("PUMP"));
        room.edit("free");
        QCOMPARE(room.fields().size(), 1);
        QCOMPARE(room.fields()[0]->tag(), QString());
        room.edit("button");
        QCOMPARE(room.fields().size(), 0);
        QCOMPARE(room.bindings.findChild<QLabel*>()->text(), text("This shape shows no value."));
    }

    void aTagIsTyped()
    {
        Room room;
        room.edit("bound");
        TagField* field = room.fields()[0];
        QTest::keyClicks(&Room::lineOf(*field), text("x"));
        QCOMPARE(room.undo().count(), 0); // not done yet
        Room::enter(Room::lineOf(*field), " LEVEL ");
        QCOMPARE(room.fields().first(), field); // with the keyboard where it was
        QCOMPARE(room.DesignDesk::bindings(room.shape("bound")), text("Number LEVEL | Visibility, condition PUMP"));
        Room::enter(Room::lineOf(*room.fields()[1]), "FLOW");
        QCOMPARE(room.DesignDesk::bindings(room.shape("bound")), text("Number LEVEL | Visibility, condition FLOW"));
        room.undo().undo();
        room.undo().undo();
        QCOMPARE(Room::lineOf(*field).text(), text("FLOW"));
    }

    void anEmptiedLineReleases()
    {
        Room room;
        room.edit("bound");
        Room::enter(Room::lineOf(*room.fields()[1]), "");
        QCOMPARE(Room::lineOf(*room.fields()[1]).text(), text("PUMP")); // a rule compares something
        Room::enter(Room::lineOf(*room.fields()[0]), "");
        QCOMPARE(room.DesignDesk::bindings(room.shape("bound")), text("Visibility, condition PUMP"));
        QCOMPARE(room.fields().size(), 1);
    }

    void aTagForAnUnboundShape()
    {
        Room room;
        room.edit("free");
        Room::enter(Room::lineOf(*room.fields()[0]), "FLOW");
        QCOMPARE(room.DesignDesk::bindings(room.shape("free")), text("Number FLOW"));
        room.edit("trend");
        Room::enter(Room::lineOf(*room.fields()[0]), "FLOW");
        QTRY_COMPARE(room.fields().size(), 2); // and one for another curve
        Room::enter(Room::lineOf(*room.fields()[1]), "LEVEL");
        QCOMPARE(room.DesignDesk::bindings(room.shape("trend")), text("Trend, value 1 FLOW | Trend, value 2 LEVEL"));
    }

    void whatNamesNothingIsSaid_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("problem");
        QTest::addColumn<bool>("isTaken");
        QTest::newRow("a point") << text("LEVEL") << QString() << true;
        QTest::newRow("a property") << text("@::Project") << QString() << true;
        QTest::newRow("an unknown name") << text("NOWHERE") << text("The point list has no \"NOWHERE\".") << true;
        QTest::newRow("a number") << text("12.5") << text("This is a number, not a point.") << false;
    }
    void whatNamesNothingIsSaid()
    {
        QFETCH(QString, typed);
        QFETCH(QString, problem);
        QFETCH(bool, isTaken);
        Room room;
        room.edit("bound");
        TagField& field = *room.fields()[0];
        Room::enter(Room::lineOf(field), typed.toUtf8().constData());
        QStringList said;
        for (const QLabel* label : field.findChildren<QLabel*>()) {
            if (label->isVisible())
                said.append(label->text());
        }
        QCOMPARE(said.join(QLatin1Char(' ')), problem);
        QCOMPARE(room.undo().count(), isTaken ? 1 : 0);
        QCOMPARE(Room::lineOf(field).text(), typed);
    }

    void aPointIsDroppedOnALine()
    {
        Room room;
        room.edit("bound");
        const KVPointMimeData data({ScadaObjectType::AnalogPoint, 200002, text("LEVEL"), text("LEVEL"), {}, {}});
        QWidget* point = Room::lineOf(*room.fields()[0]).parentWidget();
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(point, &enter);
        QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(point, &drop);
        QCOMPARE(room.DesignDesk::bindings(room.shape("bound")), text("Number LEVEL | Visibility, condition PUMP"));
    }

    void whatWasTypedCountsWhenAskedFor()
    {
        Room room;
        room.edit("bound");
        QLineEdit& line = Room::lineOf(*room.fields()[0]);
        line.selectAll();
        QTest::keyClicks(&line, text("LEVEL"));
        room.bindings.commit();
        QCOMPARE(room.DesignDesk::bindings(room.shape("bound")), text("Number LEVEL | Visibility, condition PUMP"));
    }

    void anOperationIsShown()
    {
        Room room;
        room.edit("button");
        QCOMPARE(room.part<QComboBox>("kind").currentIndex(), int(Operate));
        QCOMPARE(room.part<QComboBox>("mode").currentIndex(), int(Fixed));
        QCOMPARE(room.part<QLineEdit>("value").text(), text("1"));
        QCOMPARE(room.part<QKeySequenceEdit>("key").keySequence(), QKeySequence(Qt::Key_F5));
        QVERIFY(!room.part<QLineEdit>("minimum").isVisible());
        room.operations.commit();
        QCOMPARE(room.undo().count(), 0); // looking changes nothing
        room.edit("free");
        QCOMPARE(room.part<QComboBox>("kind").currentIndex(), int(NoCommand));
        QVERIFY(!room.part<QLineEdit>("value").isVisible());
        room.edit("lost");
        QVERIFY(!room.operations.isEnabled());
    }

    void aNewOperationGoesToWhatTheShapeShows()
    {
        Room room;
        room.edit("bound");
        Room::choose(room.part<QComboBox>("kind"), Select);
        QVERIFY(room.operation("bound"));
        QCOMPARE(room.operation("bound")->tag, text("FLOW"));
        QCOMPARE(room.operation("bound")->kind, Kind::Select);
        QVERIFY(!room.part<QComboBox>("mode").isVisible()); // there is nothing to send
        room.undo().undo();
        QVERIFY(!room.operation("bound"));
        QCOMPARE(room.part<QComboBox>("kind").currentIndex(), int(NoCommand));
    }

    void anOperationNeedsAnObject()
    {
        Room room;
        room.edit("free");
        Room::choose(room.part<QComboBox>("kind"), Raise);
        QVERIFY(!room.operation("free"));
        QCOMPARE(room.part<QLabel>("problem").text(), text("Name the object that the command goes to."));
        Room::enter(Room::lineOf(*room.operations.findChild<TagField*>()), "LEVEL");
        QVERIFY(room.operation("free"));
        QCOMPARE(room.operation("free")->kind, Kind::Raise);
        QVERIFY(!room.part<QLabel>("problem").isVisible());
    }

    void aNumberWithinLimitsIsSet()
    {
        Room room;
        room.edit("button");
        Room::choose(room.part<QComboBox>("kind"), SetPoint);
        Room::choose(room.part<QComboBox>("mode"), Within);
        Room::enter(room.part<QLineEdit>("maximum"), "80.5");
        Room::enter(room.part<QLineEdit>("minimum"), "-5");
        Room::enter(room.part<QLineEdit>("step"), "0.5");
        room.part<QSpinBox>("decimals").setValue(1);
        room.part<QCheckBox>("usesScale").click();
        Room::enter(room.part<QLineEdit>("scale"), "10");
        const Operation* operation = room.operation("button");
        QCOMPARE(operation->kind, Kind::SetPoint);
        QVERIFY(!operation->value);
        const NumberInputParam& number = *operation->input.numberInputParam;
        QCOMPARE(number.minValue, -5.0);
        QCOMPARE(number.maxValue, 80.5);
        QCOMPARE(number.singleStep, 0.5);
        QCOMPARE(int(number.decimals), 1);
        QVERIFY(number.useScale);
        QCOMPARE(number.scale, 10.0);
        QCOMPARE(operation->key, text("F5"));
        QVERIFY(room.document->save());
        QVERIFY(room.file().contains("\"by\": \"hand\"")); // what is not known here
        Room::enter(room.part<QLineEdit>("minimum"), "99");
        QCOMPARE(room.part<QLabel>("problem").text(), text("The lower limit lies above the upper one."));
        while (room.undo().canUndo())
            room.undo().undo();
        QCOMPARE(room.part<QComboBox>("mode").currentIndex(), int(Fixed));
        QCOMPARE(*room.operation("button")->value, 1.0);
    }

    void aListOfValuesIsSet()
    {
        Room room;
        room.edit("button");
        Room::choose(room.part<QComboBox>("mode"), Listed);
        room.part<QPushButton>("add").click();
        room.part<QPushButton>("add").click();
        room.part<QPushButton>("add").click();
        auto& listed = room.part<QTableWidget>("listed");
        listed.item(0, 0)->setText(text("closed"));
        listed.item(0, 1)->setText(text("2.5"));
        listed.setCurrentCell(1, 0);
        room.part<QPushButton>("remove").click();
        const Operation* operation = room.operation("button");
        QVERIFY(!operation->value);
        QCOMPARE(operation->input.enumInputParam->enumValues,
                 (QList<QPair<QString, double>>{{text("closed"), 2.5}, {text("State 2"), 2.0}}));
        const int edits = room.undo().count();
        listed.item(0, 1)->setText(text("wide"));
        QCOMPARE(room.part<QLabel>("problem").text(), text("\"wide\" is no number."));
        QCOMPARE(room.undo().count(), edits);
        room.undo().undo(); // the removal
        QCOMPARE(listed.rowCount(), 3);
        QCOMPARE(listed.item(0, 1)->text(), text("2.5"));
    }

    void halfANumberIsNotTaken()
    {
        Room room;
        room.edit("button");
        QLineEdit& value = room.part<QLineEdit>("value");
        value.selectAll();
        QTest::keyClicks(&value, text("1e"));
        room.operations.commit();
        QCOMPARE(*room.operation("button")->value, 1.0);
        QCOMPARE(room.part<QLabel>("problem").text(), text("\"1e\" is no number."));
        QTest::keyClicks(&value, text("2"));
        room.operations.commit();
        QCOMPARE(*room.operation("button")->value, 100.0);
    }

    void aKeyIsSetAndTakenAway()
    {
        Room room;
        room.edit("button");
        auto& key = room.part<QKeySequenceEdit>("key");
        key.setKeySequence(QKeySequence(Qt::CTRL + Qt::Key_7, Qt::Key_8));
        Q_EMIT key.editingFinished();
        QCOMPARE(room.operation("button")->key, text("Ctrl+7")); // what is pressed first
        room.part<QToolButton>("noKey").click();
        QCOMPARE(room.operation("button")->key, QString());
        room.undo().undo();
        QCOMPARE(key.keySequence(), QKeySequence(Qt::CTRL + Qt::Key_7));
        room.edit("bound");
        Room::choose(room.part<QComboBox>("kind"), Raise);
        key.setKeySequence(QKeySequence(Qt::CTRL + Qt::Key_7));
        Q_EMIT key.editingFinished();
        QCOMPARE(room.part<QLabel>("problem").text(), text("Another shape has this key: button."));
    }

    void theDialogBindsAPoint()
    {
        Room room;
        BindPointDialog dialog(*room.document, *room.shape("bound"));
        dialog.show();
        auto& line = Room::lineOf(dialog);
        auto& ok = *dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
        QCOMPARE(line.text(), text("FLOW"));
        dialog.findChild<QComboBox*>()->setCurrentIndex(1);
        QCOMPARE(line.text(), text("PUMP"));
        line.selectAll();
        QTest::keyClicks(&line, text("NOWHERE"));
        QVERIFY(!ok.isEnabled());
        line.selectAll();
        QTest::keyClicks(&line, text("LEVEL"));
        QVERIFY(ok.isEnabled());
        ok.click();
        QVERIFY(!dialog.isVisible());
        QCOMPARE(room.DesignDesk::bindings(room.shape("bound")), text("Number FLOW | Visibility, condition LEVEL"));
    }

    void theDialogBindsAnUnboundShape()
    {
        Room room;
        BindPointDialog dialog(*room.document, *room.shape("free"));
        dialog.show();
        QVERIFY(!dialog.findChild<QComboBox*>()->isVisible()); // there is nothing to choose
        Room::lineOf(dialog).setText(text("FLOW:TodayMean"));
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        QCOMPARE(room.DesignDesk::bindings(room.shape("free")), text("Number FLOW:TodayMean"));
    }

    void accessIsEdited()
    {
        const Accounts accounts;
        const Room room;
        AccessDialog dialog(room.system->core(), {true, {5, 99}});
        auto& list = *dialog.findChild<QListWidget*>();
        QCOMPARE(list.count(), 3);
        QVERIFY(dialog.access().isEqual({true, {5}})); // 99 is nobody
        list.item(2)->setCheckState(Qt::Checked);
        dialog.findChild<QCheckBox*>(text("userPagePermission"))->click();
        QVERIFY(dialog.access().isEqual({false, {5, 8}}));
    }

    void withoutAccountsAccessSaysSo()
    {
        const Room room;
        const AccessDialog dialog(room.system->core(), {true, {5}});
        QVERIFY(dialog.access().isEqual({true, {5}})); // nobody is lost because a server is out of reach
        const auto labels = dialog.findChildren<QLabel*>();
        QVERIFY(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
            return label->text().startsWith(text("No user accounts are known"));
        }));
    }
};

QTEST_MAIN(tst_DesignEditors)
#include "tst_designeditors.moc"
