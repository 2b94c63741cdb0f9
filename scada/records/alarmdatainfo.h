#pragma once

#include "scada/records/alarmseveritydata.h"
#include "scada/scadaexport.h"

#include <QMap>

/// How alarms are presented to the operator: a sound, a popup and a text colour for each severity.
///
/// Sounds and popups are kept as a settings string, a JSON text that the record writes and reads; see
/// docs/stored-records.md. Text colours and the three flags live in memory only.
class KORVANE_SCADA_EXPORT AlarmDataInfo
{
public:
    /// Entries for the severities 0 to 9, without sound, popup and colour.
    AlarmDataInfo();

    bool isMuted() const { return m_isMuted; } ///< false unless set
    void setMuted(bool muted) { m_isMuted = muted; }
    bool isPopupShown() const { return m_isPopupShown; } ///< true unless set
    void setPopupShown(bool shown) { m_isPopupShown = shown; }
    bool isSpeechOn() const { return m_isSpeechOn; } ///< true unless set
    void setSpeechOn(bool on) { m_isSpeechOn = on; }

    const QMap<int, AlarmSeverityData>& severities() const { return m_severities; }
    /// The entry under that severity; one with default values when there is none, which is not added.
    AlarmSeverityData severityData(int severity) const;
    /// Stores all of \p data, its severity number too, under \p severity, which may be a new one.
    void setSeverityData(int severity, const AlarmSeverityData& data);
    /// Change the entry of a severity; nothing when it has none.
    void setSoundPath(int severity, const QString& path);
    void setTextColor(int severity, QColor color);
    void setUsePopup(int severity, signed char use); ///< \param use anything but 0 for a popup

    /// The settings string. As many entries are written as there are, from severity 0 without gaps: an entry that is
    /// missing among them is added to the record first, with severity number 0, and those beyond are left out.
    QString toSettingInfo();
    /// Takes sounds and popups from a settings string and adds the severities that the record lacks. Those that the
    /// string does not name stay as they are; a malformed string changes nothing.
    void fromSettingInfo(const QString& text);

    bool isEqual(const AlarmDataInfo& other) const;

private:
    bool m_isMuted = false;
    bool m_isPopupShown = true;
    bool m_isSpeechOn = true;
    QMap<int, AlarmSeverityData> m_severities;
};
