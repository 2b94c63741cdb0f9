#pragma once

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>
#include <QtTest>

/// A PulseAudio server of the test's own with nothing behind it, and what is played on it: 22,050 Hz, one channel, 16 bits,
/// from start() to stop().
class PulseServer
{
public:
    PulseServer()
    {
        m_environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path());
        m_environment.insert(QStringLiteral("HOME"), m_folder.path());
        m_environment.insert(QStringLiteral("PULSE_SERVER"), QStringLiteral("unix:") + socket());
        m_server.setProcessEnvironment(m_environment);
        m_recorder.setProcessEnvironment(m_environment);
    }
    ~PulseServer() { stop(); }
    Q_DISABLE_COPY(PulseServer)

    /// What a program needs in its environment to play here.
    const QProcessEnvironment& environment() const { return m_environment; }

    /// \returns whether the server runs and is listened to.
    bool start()
    {
        m_server.start(
            QStringLiteral("pulseaudio"),
            {QStringLiteral("-n"), QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1"),
             QStringLiteral("--use-pid-file=no"), QStringLiteral("--disable-shm=yes"),
             QStringLiteral("--load=module-native-protocol-unix auth-anonymous=1 socket=") + socket(),
             QStringLiteral("--load=module-null-sink sink_name=heard rate=22050 channels=1 format=s16le norewinds=1")});
        if (!m_server.waitForStarted() || !QTest::qWaitFor([this] { return QFile::exists(socket()); }))
            return false;
        m_recorder.start(QStringLiteral("parec"),
                         {QStringLiteral("-d"), QStringLiteral("heard.monitor"), QStringLiteral("--rate=22050"),
                          QStringLiteral("--channels=1"), QStringLiteral("--format=s16le")});
        return m_recorder.waitForStarted() && QTest::qWaitFor([this] { return m_recorder.bytesAvailable() > 0; });
    }

    /// Ends recording and server.
    /// \returns what was heard since start().
    QByteArray stop()
    {
        // What was played is on its way for a time; a second of silence behind it has come when all of it has.
        const qint64 all = m_recorder.bytesAvailable() + 22050 * 2;
        if (m_recorder.state() == QProcess::Running)
            static_cast<void>(QTest::qWaitFor([this, all] { return m_recorder.bytesAvailable() >= all; }, 20000));
        for (QProcess* process : {&m_recorder, &m_server}) {
            if (process->state() == QProcess::NotRunning)
                continue;
            process->terminate();
            process->waitForFinished();
        }
        return m_recorder.readAllStandardOutput();
    }

private:
    QString socket() const { return m_folder.filePath(QStringLiteral("socket")); }

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    QProcess m_server;
    QProcess m_recorder;
};
