#include "scada/actions/scadascriptaction.h"
#include "scada/binding/objecttarget.h"

#include <QTranslator>
#include <QtTest>

using DataCode::DataField;
using Korvane::ScadaObjectType;

class tst_KoreanTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_translator.load(QStringLiteral("korvanescada_ko"), QStringLiteral(KORVANE_TRANSLATIONS)));
        QVERIFY(QCoreApplication::installTranslator(&m_translator));
    }

    void cleanupTestCase()
    {
        QVERIFY(QCoreApplication::removeTranslator(&m_translator));
        QCOMPARE(ObjectTarget::getFieldInformationByType(ScadaObjectType::AnalogPoint).first().second,
                 QStringLiteral("Current Value"));
    }

    void aFieldListIsKorean()
    {
        const ObjectTarget::FieldList expected = {
            {DataField(93), QStringLiteral("통신 상태")},      {DataField(94), QStringLiteral("스캔 상태")},
            {DataField(76), QStringLiteral("최근 스캔 시각")}, {DataField(95), QStringLiteral("금일 통신율")},
            {DataField(96), QStringLiteral("전체 통신율")},    {DataField(97), QStringLiteral("통신 연결 시각")},
            {DataField(98), QStringLiteral("통신 단절 시각")},
        };
        QCOMPARE(ObjectTarget::getFieldInformationByType(ScadaObjectType::RtuObject), expected);
    }

    void everyFieldHasItsOwnKoreanName()
    {
        QMap<QString, DataField> names;
        ObjectTarget::FieldList fields = ObjectTarget::getFieldInformationByType(ScadaObjectType::NoObject);
        fields += ObjectTarget::getDataLinkItemFieldInformation();
        for (const auto& [field, name] : fields) {
            QVERIFY2(name.contains(QRegularExpression(QStringLiteral("[\\x{AC00}-\\x{D7A3}]"))), qPrintable(name));
            QVERIFY2(!names.contains(name) || names.value(name) == field, qPrintable(name));
            names.insert(name, field);
        }
    }

    void everyTriggerHasItsOwnKoreanName()
    {
        QSet<QString> names;
        ScadaScriptAction action;
        for (const int trigger : {0, 1, 2, 3, 4, 5, 6, 7, 8, 10, 13}) {
            action.setTriggerType(Korvane::TriggerType(trigger));
            const QString name = action.triggerName();
            QVERIFY2(name.contains(QRegularExpression(QStringLiteral("[\\x{AC00}-\\x{D7A3}]"))), qPrintable(name));
            QVERIFY2(!names.contains(name), qPrintable(name));
            names.insert(name);
        }
        QCOMPARE(action.name(), QStringLiteral("스크립트 실행"));
    }

private:
    QTranslator m_translator;
};

QTEST_GUILESS_MAIN(tst_KoreanTexts)
#include "tst_koreantexts.moc"
