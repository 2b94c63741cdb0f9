#include "host/shapes/shapefactory.h"

#include "host/shapes/bar.h"
#include "host/shapes/breaker.h"
#include "host/shapes/button.h"
#include "host/shapes/choice.h"
#include "host/shapes/datefield.h"
#include "host/shapes/ellipse.h"
#include "host/shapes/inputfield.h"
#include "host/shapes/label.h"
#include "host/shapes/line.h"
#include "host/shapes/pipe.h"
#include "host/shapes/pump.h"
#include "host/shapes/readout.h"
#include "host/shapes/rectangle.h"
#include "host/shapes/roundgauge.h"
#include "host/shapes/svgsymbol.h"
#include "host/shapes/table.h"
#include "host/shapes/tank.h"
#include "host/shapes/trend.h"
#include "host/shapes/valve.h"

const std::vector<const ShapeClass*>& ShapeFactory::classes()
{
    static const std::vector<const ShapeClass*> all = {
        &Label::staticClass(),   &ReadOut::staticClass(),   &Rectangle::staticClass(), &Ellipse::staticClass(),
        &Line::staticClass(),    &Pipe::staticClass(),      &Bar::staticClass(),       &RoundGauge::staticClass(),
        &Tank::staticClass(),    &Trend::staticClass(),     &Valve::staticClass(),     &Pump::staticClass(),
        &Breaker::staticClass(), &SvgSymbol::staticClass(), &Button::staticClass(),    &InputField::staticClass(),
        &Choice::staticClass(),  &DateField::staticClass(), &Table::staticClass(),
    };
    return all;
}

const ShapeClass* ShapeFactory::find(const QString& className)
{
    for (const ShapeClass* candidate : classes()) {
        if (candidate->name == className)
            return candidate;
    }
    return nullptr;
}

std::unique_ptr<Shape> ShapeFactory::create(const QString& className)
{
    const ShapeClass* found = find(className);
    return found ? found->create() : nullptr;
}
