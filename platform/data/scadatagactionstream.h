#pragma once

#include <QByteArray>
#include <QtGlobal>

/// A stored tag action: its settings as bytes, and the version of the record layouts in them.
class ScadaTagActionStream
{
public:
    /// The newest version whose reader takes the tag record that is written today.
    static constexpr quint32 currentVersion = 911;

    ScadaTagActionStream() = default;
    explicit ScadaTagActionStream(quint32 version) : m_version(version) {}

    /// Any 32-bit number: a stored page can claim any version.
    quint32 version() const { return m_version; }

    /// The action's settings, in the action's own form.
    const QByteArray& data() const { return m_data; }
    void setData(const QByteArray& data) { m_data = data; }

private:
    quint32 m_version = currentVersion;
    QByteArray m_data;
};
