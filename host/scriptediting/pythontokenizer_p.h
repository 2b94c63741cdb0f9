#pragma once

#include "host/hostexport.h"
#include "host/scriptediting/pythontoken_p.h"

#include <QStringView>

/// Cuts Python source into tokens, as finely as an editor needs it. Lines end in "\n".
///
/// Takes whatever is there while one types: a string without its closing quote reaches to the end of its line, one that
/// was opened by three quotes to the end of the source.
class KORVANE_HOST_EXPORT PythonTokenizer
{
public:
    /// \param source must outlive the tokenizer
    explicit PythonTokenizer(QStringView source) : m_source(source) {}

    /// The next token; of the kind End, and empty, once the source is read.
    PythonToken next();

private:
    QChar at(int position) const { return position < m_source.size() ? m_source[position] : QChar(); }
    int size() const { return static_cast<int>(m_source.size()); }
    void skipBlanks();
    int endOfRun(int from, bool (*belongs)(QChar)) const;
    void readString(PythonToken& token, int quotePosition) const;
    void readWord(PythonToken& token) const;

    QStringView m_source;
    int m_at = 0;
};
