#include "scada/hub/korvanegeneralmessageprocessorinterface.h"
#include "scada/hub/korvanescadaalarmwidgetinterface.h"
#include "scada/hub/scadasummarycenteralwidgetinterface.h"
#include "scada/hub/scadasummarywidgetinterface.h"
#include "tests/support/ownsettings.h"
#include "tests/support/testservices.h"

#include <QFile>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QThread>
#include <QtTest>

#include <memory>
#include <type_traits>

namespace {

template <typename Interface, typename Base, typename Parent>
constexpr bool isDeclaredAsStated =
    std::is_base_of_v<Base, Interface>&& std::is_constructible_v<Interface, Parent*> &&
    !std::is_convertible_v<Parent*, Interface> && std::has_virtual_destructor_v<Interface>;

template <typename Interface>
constexpr bool needsAParent = !std::is_default_constructible_v<Interface>;

// Constructors are asked of the implementing classes, which inherit them.
static_assert(isDeclaredAsStated<TestCanvasScadaActionManagerFactory, QObject, QObject>);
static_assert(isDeclaredAsStated<TestCanvasScadaActionManager, QObject, QObject>);
static_assert(isDeclaredAsStated<TestScadaActionFactory, QObject, QObject>);
static_assert(isDeclaredAsStated<TestScadaRuntimManager, QObject, QObject>);
static_assert(isDeclaredAsStated<TestSystemAlarmManager, QObject, QObject>);
static_assert(isDeclaredAsStated<TestProjectManager, QWidget, QWidget>);
static_assert(isDeclaredAsStated<TestScreenTransitionManager, QWidget, QWidget>);
static_assert(isDeclaredAsStated<KorvaneScadaAlarmWidgetInterface, QWidget, QWidget>);
static_assert(isDeclaredAsStated<TestScadaDataLinkWidget, QWidget, QWidget>);
static_assert(isDeclaredAsStated<ScadaSummaryWidgetInterface, QMainWindow, QWidget>);
static_assert(needsAParent<TestCanvasScadaActionManagerFactory> && needsAParent<TestCanvasScadaActionManager> &&
              needsAParent<TestScadaActionFactory> && needsAParent<TestScadaRuntimManager> &&
              needsAParent<TestSystemAlarmManager> && needsAParent<TestProjectManager> &&
              needsAParent<TestScreenTransitionManager> && needsAParent<KorvaneScadaAlarmWidgetInterface>);
static_assert(!needsAParent<TestScadaDataLinkWidget> && !needsAParent<ScadaSummaryWidgetInterface>);
static_assert(std::is_base_of_v<QWidget, ScadaSummaryCenteralWidgetInterface>);
static_assert(std::is_base_of_v<QObject, KorvaneGeneralMessageProcessorInterface>);

// Without operations of their own these can be made as they are.
static_assert(!std::is_abstract_v<KorvaneScadaAlarmWidgetInterface> &&
              !std::is_abstract_v<ScadaSummaryWidgetInterface> &&
              !std::is_abstract_v<ScadaSummaryCenteralWidgetInterface>);
static_assert(std::is_abstract_v<ScadaDataLinkWidgetInterface> && std::is_abstract_v<KorvaneProjectManagerInterface>);

using AlarmRequest = QPair<ScadaAlarm, QList<ScadaTagActionInterface*>>;

/// The names of the pure virtual operations that a header declares, in order.
QStringList abstractOperations(const QString& className)
{
    QFile header(QStringLiteral(KORVANE_SOURCE_DIR "/scada/hub/%1.h").arg(className.toLower()));
    if (!header.open(QIODevice::ReadOnly))
        return {};
    QString text = QString::fromUtf8(header.readAll());
    text.remove(QRegularExpression(QStringLiteral("//[^\n]*")));
    static const QRegularExpression operation(
        QStringLiteral("virtual\\s[^;{}]*?(\\w+)\\s*\\([^;{}]*\\)\\s*(?:const)?\\s*=\\s*0;"));
    QStringList names;
    for (auto found = operation.globalMatch(text); found.hasNext();)
        names.append(found.next().captured(1));
    return names;
}

/// The signals that a class itself declares, in order, as text connections write them.
QStringList declaredSignals(const QMetaObject& meta)
{
    QStringList found;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            found.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    return found;
}

/// Makes each interface's object and calls \p check with it and with the interface's name.
template <typename Check>
void forEachInterface(Check check)
{
    check(std::make_unique<TestCanvasScadaActionManagerFactory>(nullptr).get(),
          "CanvasScadaActionManagerFactoryInterface");
    check(std::make_unique<TestCanvasScadaActionManager>(nullptr).get(), "CanvasScadaActionManagerInterface");
    check(std::make_unique<TestScadaActionFactory>(nullptr).get(), "KorvaneScadaActionFactoryInterface");
    check(std::make_unique<TestScadaRuntimManager>(nullptr).get(), "KorvaneScadaRuntimManagerInterface");
    check(std::make_unique<TestSystemAlarmManager>(nullptr).get(), "SystemAlarmManagerInterface");
    check(std::make_unique<KorvaneGeneralMessageProcessorInterface>().get(), "KorvaneGeneralMessageProcessorInterface");
    check(std::make_unique<TestProjectManager>(nullptr).get(), "KorvaneProjectManagerInterface");
    check(std::make_unique<TestScreenTransitionManager>(nullptr).get(), "KorvaneScreenTransitionManagerInterface");
    check(std::make_unique<KorvaneScadaAlarmWidgetInterface>(nullptr).get(), "KorvaneScadaAlarmWidgetInterface");
    check(std::make_unique<TestScadaDataLinkWidget>().get(), "ScadaDataLinkWidgetInterface");
    check(std::make_unique<ScadaSummaryWidgetInterface>().get(), "ScadaSummaryWidgetInterface");
    check(std::make_unique<ScadaSummaryCenteralWidgetInterface>().get(), "ScadaSummaryCenteralWidgetInterface");
}

/// Lives on a thread of its own and hears signals through queued connections by text. Made before anything else has
/// named the types to Qt: they must be registered by the interfaces themselves.
class Receiver : public QObject
{
    Q_OBJECT

public:
    Receiver()
    {
        moveToThread(&m_thread);
        m_thread.start();
    }
    ~Receiver() override
    {
        m_thread.quit();
        m_thread.wait();
    }

