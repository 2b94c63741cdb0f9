#pragma once

#include <QSettings>
#include <QString>
#include <QTemporaryDir>

/// Keeps settings in a folder of the test's own, however the test is started: nobody's are touched. A member of the test
/// class, so that it stands before the first test function.
class OwnSettings
{
public:
    OwnSettings()
    {
        if (!m_folder.isValid())
            qFatal("no folder for settings: %s", qPrintable(m_folder.errorString()));
        qputenv("XDG_CONFIG_HOME", m_folder.path().toLocal8Bit()); // for programs that the test starts
        // Whoever read settings before has made Qt remember where they lie.
        for (const QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat})
            QSettings::setPath(format, QSettings::UserScope, m_folder.path());
    }

    /// Where a file of settings lies, as "Korvane/program.ini".
    QString path(const QString& name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};
