#pragma once

#include "host/scriptediting/pythontoken_p.h"

#include <QString>
#include <QStringView>

#include <vector>

/// Follows Python source token by token: which brackets are open, and which expression (name, call, subscript and what
/// a dot joins to them) was read last.
class PythonContext
{
public:
    struct Bracket
    {
        int position = 0;
        int owner = -1; ///< where the expression begins that is called or subscripted; -1 for none
    };

    /// \param source what the tokens are of; must outlive the context
    explicit PythonContext(QStringView source) : m_source(source) {}

    void take(const PythonToken& token);

    /// The open ones, the outermost first. A statement's keyword closes all: no expression has one inside.
    const std::vector<Bracket>& brackets() const { return m_brackets; }
    /// Where the expression begins that was read last; -1 for none.
    int expression() const { return m_expression; }
    /// Where the bracket stands that the last token closed; -1 when it closed none.
    int opening() const { return m_opening; }

    /// The source between two positions without blanks, comments and what stands in brackets and quotes:
    /// "canvas.shape()" for canvas.shape("P1").
    QString outline(int begin, int end) const;

private:
    void takeName(const PythonToken& token);
    void close(const PythonToken& token);

    QStringView m_source;
    std::vector<Bracket> m_brackets;
    int m_expression = -1;
    int m_opening = -1;
    bool m_isJoined = false; ///< by a dot, to the expression read last
};
