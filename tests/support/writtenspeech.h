#pragma once

#include "host/speech/speechlibraries.h"
#include "tests/support/temporaryfiles.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

/// Has speech libraries in the process that write down what they are to say, in place of any others. To be made before
/// the process's first message; KORVANE_SPEECH_VARIANTS is the folder of the test's own libraries.
class WrittenSpeech
{
public:
    WrittenSpeech()
    {
        const QString folder = QStringLiteral(KORVANE_SPEECH_VARIANTS "/complete");
        qputenv("SPEECH_CALLS", callsFile().toLocal8Bit());
        for (const SpeechLibraries::Found& found : SpeechLibraries::prepare({folder})) {
            if (!found.fileName.startsWith(folder))
                qFatal("speech is %s", qPrintable(found.fileName + found.problem));
        }
    }

    /// What was to be said since forget(), in order, as "ENG pump stopped".
    QStringList said() const
    {
        QFile file(callsFile());
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
        QStringList all;
        for (const QByteArray& call : file.readAll().split('\n')) {
            const QByteArray language = call.left(4);
            if (!call.mid(language.size()).startsWith("play "))
                continue;
            const int begin = call.indexOf('<') + 1;
            const QByteArray hex = call.mid(begin, call.indexOf('>') - begin);
            all.append(QString::fromLatin1(language) + QString::fromLocal8Bit(QByteArray::fromHex(hex)));
        }
        return all;
    }
    void forget() const { m_files.write(QStringLiteral("calls"), {}); }

private:
    QString callsFile() const { return m_files.path(QStringLiteral("calls")); }

    TemporaryFiles m_files;
};
