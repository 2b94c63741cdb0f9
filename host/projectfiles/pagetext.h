#pragma once

#include "host/hostexport.h"

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

#include <memory>
#include <string_view>
#include <vector>

/// A page file as text: where in it tags and scripts stand, so that they can be found with their lines and changed without
/// anything else of the file changing.
///
/// Unlike PageReader it finds the tags of what this program can't load, too: whatever is called "tag" or "bound", at any
/// depth. Tags are not checked and not resolved.
class KORVANE_HOST_EXPORT PageText
{
public:
    /// Bytes of the file from begin up to, not including, end; of a text with its quotes.
    struct Range
    {
        int begin = 0;
        int end = 0;
        bool isEmpty() const { return begin == end; }
    };

    enum class Kind {
        Binding,   ///< value of an action
        Condition, ///< left side of a rule's condition
        Bound,     ///< right side of it
        Operation, ///< object that commands go to
        Other,     ///< of a part that this program does not know
    };

    /// Where one tag stands; numbers count from 0 in the order of the file, -1 where they don't apply.
    struct Place
    {
        Kind kind = Kind::Other;
        int shape = -1;       ///< from the bottom of the page up, as Canvas::shapes() counts
        int action = -1;      ///< of the shape's actions
        int rule = -1;        ///< of the action's rules
        int item = -1;        ///< of the action's values or the rule's conditions
        Range text;           ///< empty where only the record names the object
        Range record;         ///< of a condition's both sides the same; empty for none
        quint32 version = 0;  ///< of the record
        std::string_view tag; ///< UTF-8; empty where only the record names the object
    };

    struct Line
    {
        Range range;
        std::string_view text; ///< UTF-8; several lines where the script stands as one text
    };
    struct Script
    {
        int shape = -1; ///< -1 for a script of the page itself
        int event = -1; ///< of the shape's or page's events
        int trigger = 0;
        std::vector<Line> lines;
        Range data; ///< of a script that stands in base64; has no lines then
    };

    /// \returns why \p text is no JSON that a page could be, with the line in front ("line 12: ...").
    static tl::expected<PageText, QString> parse(const QByteArray& text);
    PageText(PageText&&) noexcept;
    PageText& operator=(PageText&&) noexcept;
    ~PageText();

    const QByteArray& bytes() const { return m_bytes; }
    const std::vector<Place>& places() const { return m_places; }
    const std::vector<Script>& scripts() const { return m_scripts; }

    /// Name of a shape; empty for one without and for the page (-1).
    QString shapeName(int shape) const;
    /// Where a shape begins, roughly: the byte of its first text; 0 for the page.
    int shapeOffset(int shape) const;
    /// Line of a byte of the file, from 1.
    int lineOf(int offset) const;

    /// The tag at \p place: its text, or what its record says where there is no text; empty for a record that can't be read.
    QString tagAt(const Place& place) const;
    /// The bytes of the record at \p place; empty without one and for one that is no base64.
    QByteArray recordAt(const Place& place) const;
    /// The lines of \p script, joined; of one in base64 what that says.
    QString source(const Script& script) const;

    /// \p text as a JSON text, with its quotes.
    static QByteArray literal(const QString& text);

private:
    struct Shape
    {
        std::string_view name;
        int offset = 0;
    };
    class Walk;

    PageText();

    QByteArray m_bytes;
    std::unique_ptr<char[]> m_decoded; ///< the same bytes, in which texts were unescaped where they stand
    std::vector<Shape> m_shapes;
    std::vector<Place> m_places;
    std::vector<Script> m_scripts;
    mutable std::vector<int> m_lineEnds;
};
