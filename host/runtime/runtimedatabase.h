#pragma once

#include "host/alarms/alarmsetting.h"
#include "host/control/controlsetting.h"
#include "host/hostexport.h"
#include "host/runtime/markslistener.h"
#include "host/runtime/statisticscalendar.h"
#include "host/sources/sample.h"
#include "platform/data/pointdirectory.h"
#include "platform/data/quorixdata.h"
#include "platform/data/scadaruntimeinterface.h"

#include <QByteArray>
#include <QHashFunctions>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QTimeZone>

#include <tl/expected.hpp>
#include <tsl/robin_map.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <queue>
#include <utility>
#include <vector>

class PointStatistics;

/// The reference host's runtime database: every point, unit and line that tags can name, with its present value, the
/// value's marks and its statistics.
///
/// Objects are only ever added, and looked up by name or id at the cost of one hash look-up, however many there are. It
/// serves as the process's point directory too, when the host registers it.
///
/// Every sample goes through takeSample(); what time does to a value comes through takeStale(), once a tick. All times
/// are milliseconds since 1970-01-01 UTC. GUI thread only.
class KORVANE_HOST_EXPORT RuntimeDatabase : public ScadaRuntimeInterface, public PointDirectory
{
public:
    struct Object
    {
        Korvane::ScadaObjectType type = Korvane::ScadaObjectType::NoObject;
        qint32 id = 0;
        QString name;
        QString station = {};
        QString description = {};
        QString displayName = {};
        /// Limits of an analog point in its own unit; NaN for one that it does not have.
        double lowLow = std::numeric_limits<double>::quiet_NaN();
        double low = std::numeric_limits<double>::quiet_NaN();
        double high = std::numeric_limits<double>::quiet_NaN();
        double highHigh = std::numeric_limits<double>::quiet_NaN();
        /// How far a value must come back inside a limit before the limit's mark goes, in the point's unit.
        double hysteresis = 0;
        QString unit = {};
        /// Decimals that values are written with; -1 for as many as needed.
        int decimals = -1;
        /// Range that bars and scales show; equal bounds for none.
        double scaleLow = 0;
        double scaleHigh = 0;
        /// What the states of a digital point are called, from state 0 on; may be empty.
        QStringList states = {};
        /// State of a digital point that is marked as abnormal; -1 for none.
        int abnormalState = -1;
        /// How long a value counts as current; 0 (or more than 1000 years) for ever.
        std::chrono::milliseconds staleAfter{0};
        /// What the point is called in its source; empty for its own name.
        QString address = {};
        /// Area of responsibility; empty for none.
        QString area = {};
        AlarmSetting alarm = {};
        /// Name of the unit that a point belongs to, or of the line that a unit is reached by; empty for none.
        QString parent = {};
        ControlSetting control = {};
    };

    /// Limits of an analog point in its own unit, with low low <= low < high <= high high; NaN for one that it does not
    /// have.
    struct Limits
    {
        double lowLow = std::numeric_limits<double>::quiet_NaN();
        double low = std::numeric_limits<double>::quiet_NaN();
        double high = std::numeric_limits<double>::quiet_NaN();
        double highHigh = std::numeric_limits<double>::quiet_NaN();
    };

    RuntimeDatabase();
    ~RuntimeDatabase() override;

    /// Makes room for \p count objects of the family of \p type.
    void reserve(Korvane::ScadaObjectType type, std::size_t count);

    /// Adds a digital or analog point, a unit or a line.
    /// \returns the reason, naming the object, when it is refused: another kind; an id outside its kind's range
    /// (points) or below 1; an id or name that its family has already; a name that no tag could reach.
    [[nodiscard]] tl::expected<void, QString> add(const Object& object);

    /// How many objects the family of \p type has; 0 for a kind that is not kept here.
    std::size_t count(Korvane::ScadaObjectType type) const;

    ObjectKey findByName(Korvane::ScadaObjectType family, QStringView name) const override;
    ObjectKey findById(Korvane::ScadaObjectType family, qint32 id) const override;
    ObjectKey findPoint(QStringView name) const override;
    std::vector<Station> stations() const override;

    /// The object of that key; null when there is none. The pointer holds until the next add().
    const Object* object(ObjectKey key) const;

    /// The objects of \p type in the order in which they were added; Point stands for both kinds of points.
    std::vector<ObjectKey> objects(Korvane::ScadaObjectType type) const;

    /// Zone whose clock the hours and days of the statistics follow; the system's unless set. To be set before the
    /// first sample and before anything is restored.
    void setTimeZone(const QTimeZone& zone);

    /// Clock up to which readings count; the system's unless set.
    void setClock(std::function<qint64()> clock);
    qint64 now() const { return m_clock(); }

