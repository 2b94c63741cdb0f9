#pragma once

#include "host/core/project.h"
#include "host/runtime/runtimedatabase.h"

#include <QString>

#include <memory>
#include <optional>

/// A project and its points, as commands need them.
struct OpenedProject
{
    Project project;
    RuntimeDatabase database;

    /// Ends a change that was interrupted, then reads. Complains about what is wrong; null where nothing can be done with it.
    static std::unique_ptr<OpenedProject> open(const QString& folder);
    /// Ends a change that was interrupted, and tells so. \returns false, having complained, where it can't be ended.
    static bool recover(const QString& folder);
};
