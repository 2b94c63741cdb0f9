#pragma once

#include "host/sources/sourceaddress.h"

#include <QString>
#include <QTimeZone>

/// How a recording is played.
struct RecordingOptions
{
    SourceAddress::Times times = SourceAddress::Times::Row;
    bool isLooped = false;             ///< whether a file begins again at its end
    QString map = {};                  ///< file that says what the columns are (ColumnMap); empty for none
    QTimeZone zone = QTimeZone::utc(); ///< of times that say none
};