    /// Who hears of the marks of watched objects; not owned, null for nobody.
    void setMarksListener(MarksListener* listener) { m_marksListener = listener; }
    /// Has the listener hear of the object under \p handle: of its next sample, then of every change of its marks. An
    /// object whose communication has failed is told of at once, one that can go stale is told of when it has no sample
    /// within that time. Does nothing for an unknown object.
    void watch(ObjectKey key, quint32 handle);

    /// Takes one sample into the present value, its marks and the statistics.
    ///
    /// The quality is what the source states, with Invalid added for a value that is no finite number (or, of anything
    /// but an analog point, no 32-bit state): the value before is then kept. So a new sample takes Stale and
    /// CommunicationFailed back unless it states them itself.
    ///
    /// Limit marks: high comes when the value lies above the limit and goes when it is at or below limit minus
    /// hysteresis; low likewise downwards. Each of the four limits is judged by itself, so a value above the upper one
    /// of two carries both marks. Abnormal follows the number of the state, or, of an analog point with a rate limit, whether
    /// the value changed faster since the sample before. An invalid sample changes no limit mark.
    /// \returns false when the sample was ignored: unknown object; older than the present one (one of the same time
    /// replaces it); a time outside the years 1 to 9999.
    bool takeSample(const Sample& sample);

    /// The present value as a middleware record: "value" (double of an analog point, else qint32), "tag", "limit",
    /// "quality" and "time" (UTC). A unit has "commState" and "scanState" besides, a line "commState" and
    /// "driverState", all equal to the value. Before the first sample, value and time are absent and the quality is
    /// Invalid. Allocates nothing for points.
    /// \returns an empty record for an unknown object.
    QuorixData presentRecord(ObjectKey key) const;

    /// Marks as Stale what has been present for its staleAfter or longer at \p nowMs.
    /// \returns the objects that were marked now: each once until it has a new sample, and not one whose source
    /// stated the mark itself. The cost follows the number of objects that may have expired, not that of all.
    std::vector<ObjectKey> takeStale(qint64 nowMs);

    /// Sets or takes back the mark CommunicationFailed, from \p nowMs on. The statistics do not count while it is set;
    /// afterwards the value before counts again, unless it went stale meanwhile.
    /// \returns whether the mark changed; false for an unknown object too.
    bool setCommunicationFailed(ObjectKey key, bool failed, qint64 nowMs);

    /// Sets the T marks, bits of ValueMark::Tag.
    /// \returns whether they are others than before; false for an unknown object too.
    bool setTagMarks(ObjectKey key, qint32 marks);
    qint32 tagMarks(ObjectKey key) const;

    /// The limits in force: the point list's until setLimits().
    Limits limits(ObjectKey key) const;
    /// Why an object can't have these limits; nothing when it can.
    [[nodiscard]] tl::expected<void, QString> checkLimits(ObjectKey key, const Limits& limits) const;
    /// Puts other limits in force and judges the present value by them.
    /// \returns why they are refused: no analog point, or not in their order.
    [[nodiscard]] tl::expected<void, QString> setLimits(ObjectKey key, const Limits& limits);
    /// The hysteresis in force: the point list's until setHysteresis().
    double hysteresis(ObjectKey key) const;
    /// \returns why it is refused: no analog point, or no number from 0 on.
    [[nodiscard]] tl::expected<void, QString> setHysteresis(ObjectKey key, double hysteresis);

    /// Whether the present value was put there by hand, and so does not go stale.
    void setHeldByHand(ObjectKey key, bool held);
    /// Marks the present value as Stale until the next sample; it counts no longer from \p nowMs on.
    /// \returns whether the mark is new.
    bool setStale(ObjectKey key, qint64 nowMs);
    /// When the value last became another one; nothing before the first sample of this run.
    std::optional<qint64> lastChangeMs(ObjectKey key) const;

    /// Starts the statistics of all periods anew, with the present value from \p nowMs on.
    /// \returns false for an object without a sample so far.
    bool resetStatistics(ObjectKey key, qint64 nowMs);
    /// Whether an object has statistics, of this run or restored.
    bool hasStatistics(ObjectKey key) const;
    /// Since when the statistics run; nothing before the first sample and where it is not known.
    std::optional<qint64> statisticsSinceMs(ObjectKey key) const;

    /// Names, descriptions, limits in force, the value as text, and the statistics of the running periods at now().
    ///
    /// The full name is station and name, joined by a "."; the value with unit has the point's decimals and a blank
    /// before the unit; the name of a state without one is its number.
    QVariant fieldValue(ObjectKey object, DataCode::DataField field) const override;

    /// Figures of the hour that ended last before now(): PastMaximum, PastMinimum, PastMean and PastAccumulated of an
    /// analog point, and PastMoment, the value at the end of that hour.
    /// \returns an invalid variant for any other field and where nothing is known.
    QVariant historyValue(ObjectKey object, DataCode::DataField field) const;

