#pragma once

#include "host/scriptediting/scriptcolours_p.h"

#include <KSyntaxHighlighting/SyntaxHighlighter>

#include <QHash>
#include <QTextCharFormat>

/// Colours Python in a document. Highlights as one types; of a change that reaches further (three quotes, say) the lines
/// below follow one by one from the event loop.
class ScriptHighlighter : public KSyntaxHighlighting::SyntaxHighlighter
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptHighlighter)

public:
    ScriptHighlighter(QTextDocument& document, const QPalette& palette);
    ~ScriptHighlighter() override;

    /// Takes colours that read on \p palette, light or dark.
    void setPalette(const QPalette& palette);

protected:
    void applyFormat(int offset, int length, const KSyntaxHighlighting::Format& format) override;

private:
    void takeTheme();
    QTextCharFormat made(const KSyntaxHighlighting::Format& format) const;

    ScriptColours m_colours;
    QHash<quint16, QTextCharFormat> m_formats; ///< made so far, by the format's number
};
