#include "platform/core/korvanescriptinterface.h"

KorvaneScriptInterface::KorvaneScriptInterface(QObject* parent) : QObject(parent)
{
}

KorvaneScriptInterface::~KorvaneScriptInterface() = default;
