#pragma once

#include "host/scripting/python_p.h"

class KVCanvasInterface;
class ScriptNamespace;
class TesselInterface;

/// What scripts hold of a shape; empty once the shape is gone.
struct ShapeHandle
{
    TesselInterface* shape = nullptr;
};

/// What scripts hold of a page; empty once the page is gone.
struct CanvasHandle
{
    KVCanvasInterface* canvas = nullptr;
    ScriptNamespace* space = nullptr;
};
