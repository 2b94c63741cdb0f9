#pragma once

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
        qputenv("XDG_CONFIG_HOME", m_folder.path().toLocal8Bit());
    }

private:
    QTemporaryDir m_folder;
};
