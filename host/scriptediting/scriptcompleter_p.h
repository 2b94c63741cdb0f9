#pragma once

#include "host/scriptediting/completionplace_p.h"
#include "host/scriptediting/documentnames_p.h"
#include "host/scriptediting/scriptvocabulary.h"

#include <QObject>
#include <QPointer>

class CompletionFilter;
class CompletionList;
class QKeyEvent;
class QPlainTextEdit;

/// Completes what is typed in a script: decides when the list pops up and what it offers, and puts in what is chosen.
class ScriptCompleter : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptCompleter)

public:
    /// \param editor whose text is completed, and the owner
    explicit ScriptCompleter(QPlainTextEdit& editor);
    ~ScriptCompleter() override;

    void setVocabulary(const ScriptVocabulary& vocabulary);

    bool isOpen() const;
    /// Whether the open list would take the key.
    bool wants(const QKeyEvent& event) const;
    /// Has the open list take a key. \returns false when it is not for the list, or does more than it did there.
    bool takeKey(const QKeyEvent& event);
    /// Tells that something was typed: the list pops up where there is enough to go by.
    void noteTyped();
    /// Pops the list up by request, however little is typed.
    void open();
    void close();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Words = std::vector<ScriptVocabulary::Word>;

    CompletionPlace placeAtCursor() const;
    Words matches() const;
    void offerNames(CompletionFilter& filter) const;
    void popUp(const CompletionPlace& place);
    void show(Words words, const QString& current);
    void follow();
    void dismiss();
    bool accept();
    void placeList();
    void followScrolling();
    int lengthBehind(const QString& text) const;

    QPlainTextEdit& m_editor;
    QPointer<CompletionList> m_list; ///< lies in the editor's window, and may go with it before the editor does
    ScriptVocabulary m_vocabulary;
    CompletionPlace m_place;
    DocumentNames m_names;
    bool m_isRequested = false; ///< the list stays although nothing is typed any more
    int m_dismissed = -1;       ///< where the list was closed by hand: it stays so for what is typed there
};
