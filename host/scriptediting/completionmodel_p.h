#pragma once

#include "host/scriptediting/scriptvocabulary.h"

#include <QAbstractTableModel>

/// Words to choose from, each with its hint.
class CompletionModel : public QAbstractTableModel
{
    Q_OBJECT
    Q_DISABLE_COPY(CompletionModel)

public:
    enum Column { Text, Hint, ColumnCount };

    explicit CompletionModel(QObject* parent);
    ~CompletionModel() override;

    void setWords(std::vector<ScriptVocabulary::Word> words);
    /// The row of a text; -1 for none.
    int rowOf(const QString& text) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    std::vector<ScriptVocabulary::Word> m_words;
};
