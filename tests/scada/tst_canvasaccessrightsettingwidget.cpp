#include "scada/widgets/canvasaccessrightsettingwidget.h"

#include "platform/data/dataserviceinterface.h"
#include "platform/database/useraccountdatabase.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/narrowstyle.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/testcore.h"
#include "tests/support/testhub.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

#include <memory>

static_assert(std::is_same_v<decltype(std::declval<CanvasAccessRightSettingWidget&>().useSecurity()), qint8>);

namespace {

EUserAccount account(int number, const QString& name)
{
    return {EUserAccount::State::Stored, number, name};
}

const QList<EUserAccount> someAccounts = {account(30, QStringLiteral("kim")), account(10, QStringLiteral("lee")),
                                          account(20, QStringLiteral("kim")), // the name twice
                                          account(40, QStringLiteral("\ud64d\uae38\ub3d9"))};

/// Knows accounts and notes the queries for them.
class AccountService : public DataServiceInterface
{
public:
    QVariant historyValue(ObjectKey, DataCode::DataField) override { return {}; }
    bool queryUserAccounts(const QString& sql, QList<EUserAccount>& accounts) override
    {
        queries.append(sql);
        wasGivenAccounts = wasGivenAccounts || !accounts.isEmpty();
        accounts += known;
        return !known.isEmpty();
    }

    QList<EUserAccount> known = someAccounts;
    QStringList queries;
    bool wasGivenAccounts = false;
};

class LocalAccounts : public UserAccountDatabase
{
public:
    LocalAccounts() { registerDatabase(this); }
    EntityMultiResult<EUserAccount> allUserAccounts() const override
    {
        return {{account(5, QStringLiteral("local"))}, QString()};
    }
};

} // namespace

