#pragma once

#include <QString>

#include <vector>

/// What scripts can use, taken from the module's docstrings. Starts the interpreter.
namespace ScriptCatalogue {

struct Entry
{
    QString name;
    QString call;    ///< as it is written: "read(tag)"; the name alone for what is no function
    QString meaning; ///< empty for constants
};

/// A module, a part of it, or a class.
struct Owner
{
    QString name; ///< as scripts write it: "korvane", "tags", "tags.Marks", "Shape"
    QString meaning;
    std::vector<Entry> entries; ///< in the order of their definition
};

const std::vector<Owner>& owners();

} // namespace ScriptCatalogue
