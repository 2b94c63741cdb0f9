#pragma once

#include "host/scriptediting/completionmodel_p.h"

#include <QTreeView>

/// The list that pops up beside what is being typed, inside the editor's window. It never takes the focus: keys stay
/// with the editor, and with them the window's shortcuts.
class CompletionList : public QTreeView
{
    Q_OBJECT
    Q_DISABLE_COPY(CompletionList)

public:
    explicit CompletionList(QWidget* parent);
    ~CompletionList() override;

    /// Shows \p words, the one of the text \p current marked, the first one unless it is among them.
    void setWords(std::vector<ScriptVocabulary::Word> words, const QString& current = {});
    QString current() const;
    /// Marks another one. \returns false, and does nothing, for a key that does not move in a list.
    bool move(int key);
    /// Draws in the font and the colours of \p editor.
    void lookLike(const QWidget& editor);
    /// Shows the list in \p window, below \p typed (in its coordinates), or above where there is more room.
    void popUp(QWidget& window, const QRect& typed);

private:
    QSize wantedSize() const;
    void mark(int row);

    CompletionModel m_model;
};
