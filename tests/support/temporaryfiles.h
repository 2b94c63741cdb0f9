#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

/// A folder of the test's own for real files.
class TemporaryFiles
{
public:
    TemporaryFiles()
    {
        if (!m_folder.isValid())
            qFatal("no folder for files: %s", qPrintable(m_folder.errorString()));
    }

    QString path(const QString& name) const { return m_folder.filePath(name); }

    /// Writes a file, over one that is there, and returns its path.
    QString write(const QString& name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
        return file.fileName();
    }

private:
    QTemporaryDir m_folder;
};