class tst_CanvasAccessRightSettingWidget : public QObject
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
        m_service = std::make_unique<AccountService>();
        m_hub.setDataServiceInterface(m_service.get());
        m_core.hub = &m_hub;
        m_widget = std::make_unique<CanvasAccessRightSettingWidget>();
        m_widget->show();
    }
    void cleanup() { m_widget.reset(); }

    void theFormIsNamedTitledAndSized()
    {
        QWidget parent;
        const CanvasAccessRightSettingWidget widget(&parent);
        QCOMPARE(widget.parentWidget(), &parent);
        QCOMPARE(widget.objectName(), QStringLiteral("CanvasAccessRightSettingWidget"));
        QCOMPARE(widget.windowTitle(), QStringLiteral("Security"));
        QCOMPARE(widget.size(), QSize(518, 390));
    }

    void theFormsLayoutsNestAsDesigned()
    {
        auto* rows = qobject_cast<QVBoxLayout*>(m_widget->layout());
        QVERIFY(rows);
        QCOMPARE(rows->objectName(), QStringLiteral("verticalLayout_2"));
        QCOMPARE(rows->spacing(), 6);
        QCOMPARE(rows->contentsMargins(), QMargins(11, 11, 11, 11));
        QCOMPARE(rows->count(), 2);
        QCOMPARE(rows->itemAt(0)->widget(), permission());
        QCOMPARE(rows->itemAt(1)->widget(), group());

        auto* inGroup = qobject_cast<QVBoxLayout*>(group()->layout());
        QVERIFY(inGroup);
        QCOMPARE(inGroup->objectName(), QStringLiteral("verticalLayout"));
        QCOMPARE(inGroup->spacing(), 6);
        QCOMPARE(inGroup->contentsMargins(), QMargins(11, 11, 11, 11));
        QCOMPARE(inGroup->count(), 2);
        QCOMPARE(inGroup->itemAt(1)->widget(), list());
        auto* buttons = qobject_cast<QHBoxLayout*>(inGroup->itemAt(0)->layout());
        QVERIFY(buttons);
        QCOMPARE(buttons->objectName(), QStringLiteral("horizontalLayout"));
        QCOMPARE(buttons->spacing(), 6);
        QCOMPARE(buttons->count(), 3);
        QCOMPARE(buttons->itemAt(0)->widget(), button("selectAll"));
        QCOMPARE(buttons->itemAt(1)->widget(), button("clearAll"));
        QCOMPARE(buttons->itemAt(2)->sizeHint(), QSize(40, 20));
        QCOMPARE(buttons->itemAt(2)->expandingDirections(), Qt::Horizontal);
    }

    void theFormsPartsAreAsDesigned()
    {
        QCOMPARE(permission()->text(), QStringLiteral("Use Page Permission"));
        QCOMPARE(group()->title(), QStringLiteral("Select User"));
        QCOMPARE(button("selectAll")->text(), QStringLiteral("Select All"));
        QCOMPARE(button("clearAll")->text(), QStringLiteral("Clear All"));
    }

    void everyTextIsLookedUpUnderTheClass()
    {
        const MarkingTranslator translator;
        m_widget = std::make_unique<CanvasAccessRightSettingWidget>();
        const auto marked = [](const char* text) {
            return QStringLiteral("CanvasAccessRightSettingWidget::") + QLatin1String(text);
        };
        QCOMPARE(m_widget->windowTitle(), marked("Security"));
        QCOMPARE(permission()->text(), marked("Use Page Permission"));
        QCOMPARE(group()->title(), marked("Select User"));
        QCOMPARE(button("selectAll")->text(), marked("Select All"));
        QCOMPARE(button("clearAll")->text(), marked("Clear All"));
        QCOMPARE(translatedFromUtf8<CanvasAccessRightSettingWidget>("x"), marked("x"));
    }

    void itHasOneProtectedSlot()
    {
        const QMetaObject& meta = CanvasAccessRightSettingWidget::staticMetaObject;
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        const QMetaMethod slot = meta.method(meta.methodOffset());
        QCOMPARE(slot.methodSignature(), QByteArray("selectUser()"));
        QCOMPARE(slot.methodType(), QMetaMethod::Slot);
        QCOMPARE(slot.access(), QMetaMethod::Protected);
    }

    void beforeInitNothingIsListedOrConnected() // and the form is not made consistent
    {
        QCOMPARE(list()->count(), 0);
        QVERIFY(!permission()->isChecked());
        QVERIFY(group()->isEnabled());
        QCOMPARE(int(m_widget->useSecurity()), 0);
        QCOMPARE(m_widget->selectedUsers(), QList<int>());
        list()->addItem(QStringLiteral("by hand"));
        list()->item(0)->setCheckState(Qt::Unchecked);
        press("selectAll");
        QCOMPARE(list()->item(0)->checkState(), Qt::Unchecked);
        permission()->toggle();
        permission()->toggle();
        QVERIFY(group()->isEnabled());
    }

    void itListsTheAccountsOfTheDataService()
    {
        const LocalAccounts local;
        m_widget->init(&m_core);
        QCOMPARE(m_service->queries, QStringList{QStringLiteral("select * from SYSTEM_USER_ACCOUNT")});
        QVERIFY(!m_service->wasGivenAccounts);
        QCOMPARE(list()->count(), someAccounts.size());
        for (int row = 0; row < someAccounts.size(); ++row) {
            const QListWidgetItem* item = list()->item(row);
            QCOMPARE(item->text(), someAccounts[row].name);
            QCOMPARE(item->data(Qt::UserRole), QVariant(someAccounts[row].number));
            QCOMPARE(item->data(Qt::UserRole).userType(), int(QMetaType::Int));
            QCOMPARE(item->checkState(), Qt::Unchecked);
            QVERIFY(item->flags() & Qt::ItemIsUserCheckable);
        }
        QVERIFY(!permission()->isChecked());
        QVERIFY(group()->isEnabled());
    }

    void withoutADataServiceItListsTheLocalAccounts()
    {
        m_hub.setDataServiceInterface(nullptr);
        const LocalAccounts local;
        m_widget->init(&m_core);
        QCOMPARE(list()->count(), 1);
        QCOMPARE(list()->item(0)->text(), QStringLiteral("local"));
        QCOMPARE(list()->item(0)->data(Qt::UserRole).toInt(), 5);
    }

    void withoutAnyAccountsTheListIsEmpty()
    {
        m_service->known.clear();
        const LocalAccounts local; // not asked: there is a data service
        m_widget->init(&m_core);
        QCOMPARE(list()->count(), 0);
        m_hub.setDataServiceInterface(nullptr);
        UserAccountDatabase::registerDatabase(nullptr);
        m_widget->init(&m_core);
        QCOMPARE(list()->count(), 0);
        m_widget->setData(1, {1, 2});
        QCOMPARE(m_widget->selectedUsers(), QList<int>());
    }

    void aSecondInitListsTheAccountsAgain() // kept
    {
        m_widget->init(&m_core);
        m_widget->setData(1, {10});
        m_widget->init(&m_core);
        QCOMPARE(list()->count(), 2 * someAccounts.size());
        QCOMPARE(m_widget->selectedUsers(), QList<int>{10}); // what was chosen stays
        m_widget->setData(1, {10});
        QCOMPARE(m_widget->selectedUsers(), QList<int>({10, 10}));
        press("clearAll");
        QCOMPARE(m_widget->selectedUsers(), QList<int>());
    }

    void aSecondInitConnectsTheButtonsAgain() // kept
    {
        m_widget->init(&m_core);
        m_widget->init(&m_core);
        int changes = 0;
        Qt::CheckState before = Qt::Unchecked;
        connect(list(), &QListWidget::itemChanged, [&](QListWidgetItem* item) {
            if (item != list()->item(0) || item->checkState() == before)
                return;
            ++changes;
            item->setCheckState(before); // so that the next round changes it too
        });
        press("selectAll");
        QCOMPARE(changes, 2);
        before = Qt::Checked;
        list()->item(0)->setCheckState(before);
        press("clearAll");
        QCOMPARE(changes, 4);
    }

    void aSecondInitConnectsTheMarkAgain() // kept
    {
        struct : QObject
        {
            bool eventFilter(QObject* group, QEvent* event) override
            {
                if (event->type() == QEvent::EnabledChange && !static_cast<QWidget*>(group)->isEnabled()) {
                    ++changes;
                    static_cast<QWidget*>(group)->setEnabled(true); // so that the next call changes it too
                }
                return false;
            }
            int changes = 0;
        } filter;
        m_widget->init(&m_core);
        m_widget->init(&m_core);
        m_widget->setData(1, {});
        group()->installEventFilter(&filter);
        permission()->toggle();
        QCOMPARE(filter.changes, 2);
    }

    void storedRightsAreShown()
    {
        m_widget->init(&m_core);
        m_widget->setData(1, {40, 30, 30, 99});
        QVERIFY(permission()->isChecked());
        QVERIFY(group()->isEnabled());
        QCOMPARE(int(m_widget->useSecurity()), 1);
        QCOMPARE(m_widget->selectedUsers(), QList<int>({30, 40})); // in the list's order, without the unknown one
        m_widget->setData(1, {});
        QVERIFY(group()->isEnabled());
        QCOMPARE(m_widget->selectedUsers(), QList<int>());
        m_widget->setData(1, {20}); // one of two of a name
        QCOMPARE(list()->item(0)->checkState(), Qt::Unchecked);
        QCOMPARE(list()->item(2)->checkState(), Qt::Checked);
    }

    void usersOfAPageThatIsNotProtectedAreKept()
    {
        m_widget->init(&m_core);
        m_widget->setData(0, {10, 20});
        QVERIFY(!permission()->isChecked());
        QVERIFY(!group()->isEnabled());
        QCOMPARE(int(m_widget->useSecurity()), 0);
        QCOMPARE(m_widget->selectedUsers(), QList<int>({10, 20}));
    }

    void anyFlagButZeroProtects()
    {
        m_widget->init(&m_core);
        for (const int flag : {1, 2, 127, -1, -128}) {
            m_widget->setData(0, {});
            QCOMPARE(int(m_widget->useSecurity()), 0);
            m_widget->setData(static_cast<qint8>(flag), {});
            QVERIFY(group()->isEnabled());
            QCOMPARE(int(m_widget->useSecurity()), 1);
        }
    }

    void theGroupFollowsEvenWhenTheMarkStays()
    {
        m_widget->setData(0, {}); // nothing is connected, and the mark is off already
        QVERIFY(!group()->isEnabled());
        m_widget->init(&m_core);
        m_widget->setData(1, {});
        group()->setEnabled(false);
        m_widget->setData(1, {});
        QVERIFY(group()->isEnabled());
    }

    void theMarkSwitchesTheGroupAndNoUser()
    {
        m_widget->init(&m_core);
        m_widget->setData(1, {10, 40});
        QTest::mouseClick(permission(), Qt::LeftButton, Qt::NoModifier, QPoint(8, permission()->height() / 2));
        QCOMPARE(int(m_widget->useSecurity()), 0);
        QVERIFY(!group()->isEnabled());
        QCOMPARE(m_widget->selectedUsers(), QList<int>({10, 40}));
        permission()->toggle();
        QVERIFY(group()->isEnabled());
        QCOMPARE(m_widget->selectedUsers(), QList<int>({10, 40}));
    }

    void allOrNone()
    {
        m_widget->init(&m_core);
        m_widget->setData(1, {20});
        press("selectAll");
        QCOMPARE(m_widget->selectedUsers(), QList<int>({30, 10, 20, 40}));
        press("clearAll");
        QCOMPARE(m_widget->selectedUsers(), QList<int>());
        press("selectAll");
        QVERIFY(QMetaObject::invokeMethod(m_widget.get(), "selectUser")); // sent by nobody
        QCOMPARE(m_widget->selectedUsers().size(), 4);
        press("clearAll");
        QVERIFY(QMetaObject::invokeMethod(m_widget.get(), "selectUser"));
        QCOMPARE(m_widget->selectedUsers().size(), 4);
    }

    void usersAreChosenByTheirCheckBoxes()
    {
        m_widget->init(&m_core);
        m_widget->setData(1, {});
        const QRect row = list()->visualItemRect(list()->item(1));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(10, row.center().y()));
        QCOMPARE(m_widget->selectedUsers(), QList<int>{10});
    }

    void halfCheckedIsNotChosen()
    {
        m_widget->init(&m_core);
        list()->item(0)->setCheckState(Qt::PartiallyChecked);
        list()->item(1)->setCheckState(Qt::Checked);
        QCOMPARE(m_widget->selectedUsers(), QList<int>{10});
        m_widget->setData(1, {30});
        QCOMPARE(list()->item(0)->checkState(), Qt::Checked);
    }

    void tenThousandAccounts()
    {
        constexpr int count = 10000;
        m_service->known.clear();
        QList<int> users;
        for (int i = 1; i <= count; ++i) {
            m_service->known.append(account(i, QStringLiteral("user %1").arg(i)));
            users.prepend(i);
        }
        m_widget->init(&m_core);
        m_widget->setData(1, users);
        std::reverse(users.begin(), users.end());
        QCOMPARE(m_widget->selectedUsers(), users);
    }

private:
    QCheckBox* permission() const { return find<QCheckBox>("userPagePermission"); }
    QGroupBox* group() const { return find<QGroupBox>("groupBox"); }
    QListWidget* list() const { return find<QListWidget>("listWidget"); }
    QPushButton* button(const char* name) const { return find<QPushButton>(name); }
    void press(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    template <typename Child>
    Child* find(const char* name) const
    {
        return m_widget->findChild<Child*>(QLatin1String(name));
    }

    std::unique_ptr<AccountService> m_service;
    TestHub m_hub;
    TestCore m_core;
    std::unique_ptr<CanvasAccessRightSettingWidget> m_widget;
};

QTEST_MAIN(tst_CanvasAccessRightSettingWidget)
#include "tst_canvasaccessrightsettingwidget.moc"
