#include "host/scripting/scripttrust.h"
#include "tests/support/ownsettings.h"
#include "tests/support/temporaryfiles.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using ScriptTrust::Answer;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// A folder of that name.
QString made(const TemporaryFiles& files, const QString& name)
{
    if (!QDir().mkpath(files.path(name)))
        qFatal("%s", qPrintable(files.path(name)));
    return files.path(name);
}

} // namespace

Q_DECLARE_METATYPE(ScriptTrust::Answer)

class tst_ScriptTrust : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        QDir(m_settings.path(text("Korvane"))).removeRecursively();
        QCoreApplication::setApplicationName(text("tst_scripttrust"));
        QCoreApplication::setOrganizationName(QString());
    }

    void atFirstNobodyWasAsked()
    {
        const TemporaryFiles files;
        QVERIFY(ScriptTrust::answerFor(made(files, text("plant"))) == Answer::NotAsked);
        QVERIFY(!QFile::exists(m_settings.path(text("Korvane/trust.ini")))); // asking leaves nothing behind
    }

    void answersAreKept_data()
    {
        QTest::addColumn<Answer>("first");
        QTest::addColumn<Answer>("second");
        const auto row = [](const char* name, Answer first, Answer second) { QTest::newRow(name) << first << second; };
        row("trusted", Answer::Trusted, Answer::Trusted);
        row("refused", Answer::Refused, Answer::Refused);
        row("trusted at last", Answer::Refused, Answer::Trusted);
        row("refused at last", Answer::Trusted, Answer::Refused);
        row("trust that is forgotten", Answer::Trusted, Answer::NotAsked);
        row("a refusal that is forgotten", Answer::Refused, Answer::NotAsked);
        row("nothing to forget", Answer::NotAsked, Answer::NotAsked);
    }
    void answersAreKept()
    {
        QFETCH(Answer, first);
        QFETCH(Answer, second);
        const TemporaryFiles files;
        const QString folder = made(files, text("plant"));
        const QString other = made(files, text("other"));
        QVERIFY(ScriptTrust::setAnswer(other, Answer::Trusted));
        QVERIFY(ScriptTrust::setAnswer(folder, first));
        QVERIFY(ScriptTrust::answerFor(folder) == first);
        QVERIFY(ScriptTrust::setAnswer(folder, second));
        QVERIFY(ScriptTrust::answerFor(folder) == second);
        QVERIFY(ScriptTrust::answerFor(other) == Answer::Trusted);
        QVERIFY(ScriptTrust::answerFor(files.path(QString())) == Answer::NotAsked);            // the folder around them
        QVERIFY(ScriptTrust::answerFor(made(files, text("plant/pages"))) == Answer::NotAsked); // one inside
    }

    void foldersAreToldApartByTheirNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("other");
        const auto row = [](const char* name, const char* folder, const char* other) {
            QTest::newRow(name) << text(folder) << text(other);
        };
        row("blanks", "water loop", "water  loop");
        row("a blank at the end", "plant ", "plant");
        row("per cent", "100%", "100%25");
        row("what a slash would be written as", "a%2Fb", "a/b");
        row("capitals", "Plant", "plant");
        row("letters with marks", "W\xc3\xa4rme", "Warme");
        row("other scripts", "\xec\x88\x98\xeb\x8f\x84", "\xec\x88\x98");
        row("beyond 16 bits", "\xf0\x9f\x92\xa7", "\xf0\x9f\x92\xa8");
        row("what settings files write with", "a=b;c,d[e]#\"f\"", "a");
        row("a backslash", "a\\b", "a/b");
        row("a line feed", "a\nb", "a");
        row("a folder in it", "a/b/c", "a/b");
        row("a dot in front", ".plant", "plant");
    }
    void foldersAreToldApartByTheirNames()
    {
        QFETCH(QString, name);
        QFETCH(QString, other);
        const TemporaryFiles files;
        const QString folder = made(files, name);
        const QString neighbour = made(files, other);
        QVERIFY(ScriptTrust::setAnswer(folder, Answer::Trusted));
        QVERIFY(ScriptTrust::answerFor(folder) == Answer::Trusted);
        QVERIFY(ScriptTrust::answerFor(neighbour) == Answer::NotAsked);
        QVERIFY(ScriptTrust::setAnswer(neighbour, Answer::Refused));
        QVERIFY(ScriptTrust::answerFor(folder) == Answer::Trusted);
        QVERIFY(ScriptTrust::answerFor(neighbour) == Answer::Refused);
    }

    void itsRealPathCounts()
    {
        const TemporaryFiles files;
        const QString folder = made(files, text("plant"));
        const QString link = files.path(text("link"));
        const QString upper = files.path(text("upper"));
        QVERIFY(QFile::link(folder, link));
        QVERIFY(QFile::link(files.path(QString()), upper));
        QVERIFY(ScriptTrust::setAnswer(link, Answer::Trusted));
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(files.path(QString())));
        const auto restore = qScopeGuard([&before] { QDir::setCurrent(before); });
        for (const QString& same : {folder, link, folder + QLatin1Char('/'), upper + text("/plant"),
                                    upper + text("/link"), text("plant"), text("./plant/../plant/."), text("link/")})
            QVERIFY2(ScriptTrust::answerFor(same) == Answer::Trusted, qPrintable(same));
        QVERIFY(QDir::setCurrent(folder));
        QVERIFY(ScriptTrust::answerFor(text(".")) == Answer::Trusted);
    }

    void aLinkThatLeadsElsewhereIsAnotherFolder()
    {
        const TemporaryFiles files;
        const QString folder = made(files, text("plant"));
        const QString link = files.path(text("link"));
        QVERIFY(QFile::link(folder, link));
        QVERIFY(ScriptTrust::setAnswer(link, Answer::Trusted));
        QVERIFY(QFile::remove(link));
        QVERIFY(QFile::link(made(files, text("evil")), link));
        QVERIFY(ScriptTrust::answerFor(link) == Answer::NotAsked);
        QVERIFY(ScriptTrust::answerFor(folder) == Answer::Trusted);
        QVERIFY(QFile::rename(folder, files.path(text("moved"))));
        QVERIFY(ScriptTrust::answerFor(files.path(text("moved"))) == Answer::NotAsked);
    }

    void aFolderThatIsNotThereIsNotAskedFor()
    {
        const TemporaryFiles files;
        const QString folder = files.path(text("nowhere"));
        QVERIFY(ScriptTrust::answerFor(folder) == Answer::NotAsked);
        QVERIFY(!ScriptTrust::setAnswer(folder, Answer::Trusted));
        QVERIFY(!ScriptTrust::setAnswer(QString(), Answer::Trusted));
        QVERIFY(ScriptTrust::answerFor(QString()) == Answer::NotAsked);
        QVERIFY(QFile::link(folder, files.path(text("link")))); // to nothing
        QVERIFY(!ScriptTrust::setAnswer(files.path(text("link")), Answer::Trusted));
        QVERIFY(ScriptTrust::answerFor(made(files, text("nowhere"))) == Answer::NotAsked);
    }

    void allProgramsShareTheAnswers()
    {
        const TemporaryFiles files;
        const QString folder = made(files, text("plant"));
        QCoreApplication::setApplicationName(text("korvane-runtime"));
        QCoreApplication::setOrganizationName(text("Korvane"));
        QVERIFY(ScriptTrust::setAnswer(folder, Answer::Trusted));
        QCoreApplication::setApplicationName(text("korvane-designer"));
        QVERIFY(ScriptTrust::answerFor(folder) == Answer::Trusted);
        QCoreApplication::setOrganizationName(text("Another"));
        QVERIFY(ScriptTrust::answerFor(folder) == Answer::Trusted);
        QFile file(m_settings.path(text("Korvane/trust.ini"))); // the test's own
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
        const QByteArray stored = file.readAll();
        QVERIFY2(stored.startsWith("[ScriptFolders]\n") && stored.endsWith("plant=true\n"), stored.constData());
    }

    void aDamagedAnswerIsNoYes_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<Answer>("read");
        QTest::newRow("as it is written") << QByteArray("true") << Answer::Trusted;
        QTest::newRow("another word") << QByteArray("maybe") << Answer::Refused;
        QTest::newRow("a number") << QByteArray("2") << Answer::Refused;
        QTest::newRow("nothing") << QByteArray() << Answer::Refused;
        QTest::newRow("a list") << QByteArray("true, true") << Answer::Refused;
    }
    void aDamagedAnswerIsNoYes()
    {
        QFETCH(QByteArray, answer);
        QFETCH(Answer, read);
        const TemporaryFiles files;
        const QString folder = made(files, text("plant"));
        QVERIFY(ScriptTrust::setAnswer(folder, Answer::Trusted));
        QFile file(m_settings.path(text("Korvane/trust.ini")));
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray stored = file.readAll().replace("=true", "=" + answer);
        QVERIFY(file.resize(0) && file.seek(0) && file.write(stored) == stored.size());
        file.close();
        QVERIFY(ScriptTrust::answerFor(folder) == read);
    }

    void anAnswerThatCantBeKeptSaysSo()
    {
        const TemporaryFiles files;
        const QString folder = made(files, text("plant"));
        QVERIFY(QDir().mkpath(m_settings.path(text("Korvane/trust.ini")))); // a folder in its place
        QVERIFY(!ScriptTrust::setAnswer(folder, Answer::Trusted));
    }

private:
    OwnSettings m_settings;
};

QTEST_GUILESS_MAIN(tst_ScriptTrust)
#include "tst_scripttrust.moc"
