#pragma once

#include "scada/actions/scadascriptaction.h"

#include <QString>

/// An action with the base's own bodies wherever there are any.
struct PlainAction : ScadaEventActionInterface
{
    int type() const override { return 7; }
    void runAction(KorvaneCoreInterface*, TesselInterface*, KVCanvasInterface*) override {}
    State state() override { return State::Filled; }
    QString name() override { return QStringLiteral("Plain"); }
    bool isEqual(const ScadaEventActionInterface& other) override { return other.type() == type(); }
};

inline ScadaScriptAction action(const QString& script, int trigger = 0)
{
    ScadaScriptAction made;
    made.setScript(script);
    made.setTriggerType(Korvane::TriggerType(trigger));
    return made;
}

/// The script that renaming starts from; it is the one in force afterwards.
inline QString loadedScript(ScadaScriptAction& of)
{
    of.replacePointName(nullptr, {});
    return of.script();
}
