#pragma once

#include "host/hostexport.h"

#include <QByteArray>
#include <QLockFile>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <memory>
#include <vector>

/// A change of several files of a project that is made as a whole or not at all, whenever the program or the machine stops,
/// and that can be taken back.
///
/// The new files are first written beside the old ones, in the project's folder ".changes"; a journal then says that they
/// are complete; only then they take the old ones' places. Who opens the project next calls recover().
class KORVANE_HOST_EXPORT FileChanges
{
    Q_DISABLE_COPY(FileChanges)

public:
    /// Begins a change in \p folder. \returns why it can't: another program changes the project right now, a change before
    /// it was not ended (recover() ends it), or nothing can be written there.
    static tl::expected<std::unique_ptr<FileChanges>, QString> begin(const QString& folder);
    /// What was not committed is forgotten.
    ~FileChanges();

    /// Has \p path, relative to the folder, hold \p bytes once the change is committed.
    [[nodiscard]] tl::expected<void, QString> stage(const QString& path, const QByteArray& bytes);
    std::size_t count() const { return m_entries.size(); }
    /// Makes the change. \p title is what undo() calls it.
    /// \returns why it could not be; the files are as they were then.
    [[nodiscard]] tl::expected<void, QString> commit(const QString& title);

    /// Ends a change that was interrupted: it is completed where its new files are all there, else forgotten.
    /// \returns what was done, as a text for the user; empty when there was nothing to do. Or why it could not be.
    static tl::expected<QString, QString> recover(const QString& folder);

    /// Takes the last change back, byte for byte.
    /// \returns its title; or why it can't be taken back: there is none, or one of its files was changed since.
    static tl::expected<QString, QString> undo(const QString& folder);

private:
    struct Entry
    {
        QString path;     ///< relative to the folder
        QByteArray after; ///< hash of the new bytes
    };
    struct Journal
    {
        QString title;
        bool isUndo = false;
        std::vector<Entry> entries;
    };

    explicit FileChanges(const QString& folder);
    tl::expected<void, QString> keepOld(const QString& target, const QString& old) const;
    tl::expected<void, QString> commit(const Journal& journal);
    static tl::expected<Journal, QString> readJournal(const QString& changes);
    static tl::expected<void, QString> writeJournal(const QString& changes, const Journal& journal);
    static tl::expected<void, QString> apply(const QString& folder, const Journal& journal);
    static bool takeBack(const QString& folder, const Journal& journal);
    static tl::expected<void, QString> end(const QString& folder, const Journal& journal);
    tl::expected<QString, QString> undoLast();

    QString m_folder;
    std::unique_ptr<QLockFile> m_lock;
    std::vector<Entry> m_entries;
    bool m_ownsPending = false; ///< nobody needs what was staged once this goes
};
