#pragma once

#include "host/hostexport.h"
#include "host/sources/valuesource.h"

/// The door through which commands reach sources: the one caller of ValueSource::write().
///
/// Only the control path may use it, since rights, interlocks and confirmation stand before it and nothing behind it
/// asks for them again.
class KORVANE_HOST_EXPORT CommandGate
{
public:
    CommandGate() = delete;

    /// Sends \p command through \p source, which answers by ValueSource::commandAnswered(), maybe before this returns.
    static void write(ValueSource& source, const ValueSource::Command& command);
};
