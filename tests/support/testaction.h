#pragma once

#include "scada/binding/objecttarget.h"
#include "scada/binding/scadatagactioninterface.h"

#include "platform/data/mwdatadepartment.h"

#include <deque>

/// An action for tests: any number of targets; it counts how often it was pushed onto its shape.
class TestAction : public ScadaTagActionInterface
{
public:
    using ScadaTagActionInterface::dispatchValue;
    using ScadaTagActionInterface::ScadaTagActionInterface;
    using ScadaTagActionInterface::updatePointValue;

    /// A target resolved by its text alone.
    ObjectTarget& add(const QString& tag)
    {
        targets.push_back(ObjectTarget::fromTagString(tag));
        targets.back().resolve(nullptr);
        return targets.back();
    }

    int type() const override { return 1; }
    QString name() const override { return QStringLiteral("Test"); }
    ScadaTagActionInterface* clone(TesselInterface* shape) const override
    {
        auto* made = new TestAction(*this);
        made->setShape(shape);
        return made;
    }
    bool isEqual(const ScadaTagActionInterface& other) const override { return type() == other.type(); }
    void toStream(ScadaTagActionStream&) const override {}
    void applyToShape(bool force) override
    {
        ++applied;
        lastForce = force;
    }
    void collectTargets(QList<ObjectTarget*>& out) override
    {
        for (ObjectTarget& target : targets)
            out.append(&target);
    }
    void copyTargets(QList<ObjectTarget>& out) override
    {
        for (const ObjectTarget& target : targets)
            out.append(target);
    }

    std::deque<ObjectTarget> targets; ///< stay where they are when more come
    int applied = 0;
    bool lastForce = false;
};

/// A batch record with a value and the marks T, L and Q.
inline QuorixData testRecord(const QVariant& value, int tag = 0, int limit = 0, int quality = 0)
{
    QuorixData record;
    record.setMember("value", QuorixValue(value));
    record.setMember("tag", QuorixValue(tag));
    record.setMember("limit", QuorixValue(limit));
    record.setMember("quality", QuorixValue(quality));
    return record;
}
