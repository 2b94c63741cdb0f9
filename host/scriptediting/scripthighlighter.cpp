#include "host/scriptediting/scripthighlighter_p.h"

#include <KSyntaxHighlighting/Definition>
#include <KSyntaxHighlighting/Format>
#include <KSyntaxHighlighting/Repository>
#include <KSyntaxHighlighting/Theme>

namespace {

/// Knows hundreds of languages: read once, when the first editor is made.
const KSyntaxHighlighting::Repository& repository()
{
    static const KSyntaxHighlighting::Repository all;
    return all;
}

} // namespace

ScriptHighlighter::ScriptHighlighter(QTextDocument& document, const QPalette& palette)
    : SyntaxHighlighter(&document), m_colours(palette)
{
    takeTheme();
    setDefinition(repository().definitionForName(QStringLiteral("Python")));
}

ScriptHighlighter::~ScriptHighlighter() = default;

void ScriptHighlighter::setPalette(const QPalette& palette)
{
    const ScriptColours colours(palette);
    if (colours == m_colours)
        return;
    m_colours = colours;
    m_formats.clear();
    takeTheme();
    rehighlight();
}

void ScriptHighlighter::takeTheme()
{
    setTheme(repository().theme(m_colours.isDark() ? QStringLiteral("GitHub Dark") : QStringLiteral("GitHub Light")));
}

void ScriptHighlighter::applyFormat(int offset, int length, const KSyntaxHighlighting::Format& format)
{
    if (!m_formats.contains(format.id()))
        m_formats.insert(format.id(), made(format));
    setFormat(offset, length, m_formats.value(format.id()));
}

QTextCharFormat ScriptHighlighter::made(const KSyntaxHighlighting::Format& format) const
{
    QTextCharFormat text;
    text.setForeground(m_colours.readable(format.textColor(theme())));
    text.setFontWeight(format.isBold(theme()) ? QFont::Bold : QFont::Normal);
    text.setFontItalic(format.isItalic(theme()));
    text.setFontUnderline(format.isUnderline(theme()));
    return text;
}
