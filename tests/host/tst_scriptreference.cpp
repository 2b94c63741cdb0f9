// The reference in docs/scripting.md is what the scripts' module says of itself. KORVANE_REWRITE=1 writes it anew.

#include "host/scripting/scriptengine.h"

#include <QFile>
#include <QtTest>

namespace {

const QString fileName = QStringLiteral(KORVANE_SOURCE_DIR "/docs/scripting.md");
const QString heading = QStringLiteral("## Reference\n\n");

QString written()
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qPrintable(fileName), qPrintable(file.errorString()));
    return QString::fromUtf8(file.readAll());
}

} // namespace

class tst_ScriptReference : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isWhatTheModuleSays()
    {
        const QString text = written();
        const int place = text.indexOf(heading);
        QVERIFY(place > 0);
        if (qEnvironmentVariableIsSet("KORVANE_REWRITE")) {
            QFile file(fileName);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write((text.left(place) + heading + ScriptEngine::reference()).toUtf8());
        }
        QCOMPARE(written().mid(place + heading.size()), ScriptEngine::reference());
    }

    void everythingIsDescribed()
    {
        const QString reference = ScriptEngine::reference();
        for (const char* call :
             {"`tags.read(tag)`", "`pages.open(name)`", "`alarms.active()`", "`log.error(text)`",
              "`korvane.set_property(name, value)`", "`shape[name] = value`", "`onTextChanged(obj,text)`"})
            QVERIFY2(reference.contains(QLatin1String(call)), call);
        QVERIFY(!reference.contains(QLatin1String("None\n\n"))); // what a class without a docstring would say
    }
};

QTEST_MAIN(tst_ScriptReference)
#include "tst_scriptreference.moc"
