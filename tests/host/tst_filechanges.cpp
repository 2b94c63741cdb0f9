#include "host/projectfiles/filechanges.h"
#include "tests/support/temporaryfiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// A folder with two files, and what a change that is interrupted leaves in it.
struct Folder
{
    Folder()
    {
        write("a.txt", "old a");
        write("b.txt", "old b");
    }
    QString path(const char* name = "") const { return files.path(text("project/") + text(name)); }
    void write(const char* name, const QByteArray& bytes) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        files.write(text("project/") + text(name), bytes);
    }
    QByteArray read(const char* name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    QString folder() const { return files.path(text("project")); }
    void change() const
    {
        const auto changes = FileChanges::begin(folder());
        if (!changes || !(*changes)->stage(text("a.txt"), "new a") || !(*changes)->stage(text("b.txt"), "new b") ||
            !(*changes)->commit(text("a change")))
            qFatal("no change was made");
    }
    /// As after a program that ended while \p done files were in place.
    void interrupt(int done, bool hasJournal = true) const
    {
        const QByteArray names[] = {"a", "b"};
        QByteArray entries;
        for (int number = 0; number < 2; ++number) {
            const QByteArray pending = ".changes/pending/" + QByteArray::number(number);
            const QByteArray bytes = "new " + names[number];
            write((pending + ".old").constData(), "old " + names[number]);
            if (number < done)
                write((names[number] + ".txt").constData(), bytes);
            else
                write((pending + ".new").constData(), bytes);
            entries += QByteArray(number ? "," : "") + "[\"" + names[number] + ".txt\",\"" +
                       QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex() + "\"]";
        }
        if (hasJournal)
            write(".changes/pending/journal.json",
                  "{\"title\":\"a change\",\"undo\":false,\"files\":[" + entries + "]}");
    }

    TemporaryFiles files;
};

} // namespace

