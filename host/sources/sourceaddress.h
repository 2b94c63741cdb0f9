#pragma once

#include "host/hostexport.h"

#include <QString>

#include <tl/expected.hpp>

/// Where samples come from, as a settings file or a command line writes it:
///
///     simulation[?seed=N]
///     recording:FILE[?speed=N&loop=1&map=FILE&times=row|arrival]
///     recording:-[?map=FILE&times=row|arrival]
///
/// Parameters, in any order, each at most once, begin behind the last "?". So a file whose name holds a "?" needs one
/// more at its end ("recording:what?.csv?"), and a map's name can hold neither "?" nor "&". "-" is standard input; a file
/// of that name is "./-". Names of files are kept as written: whoever opens them knows what they are relative to.
struct KORVANE_HOST_EXPORT SourceAddress
{
    enum class Kind { Simulation, Recording, StandardInput };
    /// What a sample's time is.
    enum class Times {
        Row,     ///< the time in its row
        Arrival, ///< when it came in; in a file, the start and the row's distance from the first one
    };

    static constexpr double lowestSpeed = 0.01;
    static constexpr double highestSpeed = 10000;

    Kind kind = Kind::Simulation;
    quint32 seed = 1;         ///< of the simulation, 0 to 4294967295
    QString file = {};        ///< of a recording
    QString map = {};         ///< file with a line for each column that is read (ColumnMap); empty for none
    double speed = 1;         ///< of a recording in a file: times as fast as real time
    bool isLooped = false;    ///< of a recording in a file: whether it begins again
    Times times = Times::Row; ///< unless it is said, Row for a file and Arrival for standard input

    /// \returns what is wrong with \p address, naming the part.
    [[nodiscard]] static tl::expected<SourceAddress, QString> parse(const QString& address);
};
