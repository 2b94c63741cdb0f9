#pragma once

#include "host/hostexport.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <rapidjson/document.h>

#include <tl/expected.hpp>

#include <unordered_map>
#include <vector>

/// A JSON text read from a file, with the lines its objects begin on.
///
/// Nested deeper than mostDepth is refused, so that nothing that walks the text can run out of stack.
class KORVANE_HOST_EXPORT JsonText
{
public:
    static constexpr int mostDepth = 100;

    /// \returns what is wrong with the text and, in front of it, the line ("line 12: ...").
    static tl::expected<JsonText, QString> parse(const QByteArray& text);

    JsonText(JsonText&&) noexcept;
    JsonText& operator=(JsonText&&) noexcept;
    ~JsonText();

    const rapidjson::Value& root() const { return m_document; }
    /// Line on which \p value begins, from 1; 0 for one that is not of this text. Made for problems: the first call goes
    /// through the whole text.
    int lineOf(const rapidjson::Value& value) const;

    /// The text of \p value, without white space.
    static QByteArray textOf(const rapidjson::Value& value);
    static QString stringOf(const rapidjson::Value& value);
    /// The member of that name; null when \p object is none or lacks it.
    static const rapidjson::Value* member(const rapidjson::Value& object, const char* name);
    using Names = std::vector<const char*>;
    /// The members of \p object other than \p known, as the text of an object; empty without any.
    static QByteArray otherMembers(const rapidjson::Value& object, const Names& known);

private:
    JsonText();

    rapidjson::Document m_document;
    std::vector<quint32> m_offsets; ///< of the values, in the order in which they begin
    std::vector<quint32> m_lineEnds;
    mutable std::unordered_map<const rapidjson::Value*, int> m_lines;
};
