#include "host/runtime/runtimedatabase.h"
#include "scada/binding/scadacondition.h"

#include <cstdio>

int main()
{
    RuntimeDatabase database;
    const auto added = database.add({Korvane::ScadaObjectType::AnalogPoint, 200001, "PUMP_01.TEMP"});
    if (!added)
        qFatal("%s", qPrintable(added.error()));

    ScadaCondition tooHot = ConditionData{"PUMP_01.TEMP", "80", Korvane::OpType::Greater};
    tooHot.lValue()->resolve(&database);
    tooHot.rValue()->resolve(&database);

    for (double degrees : {79.5, 80.5, 80.5}) {
        const bool changed = tooHot.lValue()->needUpdate(degrees);
        std::printf("point %d at %.1f, %s: %s is %s\n", tooHot.lValue()->getPid(), degrees,
                    changed ? "changed" : "same", qPrintable(tooHot.displayString(false)),
                    tooHot.checkCondition() ? "true" : "false");
    }
}
