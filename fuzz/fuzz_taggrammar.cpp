// Resolves any text as a tag string, by its text alone and against a database that knows parts of it.

#include "fuzz/storedinput.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/scadaruntimeinterface.h"
#include "platform/data/tagresolution.h"

namespace {

using Korvane::DataLinkInfo;
using Korvane::ScadaObjectType;

/// Knows every name of even length and every id.
class HalfRuntime : public ScadaRuntimeInterface
{
public:
    ObjectKey findByName(ScadaObjectType family, QStringView name) const override
    {
        return name.size() % 2 == 0 ? key(family, int(name.size()) + 200001) : ObjectKey{};
    }
    ObjectKey findById(ScadaObjectType family, qint32 id) const override { return key(family, id); }
    QVariant fieldValue(ObjectKey, DataCode::DataField) const override { return {}; }

private:
    static ObjectKey key(ScadaObjectType family, qint32 id)
    {
        return {family == ScadaObjectType::Point ? ScadaObjectType::AnalogPoint : family, id};
    }
};

void check(const QString& tag, ScadaRuntimeInterface* runtime)
{
    const DataLinkInfo link = Korvane::resolveFromString(tag, runtime);
    require(Korvane::resolveFromString(link.absoluteName(), runtime) == link, "an absolute name resolves to its link");
    require(link.absoluteName() == tag, "a link's absolute name is the tag");
    require(link.field.isEmpty() || Korvane::dtStringToCode(link.field) != DataCode::DataField::Unknown,
            "a field is a known one");
    bool isNumber = false;
    tag.toDouble(&isNumber);
    require((link.type == ScadaObjectType::NoObject) == (isNumber || tag.isEmpty()), "only numbers name no object");
    if (Korvane::isAddressableName(tag))
        require(link.name == tag && link.field.isEmpty() && Korvane::isPointObjectType(link.type), "reachable by name");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString tag = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    HalfRuntime runtime;
    check(tag, nullptr);
    check(tag, &runtime);
    return 0;
}
