#include "scada/hub/korvanegeneralmessageprocessorinterface.h"
