#pragma once

#include "host/hostexport.h"

#include <QString>

class RuntimeDatabase;
class Shape;
struct Page;

/// Says why a shape looks as it does: each binding with its tags, their values, times and marks, the condition that
/// holds, and the batch that changed the shape last. Plain text, one fact a line, for copying into a report.
///
/// \param database where the objects' present records come from
KORVANE_HOST_EXPORT QString explainShape(const Page& page, const Shape& shape, const RuntimeDatabase& database);
