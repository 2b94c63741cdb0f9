#pragma once

#include "host/hostexport.h"
#include "platform/data/pointdirectory.h"
#include "platform/data/scadaruntimeinterface.h"

#include <QHashFunctions>
#include <QString>
#include <QStringView>

#include <tl/expected.hpp>
#include <tsl/robin_map.h>

#include <cstring>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

/// The reference host's runtime database: every point, unit and line that tags can name.
///
/// Objects are only ever added, and looked up by name or id at the cost of one hash look-up, however many there are. It
/// serves as the process's point directory too, when the host registers it.
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

    /// Names, descriptions and limits; the full name is station and name, joined by a ".".
    QVariant fieldValue(ObjectKey object, DataCode::DataField field) const override;

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

    /// Objects of one family with the names and ids of their own.
    struct Family
    {
        std::vector<Object> objects;
        // The names look into the objects' texts, which stay where they are when the vector grows.
        NameMap<ObjectKey> byName;
        tsl::robin_map<qint32, std::size_t> byId;
    };

    const Family* family(Korvane::ScadaObjectType type) const;
    Family* family(Korvane::ScadaObjectType type);
    const Object* findObject(Korvane::ScadaObjectType type, qint32 id) const;

    Family m_points;
    Family m_rtus;
    Family m_channels;
};
