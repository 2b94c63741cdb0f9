#include "host/scripting/scripttrust.h"
#include "host/scripting/trustbar.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/ownsettings.h"
#include "tests/support/temporaryfiles.h"

#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

using ScriptTrust::Answer;

namespace {

/// The bar for a folder of that name.
struct TestBar
{
    explicit TestBar(const char* name = "plant") : folder(files.path(QString::fromUtf8(name)))
    {
        if (!QDir().mkpath(folder))
            qFatal("%s", qPrintable(folder));
        bar = std::make_unique<TrustBar>(folder);
        bar->show();
    }
    void click(const char* button) const
    {
        QTest::mouseClick(bar->findChild<QPushButton*>(QString::fromLatin1(button)), Qt::LeftButton);
    }

    TemporaryFiles files;
    QString folder;
    std::unique_ptr<TrustBar> bar;
};

} // namespace

class tst_TrustBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void itNamesTheFolder()
    {
        const TestBar test;
        QCOMPARE(
            test.bar->findChild<QLabel*>()->text(),
            QStringLiteral("This project's scripts don't run. Scripts can do whatever you can; run them only if you "
                           "trust where %1 comes from.")
                .arg(test.folder));
        QVERIFY(ScriptTrust::answerFor(test.folder) == Answer::NotAsked); // being shown is no answer
    }

    void aFoldersNameIsNoMarkup()
    {
        const TestBar test("<h1>Trusted by the administrator<h1>");
        const auto* label = test.bar->findChild<QLabel*>();
        QCOMPARE(label->textFormat(), Qt::PlainText);
    }

    void aYesIsKeptAndTold()
    {
        const TestBar test;
        QSignalSpy trusted(test.bar.get(), &TrustBar::trusted);
        test.click("runScripts");
        QCOMPARE(trusted.size(), 1);
        QVERIFY(!test.bar->isVisible());
        QVERIFY(ScriptTrust::answerFor(test.folder) == Answer::Trusted);
    }

    void aNoIsKept()
    {
        const TestBar test;
        QSignalSpy trusted(test.bar.get(), &TrustBar::trusted);
        test.click("refuseScripts");
        QCOMPARE(trusted.size(), 0);
        QVERIFY(!test.bar->isVisible());
        QVERIFY(ScriptTrust::answerFor(test.folder) == Answer::Refused);
        test.bar->show();
        test.click("runScripts");
        QCOMPARE(trusted.size(), 1);
        QVERIFY(ScriptTrust::answerFor(test.folder) == Answer::Trusted);
    }

    void anAnswerThatCantBeKeptCountsForNow()
    {
        const TestBar test;
        QSignalSpy trusted(test.bar.get(), &TrustBar::trusted);
        QVERIFY(QDir(test.folder).removeRecursively());
        test.click("runScripts");
        QCOMPARE(trusted.size(), 1);
        QVERIFY(!test.bar->isVisible());
    }

private:
    OwnSettings m_settings;
};

QTEST_MAIN(tst_TrustBar)
#include "tst_trustbar.moc"
