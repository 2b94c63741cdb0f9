#include "host/control/commandgate.h"

#include "host/sources/manualsource.h"
#include "host/sources/recordingsource.h"
#include "host/sources/simulationsource.h"
#include "host/sources/streamsource.h"
#include "tests/support/sourcelistener.h"

#include <QDirIterator>
#include <QtTest>

#include <type_traits>
#include <utility>

namespace {

template <typename Source, typename = void>
struct IsWritable : std::false_type
{
};

template <typename Source>
struct IsWritable<Source,
                  std::void_t<decltype(std::declval<Source&>().write(std::declval<const ValueSource::Command&>()))>>
    : std::true_type
{
};

struct OpenSource
{
    void write(const ValueSource::Command&);
};

static_assert(IsWritable<OpenSource>::value, "what is open is seen to be");
static_assert(!IsWritable<ValueSource>::value);
static_assert(!IsWritable<ManualSource>::value);
static_assert(!IsWritable<RecordingSource>::value);
static_assert(!IsWritable<SimulationSource>::value);
static_assert(!IsWritable<StreamSource>::value);

constexpr ObjectKey valve{Korvane::ScadaObjectType::DigitalPoint, 100001};

/// A source that keeps what was written, and answers later.
class KeepingSource : public ValueSource
{
public:
    QString description() const override { return QStringLiteral("keeping source"); }
    std::vector<ObjectKey> objects() const override { return {valve}; }
    void start(qint64) override {}
    void advance(qint64) override {}

    std::vector<Command> written;

private:
    void write(const Command& command) override { written.push_back(command); }
};

/// A source as simple as can be, which leaves commands to the base.
class ReadingSource : public ValueSource
{
public:
    QString description() const override { return QStringLiteral("reading source"); }
    std::vector<ObjectKey> objects() const override { return {valve}; }
    void start(qint64) override {}
    void advance(qint64) override {}
};

/// The files of the source tree that have \p word, by their paths in it; "" for what could not be read.
QStringList filesWith(const QByteArray& word, const QString& folder)
{
    const QDir tree(QStringLiteral(KORVANE_SOURCE_DIR));
    QStringList found;
    QDirIterator files(tree.filePath(folder), {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            found.append(QString());
        else if (file.readAll().contains(word))
            found.append(tree.relativeFilePath(file.fileName()));
    }
    return found;
}

} // namespace

class tst_CommandGate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCommandReachesTheSourceAsItIs()
    {
        KeepingSource source;
        SourceListener heard(source);
        CommandGate::write(source, {42, valve, 1.5});
        QCOMPARE(source.written.size(), std::size_t(1));
        QCOMPARE(source.written[0].requestId, 42U);
        QCOMPARE(source.written[0].object, valve);
        QCOMPARE(source.written[0].value, 1.5);
        QVERIFY2(heard.answers.isEmpty(), "the source answers, not the gate");
    }

    void aSourceTakesNoCommandsByItself()
    {
        ReadingSource source;
        SourceListener heard(source);
        QVERIFY(!source.takesCommands(valve));
        CommandGate::write(source, {43, valve, 1});
        QCOMPARE(heard.answers, QStringList(QStringLiteral("43 reading source takes no commands")));
    }

    void onlyTheRoomOfControlGoesThroughIt()
    {
        QStringList users;
        for (const char* floor : {"platform", "scada", "host", "apps"})
            users += filesWith("CommandGate", QLatin1String(floor));
        QVERIFY(users.contains(QStringLiteral("host/control/commandgate.cpp"))); // the tree was read
        QVERIFY(users.removeOne(QStringLiteral("host/sources/valuesource.h")));  // the friend's name
        for (const QString& user : std::as_const(users))
            QVERIFY2(user.startsWith(QLatin1String("host/control/")), qPrintable(user));
        QVERIFY(filesWith("commandgate.h", QStringLiteral("apps")).isEmpty());
    }

    void aSourceHasOneFriend()
    {
        QStringList friends;
        QFile header(QStringLiteral(KORVANE_SOURCE_DIR "/host/sources/valuesource.h"));
        QVERIFY(header.open(QIODevice::ReadOnly));
        while (!header.atEnd()) {
            const QString line = QString::fromUtf8(header.readLine()).trimmed();
            if (line.startsWith(QLatin1String("friend ")))
                friends.append(line);
        }
        QCOMPARE(friends, QStringList(QStringLiteral("friend class CommandGate;")));
    }
};

QTEST_GUILESS_MAIN(tst_CommandGate)
#include "tst_commandgate.moc"
