#include "host/shapes/shapeinput.h"

ShapeInput::~ShapeInput() = default;

void ShapeInput::click(const QPointF&)
{
}

void ShapeInput::doubleClick(const QPointF&)
{
}

bool ShapeInput::turnWheel(int)
{
    return false;
}

bool ShapeInput::pressKey(int)
{
    return false;
}

void ShapeInput::prepare()
{
}
