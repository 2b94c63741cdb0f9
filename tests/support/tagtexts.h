#pragma once

#include <QString>

#include <rapidcheck.h>

#include <ostream>
#include <string>
#include <vector>

/// Texts made of the pieces that mean something in a tag string, and of some that don't: where the grammar's edges lie.
inline rc::Gen<QString> tagTexts()
{
    static const std::vector<std::string> pieces = {"@R::",
                                                    "@C::",
                                                    "@::",
                                                    "@",
                                                    "::",
                                                    ":",
                                                    "#",
                                                    "#100001",
                                                    "#2999999",
                                                    "#4294967295",
                                                    "#0",
                                                    "7",
                                                    "12.5",
                                                    "nan",
                                                    "inf",
                                                    "1e5",
                                                    " ",
                                                    "-",
                                                    "PUMP",
                                                    "PUMP_01.FLOW",
                                                    "a",
                                                    "0",
                                                    "Value",
                                                    "HighLimit",
                                                    "PastMean",
                                                    "CommState",
                                                    "value",
                                                    "\xc3\xa9",
                                                    "\xed\x8e\x8c",
                                                    "\xf0\x9f\x98\x80"};
    return rc::gen::map(rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(pieces)),
                        [](const std::vector<std::string>& chosen) {
                            std::string text;
                            for (const std::string& piece : chosen)
                                text += piece;
                            return QString::fromStdString(text);
                        });
}

/// How a counterexample is shown.
inline std::ostream& operator<<(std::ostream& out, const QString& text)
{
    return out << '"' << text.toStdString() << '"';
}
