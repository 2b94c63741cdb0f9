#pragma once

#include <QByteArray>
#include <QProcess>
#include <QtGlobal>

constexpr int oneBuffer = 22050 * 60 / 1000; // by which espeak-ng's own synthesis comes, and differs from time to time

/// Samples of a text as espeak-ng synthesises it by itself, in a program of its own.
inline int ownLength(const char* voice, const QByteArray& text)
{
    QProcess program;
    program.start(QStringLiteral(KORVANE_OWN_SYNTHESIS), {QString::fromLatin1(voice), QString::fromUtf8(text)});
    if (!program.waitForFinished() || program.exitCode() != 0)
        qFatal("%s: %s", KORVANE_OWN_SYNTHESIS, program.readAllStandardError().constData());
    return program.readAllStandardOutput().toInt();
}

inline bool isAbout(int length, int wanted)
{
    return qAbs(length - wanted) <= oneBuffer;
}
