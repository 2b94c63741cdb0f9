#pragma once

#include "host/hostexport.h"
#include "host/runtime/livesystem.h"

#include <QString>

#include <tl/expected.hpp>

#include <chrono>

/// Records what a project's source delivers in a time of its own, as fast as it can: from a fixed moment on, so that a
/// simulation with the same seed gives the same file every time. Standard input can't be recorded so: its time is not
/// ours.
/// \returns the number of samples, or why it failed.
KORVANE_HOST_EXPORT tl::expected<quint64, QString>
recordSource(const LiveSystem::Options& options, const QString& fileName, std::chrono::milliseconds duration);
