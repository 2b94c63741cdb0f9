#pragma once

#include <pybind11/embed.h>

namespace py = pybind11;
