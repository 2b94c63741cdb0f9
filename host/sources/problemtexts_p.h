#pragma once

#include <QString>
#include <QStringList>

#include <utility>

/// Texts of problems that wait to be told. A recording can have as many as rows: the first ones are told, all counted.
class ProblemTexts
{
public:
    /// \param closing the last text, when there are more
    explicit ProblemTexts(const QString& closing) : m_closing(closing) {}

    void add(const QString& text)
    {
        constexpr qint64 mostTold = 20;
        ++m_count;
        if (m_count <= mostTold)
            m_waiting.append(text);
        else if (m_count == mostTold + 1)
            m_waiting.append(m_closing);
    }

    qint64 count() const { return m_count; }
    QStringList take() { return std::exchange(m_waiting, {}); }

private:
    QString m_closing;
    QStringList m_waiting;
    qint64 m_count = 0;
};
