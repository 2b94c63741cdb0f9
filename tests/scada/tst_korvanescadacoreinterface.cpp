#include "scada/hub/korvanegeneralmessageprocessorinterface.h"
#include "tests/support/testhub.h"
#include "tests/support/testruntime.h"

#include <QtTest>

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>

static_assert(std::is_abstract_v<KorvaneScadaCoreInterface>);
static_assert(std::is_base_of_v<QObject, KorvaneScadaCoreInterface>);

namespace {

/// Two addresses for services that the hub only stores.
template <typename Service>
Service* storedService(int which)
{
    static char places[2] = {};
    return reinterpret_cast<Service*>(&places[which]);
}

template <typename Service>
using Getter = Service* (KorvaneScadaCoreInterface::*)();
template <typename Service>
using Setter = void (KorvaneScadaCoreInterface::*)(Service*);

template <typename Service>
void keepsOnlyTheLast(Setter<Service> set, Getter<Service> get)
{
    TestHub hub;
    hub.setTTSInterface(nullptr);
    (hub.*set)(storedService<Service>(0));
    QCOMPARE((hub.*get)(), storedService<Service>(0));
    (hub.*set)(storedService<Service>(1));
    QCOMPARE((hub.*get)(), storedService<Service>(1));
    (hub.*set)(nullptr);
    QVERIFY(!(hub.*get)());
}

} // namespace

class tst_KorvaneScadaCoreInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshHubHasNoServices()
    {
        // Over memory that is not zero by itself, so that a forgotten initial value shows.
        alignas(TestHub) unsigned char memory[sizeof(TestHub)];
        std::fill(std::begin(memory), std::end(memory), static_cast<unsigned char>(0xA5));
        const auto destroy = [](TestHub* made) { made->~TestHub(); };
        const std::unique_ptr<TestHub, decltype(destroy)> made(new (memory) TestHub, destroy);
        TestHub& hub = *made;
        QVERIFY(!hub.alarmProcessor());
        QVERIFY(!hub.runtimeManager());
        QVERIFY(!hub.alarmManager());
        QVERIFY(!hub.messageProcessor());
        QVERIFY(!hub.scadaRuntime());
        QVERIFY(!hub.core()); // this concrete hub sets none
        QVERIFY(!hub.canvasActionManagerFactory());
        QVERIFY(!hub.controller());
        QVERIFY(!hub.changeEventProcessor());
        QVERIFY(!hub.propertyManager());
        QVERIFY(!hub.notification());
    }

    void coreIsWhatTheConcreteHubSets()
    {
        auto* core = storedService<KorvaneCoreInterface>(0);
        TestHub hub(core);
        QCOMPARE(hub.core(), core);
    }

    void settingAServiceTwiceKeepsTheSecond()
    {
        using Hub = KorvaneScadaCoreInterface;
        keepsOnlyTheLast(&Hub::setAlarmProcessor, &Hub::alarmProcessor);
        keepsOnlyTheLast(&Hub::setRuntimeManager, &Hub::runtimeManager);
        keepsOnlyTheLast(&Hub::setAlarmManager, &Hub::alarmManager);
        keepsOnlyTheLast(&Hub::setMessageProcessor, &Hub::messageProcessor);
        keepsOnlyTheLast(&Hub::setScadaRuntime, &Hub::scadaRuntime);
        keepsOnlyTheLast(&Hub::setCanvasActionManagerFactory, &Hub::canvasActionManagerFactory);
        keepsOnlyTheLast(&Hub::setDataServiceInterface, &Hub::controller);
        keepsOnlyTheLast(&Hub::setChangeEventProcessor, &Hub::changeEventProcessor);
        keepsOnlyTheLast(&Hub::setAppPropertyManager, &Hub::propertyManager);
        keepsOnlyTheLast(&Hub::setTTSInterface, &Hub::ttsInterface);
        keepsOnlyTheLast(&Hub::setNotificationProcessor, &Hub::notification);
    }

    void servicesStandApart()
    {
        TestHub hub;
        TestRuntime runtime;
        hub.setScadaRuntime(&runtime);
        QCOMPARE(hub.scadaRuntime(), static_cast<ScadaRuntimeInterface*>(&runtime));
        QVERIFY(!hub.alarmManager());
        QVERIFY(!hub.controller());
        QVERIFY(!hub.notification());
    }

    void replacingOrOutlivingAServiceLeavesItAlone()
    {
        auto first = std::make_unique<KorvaneGeneralMessageProcessorInterface>();
        KorvaneGeneralMessageProcessorInterface second;
        QSignalSpy firstDestroyed(first.get(), &QObject::destroyed);
        QSignalSpy secondDestroyed(&second, &QObject::destroyed);
        {
            TestHub hub;
            hub.setMessageProcessor(first.get());
            hub.setMessageProcessor(&second);
            QVERIFY(!first->parent());
            QVERIFY(!second.parent());
        }
        QCOMPARE(firstDestroyed.count(), 0);
        QCOMPARE(secondDestroyed.count(), 0);
    }

    void belongsToItsParent()
    {
        auto parent = std::make_unique<QObject>();
        auto* hub = new TestHub(nullptr, parent.get());
        QCOMPARE(hub->parent(), parent.get());
        QSignalSpy destroyed(hub, &QObject::destroyed);
        parent.reset();
        QCOMPARE(destroyed.count(), 1);
    }

    void itsEndIsAnnouncedByTextToo()
    {
        TestHub hub;
        QSignalSpy closing(&hub, SIGNAL(systemAboutTobeClose()));
        QVERIFY(closing.isValid());
        hub.close();
        QCOMPARE(closing.count(), 1);
    }

    void castsByItsOwnNameAndItsBases()
    {
        TestHub hub;
        QObject* object = &hub;
        QCOMPARE(object->qt_metacast("KorvaneScadaCoreInterface"),
                 static_cast<void*>(static_cast<KorvaneScadaCoreInterface*>(&hub)));
        QCOMPARE(object->qt_metacast("QObject"), static_cast<void*>(object));
        QVERIFY(!object->qt_metacast("KorvaneCoreInterface"));
        QVERIFY(!object->qt_metacast(nullptr));
    }

    void theMessageProcessorAddsNothingToAnObject()
    {
        const QMetaObject& meta = KorvaneGeneralMessageProcessorInterface::staticMetaObject;
        QCOMPARE(meta.className(), "KorvaneGeneralMessageProcessorInterface");
        QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
        QCOMPARE(meta.methodCount(), meta.methodOffset());
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    }
};

QTEST_GUILESS_MAIN(tst_KorvaneScadaCoreInterface)
#include "tst_korvanescadacoreinterface.moc"
