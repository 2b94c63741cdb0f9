#pragma once

/// A piece of Python source. Positions count from the source's begin; end lies behind the last character.
struct PythonToken
{
    enum class Kind { Name, Number, String, Comment, Open, Close, Dot, LineEnd, Other, End };

    Kind kind = Kind::End;
    int begin = 0;
    int end = 0;
    int contentBegin = 0;  ///< of a string: behind its opening quotes
    bool isClosed = false; ///< of a string: its closing quotes are there
    bool isRaw = false;    ///< of a string: backslashes stand for themselves
};
