#include "host/core/korvanecore.h"
#include "host/core/scadacore.h"
#include "host/runtime/runtimedatabase.h"

#include <QtTest>

#include <memory>

namespace {

/// An address for services that the hub only stores.
template <typename Service>
Service* storedService()
{
    static char place = 0;
    return reinterpret_cast<Service*>(&place);
}

void registerEverything(KorvaneScadaCoreInterface& hub, ScadaRuntimeInterface& runtime)
{
    hub.setScadaRuntime(&runtime);
    hub.setDataServiceInterface(storedService<DataServiceInterface>());
    hub.setAppPropertyManager(storedService<AppPropertyManager>());
    hub.setCanvasActionManagerFactory(storedService<CanvasScadaActionManagerFactoryInterface>());
}

} // namespace

class tst_ScadaCore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsItsCoreAndHasNoSpeech()
    {
        KorvaneCore core;
        KorvaneScadaCoreInterface* hub = core.scadaCoreInterface();
        QVERIFY(hub);
        QCOMPARE(hub->core(), static_cast<KorvaneCoreInterface*>(&core));
        QVERIFY(!hub->ttsInterface());
    }

    void opensWhenNothingIsMissing()
    {
        RuntimeDatabase runtime;
        KorvaneCore core;
        KorvaneScadaCoreInterface& hub = *core.scadaCoreInterface();
        QCOMPARE(hub.missingServices(),
                 QStringList({QStringLiteral("runtime database"), QStringLiteral("data service"),
                              QStringLiteral("property manager"), QStringLiteral("canvas action manager factory")}));
        QVERIFY(!hub.open());
        QVERIFY(!hub.isOpen());

        registerEverything(hub, runtime);
        QVERIFY(hub.missingServices().isEmpty());
        QVERIFY(hub.open());
        QVERIFY(hub.isOpen());
    }

    void announcesItsEndOnceAndStaysClosed()
    {
        RuntimeDatabase runtime;
        ScadaCore hub(nullptr);
        registerEverything(hub, runtime);
        QSignalSpy closing(&hub, &KorvaneScadaCoreInterface::systemAboutTobeClose);
        QVERIFY(hub.open());
        hub.close();
        hub.close();
        QCOMPARE(closing.count(), 1);
        QVERIFY(!hub.isOpen());
        QVERIFY(!hub.open());
    }

    void isNoLongerOpenForWhoeverHearsOfItsEnd()
    {
        RuntimeDatabase runtime;
        ScadaCore hub(nullptr);
        registerEverything(hub, runtime);
        QVERIFY(hub.open());
        bool openWhenTold = true;
        connect(&hub, &KorvaneScadaCoreInterface::systemAboutTobeClose, &hub, [&] { openWhenTold = hub.isOpen(); });
        hub.close();
        QVERIFY(!openWhenTold);
    }

    void theCoresEndClosesTheHub()
    {
        auto core = std::make_unique<KorvaneCore>();
        QSignalSpy closing(core->scadaCoreInterface(), &KorvaneScadaCoreInterface::systemAboutTobeClose);
        core.reset();
        QCOMPARE(closing.count(), 1);
    }

    void readsTheClockItWasGiven()
    {
        QDateTime now = QDateTime::fromMSecsSinceEpoch(1000, Qt::UTC);
        KorvaneCore core([&now] { return now; });
        QCOMPARE(core.scadaCoreInterface()->currentTime(), now);
        now = now.addSecs(60);
        QCOMPARE(core.scadaCoreInterface()->currentTime(), now);
    }

    void readsTheMachinesClockUnlessGivenOne()
    {
        const QDateTime before = QDateTime::currentDateTimeUtc();
        const QDateTime shown = KorvaneCore().scadaCoreInterface()->currentTime();
        QVERIFY(shown >= before && shown <= QDateTime::currentDateTimeUtc());
        QCOMPARE(shown.timeSpec(), Qt::UTC);
    }
};

QTEST_GUILESS_MAIN(tst_ScadaCore)
#include "tst_scadacore.moc"