    /// Present value and statistics of one object as bytes of a layout of their own, for restore(); empty before the
    /// first sample.
    QByteArray state(ObjectKey key) const;

    /// Takes the bytes of state() in place of what the object has.
    /// \returns false when there is no such object or the bytes are not of that layout; nothing changes then.
    bool restore(ObjectKey key, const QByteArray& state);

    /// Forgets every value and all statistics, as before the first sample: for a clock that goes back.
    void forgetValues();

    /// The object's value stops counting at \p timeMs until it has a new sample, and is marked as Stale: for a value
    /// that was restored, with the time up to which it is known to have held.
    void interrupt(ObjectKey key, qint64 timeMs);

private:
    struct NameHash
    {
        std::size_t operator()(QStringView name) const noexcept
        {
            // Any seed but 0 will do: it has Qt hash with the processor's instruction for it.
            return qHash(name, 1);
        }
    };
    struct NameEqual
    {
        bool operator()(QStringView a, QStringView b) const noexcept
        {
            return a.size() == b.size() && std::memcmp(a.data(), b.data(), std::size_t(a.size()) * sizeof(QChar)) == 0;
        }
    };
    /// Keeps each name's hash beside it: names of a plant have one length, and comparing texts costs a cache miss each.
    template <typename Value>
    using NameMap =
        tsl::robin_map<QStringView, Value, NameHash, NameEqual, std::allocator<std::pair<QStringView, Value>>, true>;

    /// What a sample meets: packed, so that taking one touches few cache lines.
    struct Present
    {
        explicit Present(const Object& object);

        double value = 0;
        qint64 timeMs = 0;
        qint32 quality = 0;
        qint32 limitMarks = 0;
        bool isAnalog = false;
        bool hasValue = false;
        bool isQueued = false; ///< in m_expiries
        bool isWatched = false;
        bool isReportDue = false; ///< the listener hears of the next sample, whatever it changes
        bool isHeldByHand = false;
        quint8 tagMarks = 0;
        qint32 abnormalState = -1;
        double lowLow = 0;
        double low = 0;
        double high = 0;
        double highHigh = 0;
        double hysteresis = 0;
        double rateLimit = 0; ///< per second; NaN for none
        qint64 staleAfterMs = 0;
        qint64 changedMs = std::numeric_limits<qint64>::min();
        quint32 watchHandle = 0;
        qint64 statisticsSinceMs = std::numeric_limits<qint64>::min();
        /// Made with the first sample: in a large plant many points never have one.
        std::unique_ptr<PointStatistics> statistics;
    };

    /// When a unit or line last came on line and went off it.
    struct Communication
    {
        qint64 onLineMs = std::numeric_limits<qint64>::min();
        qint64 offLineMs = std::numeric_limits<qint64>::min();
    };

    /// Objects of one family with the names and ids of their own.
    struct Family
    {
        std::vector<Object> objects;
        std::vector<Present> present;             ///< parallel to the objects
        std::vector<Communication> communication; ///< parallel to the objects, of units and lines
        // The names look into the objects' texts, which stay where they are when the vector grows.
        NameMap<ObjectKey> byName;
        tsl::robin_map<qint32, std::size_t> byId;
    };

    /// Moment at which a value may have gone stale. Newer samples do not touch it: it is looked at when it is due, and
    /// queued again if the value is younger by then.
    struct Expiry
    {
        qint64 timeMs;
        Family* family;
        std::size_t index;
        friend bool operator>(const Expiry& a, const Expiry& b) { return a.timeMs > b.timeMs; }
    };

    const Family* family(Korvane::ScadaObjectType type) const;
    Family* family(Korvane::ScadaObjectType type);
    const Present* findPresent(ObjectKey key) const;
    Present* findPresent(ObjectKey key);
    PointStatistics& statisticsOf(Present& present, qint64 sinceMs) const;
    tl::expected<Present*, QString> findAnalog(ObjectKey key);
    void judgeAnew(Present& present);
    QVariant presentField(const Object& object, DataCode::DataField field) const;
    static bool isOnLine(const Present& present);
    void noteCommunication(ObjectKey key, bool wasKnown, bool wasOnLine, qint64 timeMs);
    QVariant communicationTime(ObjectKey key, bool onLine) const;
    void queueExpiry(Family& family, std::size_t index);
    static void setLimitMarks(Present& present);
    static bool isTooFast(const Present& before, double value, qint64 timeMs);
    void tellMarks(Present& present, qint32 limitMarksBefore, qint32 qualityBefore, qint64 timeMs);

    Family m_points;
    Family m_rtus;
    Family m_channels;
    StatisticsCalendar m_calendar;
    std::function<qint64()> m_clock;
    MarksListener* m_marksListener = nullptr;
    std::priority_queue<Expiry, std::vector<Expiry>, std::greater<>> m_expiries;
};
