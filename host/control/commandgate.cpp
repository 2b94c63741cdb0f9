#include "host/control/commandgate.h"

void CommandGate::write(ValueSource& source, const ValueSource::Command& command)
{
    source.write(command);
}
