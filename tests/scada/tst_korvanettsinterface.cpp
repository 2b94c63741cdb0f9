#include "scada/audio/korvanettsinterface.h"
#include "scada/audio/ttsengininterface_p.h"
#include "tests/support/markingtranslator.h"

#include <QMetaObject>
#include <QPointer>
#include <QtTest>

#include <cstddef>
#include <cstring>

namespace {

class LoadingFrontEnd : public KorvaneTTSInterface
{
public:
    LoadingFrontEnd() : KorvaneTTSInterface(nullptr) { loadEngine(); }
};

QStringList childrenOf(const QObject& object)
{
    QStringList names;
    for (const QObject* child : object.children())
        names.append(QString::fromLatin1(child->metaObject()->className()));
    return names;
}

/// An object whose last virtual operation of QObject's can be named.
class Plain : public QObject
{
public:
    static auto lastOperation() { return &Plain::disconnectNotify; }
};

/// Where the table of virtual operations has an operation, in places; of meaning only beside another one. Compilers of the
/// Itanium ABI keep that in the pointer.
template <typename Operation>
std::ptrdiff_t placeOf(Operation operation)
{
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &operation, sizeof offset);
    return offset / std::ptrdiff_t(sizeof(void*));
}

} // namespace

class tst_KorvaneTTSInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasNoEnginesBeforeAMessage()
    {
        const KorvaneTTSInterface speech(nullptr);
        QCOMPARE(childrenOf(speech), QStringList());
    }

    void anUnsupportedLanguageMakesBothEnginesAndIsDropped_data()
    {
        QTest::addColumn<QLocale::Language>("language");
        QTest::newRow("Japanese") << QLocale::Japanese;
        QTest::newRow("any language") << QLocale::AnyLanguage;
        QTest::newRow("the C locale") << QLocale::C;
    }

    void anUnsupportedLanguageMakesBothEnginesAndIsDropped()
    {
        QFETCH(QLocale::Language, language);
        KorvaneTTSInterface speech(nullptr);
        speech.playMessage(QStringLiteral("text"), language);
        const QStringList both{QStringLiteral("VoiceWareEnglishEngine"), QStringLiteral("VoiceWareKoreanEngine")};
        QCOMPARE(childrenOf(speech), both);
        speech.playMessage(QStringLiteral("text"), language);
        QCOMPARE(childrenOf(speech), both);
    }

    void enginesThatAreLoadedAreNotMadeAgain()
    {
        LoadingFrontEnd speech;
        speech.playMessage(QStringLiteral("text"), QLocale::Japanese);
        QCOMPARE(speech.children().size(), 2);
    }

    void enginesGoWithTheFrontEnd()
    {
        QPointer<QObject> engine;
        {
            const LoadingFrontEnd speech;
            engine = speech.children().constFirst();
            QVERIFY(engine);
        }
        QVERIFY(!engine);
    }

    void enginesSpeakTheLanguageThatTheyStandFor()
    {
        const LoadingFrontEnd speech;
        QCOMPARE(childrenOf(speech),
                 QStringList({QStringLiteral("VoiceWareEnglishEngine"), QStringLiteral("VoiceWareKoreanEngine")}));
        QList<QLocale::Language> languages;
        for (const QObject* engine : speech.children())
            languages.append(static_cast<const TTSEnginInterface*>(engine)->language());
        QCOMPARE(languages, QList<QLocale::Language>({QLocale::English, QLocale::Korean}));
    }

    void classesHaveNothingToConnectOrSet()
    {
        const LoadingFrontEnd speech;
        QList<const QMetaObject*> classes{&KorvaneTTSInterface::staticMetaObject};
        for (const QObject* engine : speech.children())
            classes.append(engine->metaObject());
        for (const QMetaObject* meta : qAsConst(classes)) {
            QCOMPARE(meta->superClass(), &QObject::staticMetaObject);
            QCOMPARE(meta->methodCount(), QObject::staticMetaObject.methodCount());
            QCOMPARE(meta->propertyCount(), QObject::staticMetaObject.propertyCount());
        }
    }

    void anEnginesOperationsStandInTheirOrder()
    {
#ifdef _MSC_VER
        QSKIP("the compiler does not keep an operation's place in its pointer");
#endif
        const std::ptrdiff_t last = placeOf(Plain::lastOperation());
        QCOMPARE(placeOf(&TTSEnginInterface::playMessage), last + 1);
        QCOMPARE(placeOf(&TTSEnginInterface::language), last + 2);
    }

    void textsAreLookedUpUnderTheClass()
    {
        const MarkingTranslator translator;
        QCOMPARE(KorvaneTTSInterface::tr("voice"), QStringLiteral("KorvaneTTSInterface::voice"));
        QCOMPARE(translatedFromUtf8<KorvaneTTSInterface>("voice"), QStringLiteral("KorvaneTTSInterface::voice"));
    }
};

QTEST_GUILESS_MAIN(tst_KorvaneTTSInterface)
#include "tst_korvanettsinterface.moc"
