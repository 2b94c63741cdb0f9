#pragma once

#include "host/projectfiles/pagetext.h"
#include "host/projectfiles/scriptliterals.h"

#include <QString>

#include <vector>

/// A script of a page file, and how its text lies in the file's lines.
class ScriptPlaces
{
public:
    /// \p page, \p script must outlive this
    ScriptPlaces(const PageText& page, const PageText::Script& script);

    const QString& source() const { return m_source; }
    /// Line of the file on which a character of the source stands; of a script in base64 that of its data.
    int lineOf(int position) const;
    /// Line of the file on which a line of the source, from 1, stands.
    int lineOfLine(int line) const;

    /// Which of the script's texts (PageText::Script::lines) a literal lies in, and where in it that begins.
    struct Segment
    {
        int number = 0;
        int begin = 0; ///< in the source
        int end = 0;
    };
    /// The segment that holds all of \p literal; one with the number -1 where it reaches over several.
    Segment segmentOf(const ScriptLiteral& literal) const;

private:
    const PageText& m_page;
    const PageText::Script& m_script;
    QString m_source;
    std::vector<Segment> m_segments;
};
