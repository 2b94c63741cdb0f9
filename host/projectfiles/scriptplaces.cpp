#include "host/projectfiles/scriptplaces_p.h"

ScriptPlaces::ScriptPlaces(const PageText& page, const PageText::Script& script)
    : m_page(page), m_script(script), m_source(page.source(script))
{
    int begin = 0;
    for (const PageText::Line& line : script.lines) {
        const int size = QString::fromUtf8(line.text.data(), static_cast<int>(line.text.size())).size();
        m_segments.push_back({static_cast<int>(m_segments.size()), begin, begin + size});
        begin += size + 1; // the line feed between two
    }
}

int ScriptPlaces::lineOf(int position) const
{
    for (const Segment& segment : m_segments) {
        if (position <= segment.end)
            return m_page.lineOf(m_script.lines[static_cast<std::size_t>(segment.number)].range.begin);
    }
    return m_page.lineOf(m_script.data.begin);
}

int ScriptPlaces::lineOfLine(int line) const
{
    int position = 0;
    for (; line > 1 && position >= 0; --line)
        position = m_source.indexOf(QLatin1Char('\n'), position) + 1;
    return lineOf(position);
}

ScriptPlaces::Segment ScriptPlaces::segmentOf(const ScriptLiteral& literal) const
{
    for (const Segment& segment : m_segments) {
        if (literal.begin >= segment.begin && literal.end <= segment.end)
            return segment;
    }
    return {-1, 0, 0};
}