    bool listen(QObject* sender, const char* signal, const char* slot)
    {
        return QObject::connect(sender, signal, this, slot, Qt::QueuedConnection);
    }

    /// Returns when everything emitted before has been heard.
    void catchUp()
    {
        QMetaObject::invokeMethod(
            this, [] {}, Qt::BlockingQueuedConnection);
    }

    // Read only after catchUp().
    QList<AlarmRequest> requests;
    QList<ScadaOperationMessage> messages;
    QList<QList<uint>> points;
    QStringList plain;
    bool isElsewhere = true; ///< nothing was heard on the thread of the test

public Q_SLOTS:
    void takeRequest(QPair<ScadaAlarm, QList<ScadaTagActionInterface*>> request) { hear(requests, request); }
    void takeMessage(const ScadaOperationMessage& message) { hear(messages, message); }
    void takePoint(uint point) { hear(points, QList<uint>{point}); }
    void takePoints(QList<uint> all) { hear(points, all); }
    void takeNumber(int number) { hear(plain, QString::number(number)); }
    void takeNothing() { hear(plain, QString()); }

private:
    template <typename T>
    void hear(QList<T>& heard, const T& what)
    {
        heard.append(what);
        isElsewhere &= QThread::currentThread() == &m_thread;
    }

    QThread m_thread;
};

} // namespace

