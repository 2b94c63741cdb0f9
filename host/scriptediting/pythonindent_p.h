#pragma once

#include <QString>
#include <QStringView>

class QTextBlock;

/// How lines are indented: by tabs or by spaces, a level at a time.
class PythonIndent
{
public:
    static constexpr int tabWidth = 4; ///< columns that a tab is shown with

    /// Of the lines around \p line: what the nearest indented one has, itself first, then above, then below. Tabs where
    /// none is indented.
    static PythonIndent around(const QTextBlock& line);

    /// White space that leads from \p column to the next level.
    QString step(int column) const;
    QString deeper(const QString& indentation) const;
    /// One level less; what lies between two levels goes back to the lower one.
    QString shallower(const QString& indentation) const;
    /// The indentation of the line that a line break at the end of \p source begins: one level more behind a colon, one
    /// less behind a statement that leaves its block.
    QString behind(QStringView source) const;

    /// The white space that \p line begins with.
    static QString leading(QStringView line);
    /// The column that the end of \p text has on screen.
    static int columnBehind(QStringView text);

private:
    bool m_hasTabs = true;
    int m_width = tabWidth; ///< columns of a level
};
