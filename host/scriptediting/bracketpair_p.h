#pragma once

#include <optional>
#include <utility>

class QTextCursor;

/// The positions of the bracket beside \p cursor (the one before it first) and of the bracket that belongs to it, the
/// opening one first; nothing when there is none, or when it stands in a string or comment.
std::optional<std::pair<int, int>> bracketPair(const QTextCursor& cursor);
