#pragma once

#include "host/hostexport.h"
#include "host/sources/valuesource.h"

#include <functional>
#include <vector>

/// Delivers what operators enter by hand for points that no other source supplies.
///
/// A value is delivered once, when it is entered, with the time of that moment and without any mark: an entered value is
/// the point's own, no substitute. It never fails and never ends.
class KORVANE_HOST_EXPORT ManualSource : public ValueSource
{
    Q_OBJECT

public:
    /// Milliseconds since 1970-01-01 UTC of the system's clock.
    using Clock = std::function<qint64()>;

    /// \param objects those whose values are entered
    ManualSource(std::vector<ObjectKey> objects, Clock clock, QObject* parent = nullptr);
    ~ManualSource() override;

    QString description() const override;
    bool canFail() const override { return false; }
    std::vector<ObjectKey> objects() const override;
    void start(qint64 nowMs) override;
    /// Delivers nothing.
    void advance(qint64 nowMs) override;

    bool takesCommands(ObjectKey object) const override;

private:
    /// Takes the value unless it is none: not finite or, of anything but an analog point, no whole number of 32 bits
    /// from 0 on.
    void write(const Command& command) override;
    QString refusalOf(const Command& command) const;

    std::vector<ObjectKey> m_objects;
    Clock m_clock;
};
