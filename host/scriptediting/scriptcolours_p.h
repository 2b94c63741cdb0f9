#pragma once

#include "host/shapes/palette.h"

#include <QPalette>

/// The colours of a script editor that its palette does not name, mixed from those it does: light or dark with it.
class ScriptColours
{
public:
    explicit ScriptColours(const QPalette& palette)
        : m_base(palette.color(QPalette::Base)),
          m_text(palette.color(QPalette::Text)),
          m_window(palette.color(QPalette::Window)),
          m_highlight(palette.color(QPalette::Highlight))
    {
    }

    bool isDark() const { return qGray(m_base.rgb()) < qGray(m_text.rgb()); }
    QColor text() const { return m_text; }
    QColor faintText() const { return Palette::mixed(m_base, m_text, 0.65); }
    QColor frame() const { return Palette::mixed(m_base, m_text, 0.4); }
    QColor margin() const { return Palette::mixed(m_base, m_window, 0.6); }
    QColor currentLine() const { return Palette::mixed(m_base, m_highlight, 0.1); }
    QColor bracket() const { return Palette::mixed(m_base, m_highlight, 0.45); }
    QColor errorLine() const { return Palette::mixed(m_base, Palette::alarm, isDark() ? 0.35 : 0.2); }
    /// \p colour, moved towards the text's until it reads on the base (contrast of at least 5.5 to 1, so that marked
    /// lines take not too much of it).
    QColor readable(QColor colour) const;

    bool operator==(const ScriptColours& other) const
    {
        return m_base == other.m_base && m_text == other.m_text && m_window == other.m_window &&
               m_highlight == other.m_highlight;
    }

private:
    QColor m_base;
    QColor m_text;
    QColor m_window;
    QColor m_highlight;
};