class tst_FileChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangeIsMadeAsAWhole()
    {
        const Folder folder;
        {
            const auto changes = FileChanges::begin(folder.folder());
            QVERIFY(changes);
            QVERIFY((*changes)->stage(text("a.txt"), "new a"));
            QCOMPARE(folder.read("a.txt"), QByteArray("old a"));
            QVERIFY((*changes)->stage(text("b.txt"), "new b"));
            QVERIFY((*changes)->commit(text("a change")));
        }
        QCOMPARE(folder.read("a.txt"), QByteArray("new a"));
        QCOMPARE(folder.read("b.txt"), QByteArray("new b"));
    }

    void whatIsNotCommittedIsForgotten()
    {
        const Folder folder;
        {
            const auto changes = FileChanges::begin(folder.folder());
            QVERIFY(changes && (*changes)->stage(text("a.txt"), "new a"));
        }
        QCOMPARE(folder.read("a.txt"), QByteArray("old a"));
        QVERIFY(!QFileInfo::exists(folder.path(".changes")));
    }

    void permissionsStay()
    {
        const Folder folder;
        const auto permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QVERIFY(QFile::setPermissions(folder.path("a.txt"), permissions));
        folder.change();
        QCOMPARE(QFile::permissions(folder.path("a.txt")), permissions);
    }

    void twoAtOnceAreRefused()
    {
        const Folder folder;
        const auto first = FileChanges::begin(folder.folder());
        QVERIFY(first);
        const auto second = FileChanges::begin(folder.folder());
        QVERIFY(!second);
        QVERIFY2(second.error().contains(text("another program")), qPrintable(second.error()));
        QVERIFY((*first)->stage(text("a.txt"), "new a"));
        QVERIFY((*first)->commit(text("first")));
        QCOMPARE(folder.read("a.txt"), QByteArray("new a"));
    }

    void aFileThatSomebodyElseReplacesMeanwhileStopsAll()
    {
        const Folder folder;
        const auto changes = FileChanges::begin(folder.folder());
        QVERIFY(changes && (*changes)->stage(text("a.txt"), "new a") && (*changes)->stage(text("b.txt"), "new b"));
        QVERIFY(QFile::remove(folder.path("b.txt")));
        folder.write("b.txt", "of somebody else");
        QVERIFY(!(*changes)->commit(text("a change")));
        QCOMPARE(folder.read("a.txt"), QByteArray("old a"));
        QCOMPARE(folder.read("b.txt"), QByteArray("of somebody else"));
    }

    void anInterruptedChangeIsCompleted_data()
    {
        QTest::addColumn<int>("done");
        QTest::newRow("before the first file") << 0;
        QTest::newRow("between two files") << 1;
        QTest::newRow("behind the last file") << 2;
    }
    void anInterruptedChangeIsCompleted()
    {
        QFETCH(const int, done);
        const Folder folder;
        folder.interrupt(done);
        QVERIFY(!FileChanges::begin(folder.folder()));
        const auto recovered = FileChanges::recover(folder.folder());
        QVERIFY(recovered);
        QVERIFY2(recovered->contains(text("completed: a change")), qPrintable(*recovered));
        QCOMPARE(folder.read("a.txt"), QByteArray("new a"));
        QCOMPARE(folder.read("b.txt"), QByteArray("new b"));
        QCOMPARE(FileChanges::recover(folder.folder()).value(), QString());
        QVERIFY(FileChanges::undo(folder.folder()));
        QCOMPARE(folder.read("a.txt"), QByteArray("old a"));
        QCOMPARE(folder.read("b.txt"), QByteArray("old b"));
    }

    void aChangeInterruptedBeforeItsJournalIsForgotten()
    {
        const Folder folder;
        folder.interrupt(0, false);
        const auto recovered = FileChanges::recover(folder.folder());
        QVERIFY(recovered);
        QVERIFY2(recovered->contains(text("forgotten")), qPrintable(*recovered));
        QCOMPARE(folder.read("a.txt"), QByteArray("old a"));
        QVERIFY(!QFileInfo::exists(folder.path(".changes")));
    }

    void anInterruptedChangeThatCantBeCompletedIsTakenBack()
    {
        const Folder folder;
        folder.interrupt(1);
        folder.write("b.txt", "of somebody else");
        const auto recovered = FileChanges::recover(folder.folder());
        QVERIFY(recovered);
        QVERIFY2(recovered->contains(text("taken back")), qPrintable(*recovered));
        QCOMPARE(folder.read("a.txt"), QByteArray("old a"));
        QCOMPARE(folder.read("b.txt"), QByteArray("of somebody else"));
    }

    void aJournalReachesNothingOutsideOfTheProject()
    {
        const Folder folder;
        folder.interrupt(0);
        folder.files.write(text("outside.txt"), "old a");
        folder.write(".changes/pending/journal.json",
                     "{\"title\":\"x\",\"undo\":false,\"files\":[[\"pages/../../outside.txt\",\"00\"]]}");
        const auto recovered = FileChanges::recover(folder.folder());
        QVERIFY(!recovered);
        QVERIFY2(recovered.error().contains(text("outside of the project")), qPrintable(recovered.error()));
        QFile outside(folder.files.path(text("outside.txt")));
        QVERIFY(outside.open(QIODevice::ReadOnly));
        QCOMPARE(outside.readAll(), QByteArray("old a"));
    }

    void theLastChangeIsTakenBackOnce()
    {
        const Folder folder;
        folder.change();
        const auto undone = FileChanges::undo(folder.folder());
        QVERIFY2(undone, undone ? "" : qPrintable(undone.error()));
        QCOMPARE(*undone, text("a change"));
        QCOMPARE(folder.read("a.txt"), QByteArray("old a"));
        QCOMPARE(folder.read("b.txt"), QByteArray("old b"));
        QVERIFY(!FileChanges::undo(folder.folder()));
    }

    void aFileChangedSinceIsNotTakenBack()
    {
        const Folder folder;
        folder.change();
        folder.write("b.txt", "newer b");
        const auto undone = FileChanges::undo(folder.folder());
        QVERIFY(!undone);
        QVERIFY2(undone.error().contains(text("b.txt: was changed since")), qPrintable(undone.error()));
        QCOMPARE(folder.read("a.txt"), QByteArray("new a"));
        QCOMPARE(folder.read("b.txt"), QByteArray("newer b"));
    }
};

QTEST_GUILESS_MAIN(tst_FileChanges)
#include "tst_filechanges.moc"
