#pragma once

#include <QtGlobal>

/// What a reader or writer of stored tag actions needs to know beside the bytes: the version of the record layout.
class ScadaTagActionStream
{
public:
    /// The newest version whose reader takes the tag record that is written today.
    static constexpr quint32 currentVersion = 911;

    ScadaTagActionStream() = default;
    explicit ScadaTagActionStream(quint32 version) : m_version(version) {}

    /// Any 32-bit number: a stored page can claim any version.
    quint32 version() const { return m_version; }

private:
    quint32 m_version = currentVersion;
};