class tst_ServiceInterfaces : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The first of the tests, before a spy has named the types to Qt.
    void signalsCrossThreads()
    {
        Receiver receiver;
        TestCanvasScadaActionManager actions(nullptr);
        QVERIFY(receiver.listen(&actions, SIGNAL(alarmRequested(QPair<ScadaAlarm, QList<ScadaTagActionInterface*>>)),
                                SLOT(takeRequest(QPair<ScadaAlarm, QList<ScadaTagActionInterface*>>))));
        QVERIFY(receiver.listen(&actions, SIGNAL(alarmProcessed(int)), SLOT(takeNumber(int))));
        QVERIFY(receiver.listen(&actions, SIGNAL(alarmProcessFinished()), SLOT(takeNothing())));
        TestScadaRuntimManager runtime(nullptr);
        QVERIFY(receiver.listen(&runtime, SIGNAL(remoteControled(ScadaOperationMessage)),
                                SLOT(takeMessage(ScadaOperationMessage))));
        QVERIFY(receiver.listen(&runtime, SIGNAL(remoteControlFinished(ScadaOperationMessage)),
                                SLOT(takeMessage(ScadaOperationMessage))));
        QVERIFY(receiver.listen(&runtime, SIGNAL(alarmAcked(uint)), SLOT(takePoint(uint))));
        QVERIFY(receiver.listen(&runtime, SIGNAL(alarmSequenceAcked(QList<uint>)), SLOT(takePoints(QList<uint>))));
        TestProjectManager projects(nullptr);
        QVERIFY(receiver.listen(&projects, SIGNAL(projectClosed()), SLOT(takeNothing())));
        QVERIFY(receiver.listen(&projects, SIGNAL(projectCreated()), SLOT(takeNothing())));
        QVERIFY(receiver.listen(&projects, SIGNAL(projectOpened()), SLOT(takeNothing())));
        TestScadaDataLinkWidget links;
        QVERIFY(receiver.listen(&links, SIGNAL(dataReseted(int)), SLOT(takeNumber(int))));

        ScadaAlarm alarm;
        alarm.objectId = 200001;
        alarm.message = QStringLiteral("High pressure");
        int marker = 0;
        const QList<ScadaTagActionInterface*> concerned{reinterpret_cast<ScadaTagActionInterface*>(&marker)};
        ScadaOperationMessage sent;
        sent.requestId = 3;
        sent.value = 12.5;
        sent.outcome = ScadaOperationMessage::Outcome::Sent;
        ScadaOperationMessage done = sent;
        done.outcome = ScadaOperationMessage::Outcome::Done;
        Q_EMIT actions.alarmRequested({alarm, concerned});
        Q_EMIT actions.alarmProcessed(7);
        Q_EMIT actions.alarmProcessFinished();
        Q_EMIT runtime.remoteControled(sent);
        Q_EMIT runtime.remoteControlFinished(done);
        Q_EMIT runtime.alarmAcked(200001);
        Q_EMIT runtime.alarmSequenceAcked({1, 2, 3});
        Q_EMIT projects.projectClosed();
        Q_EMIT projects.projectCreated();
        Q_EMIT projects.projectOpened();
        Q_EMIT links.dataReseted(4);
        receiver.catchUp();

        QVERIFY(receiver.isElsewhere);
        QCOMPARE(receiver.requests.size(), 1);
        QVERIFY(receiver.requests.first().first.isEqual(alarm));
        QCOMPARE(receiver.requests.first().second, concerned);
        QCOMPARE(receiver.messages.size(), 2);
        QVERIFY(receiver.messages.first().isEqual(sent));
        QVERIFY(receiver.messages.last().isEqual(done));
        QCOMPARE(receiver.points, (QList<QList<uint>>{{200001}, {1, 2, 3}}));
        QCOMPARE(receiver.plain,
                 QStringList({QStringLiteral("7"), QString(), QString(), QString(), QString(), QStringLiteral("4")}));
    }

    void eachStandsOnItsBase()
    {
        const std::pair<const QMetaObject*, const QMetaObject*> bases[] = {
            {&CanvasScadaActionManagerFactoryInterface::staticMetaObject, &QObject::staticMetaObject},
            {&CanvasScadaActionManagerInterface::staticMetaObject, &QObject::staticMetaObject},
            {&KorvaneScadaActionFactoryInterface::staticMetaObject, &QObject::staticMetaObject},
            {&KorvaneScadaRuntimManagerInterface::staticMetaObject, &QObject::staticMetaObject},
            {&SystemAlarmManagerInterface::staticMetaObject, &QObject::staticMetaObject},
            {&KorvaneGeneralMessageProcessorInterface::staticMetaObject, &QObject::staticMetaObject},
            {&KorvaneProjectManagerInterface::staticMetaObject, &QWidget::staticMetaObject},
            {&KorvaneScreenTransitionManagerInterface::staticMetaObject, &QWidget::staticMetaObject},
            {&KorvaneScadaAlarmWidgetInterface::staticMetaObject, &QWidget::staticMetaObject},
            {&ScadaDataLinkWidgetInterface::staticMetaObject, &QWidget::staticMetaObject},
            {&ScadaSummaryWidgetInterface::staticMetaObject, &QMainWindow::staticMetaObject},
            {&ScadaSummaryCenteralWidgetInterface::staticMetaObject, &QWidget::staticMetaObject},
        };
        for (const auto& [meta, base] : bases)
            QVERIFY2(meta->superClass() == base, meta->className());
    }

    void abstractOperations_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<int>("count");
        QTest::newRow("factory of action managers") << "CanvasScadaActionManagerFactoryInterface" << 1;
        QTest::newRow("action manager") << "CanvasScadaActionManagerInterface" << 37;
        QTest::newRow("action factory") << "KorvaneScadaActionFactoryInterface" << 7;
        QTest::newRow("runtime manager") << "KorvaneScadaRuntimManagerInterface" << 70;
        QTest::newRow("alarm manager") << "SystemAlarmManagerInterface" << 11;
        QTest::newRow("message processor") << "KorvaneGeneralMessageProcessorInterface" << 0;
        QTest::newRow("project manager") << "KorvaneProjectManagerInterface" << 23;
        QTest::newRow("screen transition manager") << "KorvaneScreenTransitionManagerInterface" << 1;
        QTest::newRow("alarm widget") << "KorvaneScadaAlarmWidgetInterface" << 0;
        QTest::newRow("data link widget") << "ScadaDataLinkWidgetInterface" << 2;
        QTest::newRow("summary widget") << "ScadaSummaryWidgetInterface" << 0;
        QTest::newRow("central widget") << "ScadaSummaryCenteralWidgetInterface" << 0;
        QTest::newRow("hub") << "KorvaneScadaCoreInterface" << 5;
    }
    void abstractOperations()
    {
        QFETCH(QString, className);
        const QStringList names = ::abstractOperations(className);
        QTEST(names.size(), "count");
        QCOMPARE(QSet<QString>(names.begin(), names.end()).size(),
                 names.size()); // no overloads: their order would differ
    }

    void securityIsTheProjectManagersFourthOperation()
    {
        QCOMPARE(::abstractOperations(QStringLiteral("KorvaneProjectManagerInterface")).value(3),
                 QStringLiteral("isSecurityEnabled"));
        static_assert(std::is_same_v<decltype(&KorvaneProjectManagerInterface::isSecurityEnabled),
                                     bool (KorvaneProjectManagerInterface::*)()>);
    }

    void signalsStandInTheirOrder()
    {
        QCOMPARE(declaredSignals(CanvasScadaActionManagerInterface::staticMetaObject),
                 QStringList({QStringLiteral("alarmRequested(QPair<ScadaAlarm,QList<ScadaTagActionInterface*> >)"),
                              QStringLiteral("alarmProcessed(int)"), QStringLiteral("alarmProcessFinished()")}));
        QCOMPARE(declaredSignals(KorvaneScadaRuntimManagerInterface::staticMetaObject),
                 QStringList({QStringLiteral("remoteControled(ScadaOperationMessage)"),
                              QStringLiteral("remoteControlFinished(ScadaOperationMessage)"),
                              QStringLiteral("alarmAcked(uint)"), QStringLiteral("alarmSequenceAcked(QList<uint>)")}));
        QCOMPARE(declaredSignals(KorvaneProjectManagerInterface::staticMetaObject),
                 QStringList({QStringLiteral("projectClosed()"), QStringLiteral("projectCreated()"),
                              QStringLiteral("projectOpened()")}));
        QCOMPARE(declaredSignals(ScadaDataLinkWidgetInterface::staticMetaObject),
                 QStringList({QStringLiteral("dataReseted(int)")}));
        for (const QMetaObject* meta :
             {&CanvasScadaActionManagerFactoryInterface::staticMetaObject,
              &KorvaneScadaActionFactoryInterface::staticMetaObject, &SystemAlarmManagerInterface::staticMetaObject,
              &KorvaneGeneralMessageProcessorInterface::staticMetaObject,
              &KorvaneScreenTransitionManagerInterface::staticMetaObject,
              &KorvaneScadaAlarmWidgetInterface::staticMetaObject, &ScadaSummaryWidgetInterface::staticMetaObject,
              &ScadaSummaryCenteralWidgetInterface::staticMetaObject})
            QVERIFY2(declaredSignals(*meta).isEmpty(), meta->className());
    }

    void eachCastsByItsNameAndItsBases()
    {
        forEachInterface([](QObject* object, const char* name) {
            QCOMPARE(object->qt_metacast(name), static_cast<void*>(object));
            QCOMPARE(object->qt_metacast("QObject"), static_cast<void*>(object));
            QVERIFY(!object->qt_metacast("NoSuchInterface"));
            QVERIFY(object->inherits(name));
        });
    }

    void eachBelongsToItsParentAlone()
    {
        QObject parent;
        auto* manager = new TestCanvasScadaActionManager(&parent);
        QCOMPARE(manager->parent(), &parent);
        auto* sibling = new TestSystemAlarmManager(&parent);
        delete manager;
        QCOMPARE(parent.children(), (QObjectList{sibling})); // itself and nothing else

        QWidget window;
        const TestProjectManager projects(&window);
        QCOMPARE(projects.parentWidget(), &window);
    }

    void theDataLinkWidgetsOwnBodyDoesNothing()
    {
        struct Delegating : TestScadaDataLinkWidget
        {
            void setShapeObject(TesselInterface* shape) override
            {
                ScadaDataLinkWidgetInterface::setShapeObject(shape);
            }
        };
        Delegating widget;
        QSignalSpy reset(&widget, SIGNAL(dataReseted(int)));
        widget.setShapeObject(nullptr);
        QCOMPARE(reset.count(), 0);
    }

private:
    OwnSettings m_settings;
};

QTEST_MAIN(tst_ServiceInterfaces)
#include "tst_serviceinterfaces.moc"
