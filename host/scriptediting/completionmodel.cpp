#include "host/scriptediting/completionmodel_p.h"

#include <algorithm>

CompletionModel::CompletionModel(QObject* parent) : QAbstractTableModel(parent)
{
}

CompletionModel::~CompletionModel() = default;

void CompletionModel::setWords(std::vector<ScriptVocabulary::Word> words)
{
    beginResetModel();
    m_words = std::move(words);
    endResetModel();
}

int CompletionModel::rowOf(const QString& text) const
{
    const auto found =
        std::find_if(m_words.begin(), m_words.end(), [&](const auto& word) { return word.text == text; });
    return found == m_words.end() ? -1 : static_cast<int>(found - m_words.begin());
}

int CompletionModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_words.size());
}

int CompletionModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant CompletionModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return {};
    const ScriptVocabulary::Word& word = m_words[static_cast<std::size_t>(index.row())];
    return index.column() == Text ? word.text : word.hint;
}
