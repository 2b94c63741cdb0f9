// Reads a tag record of any version from any bytes and writes it again.

#include "fuzz/storedinput.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/tagresolution.h"
#include "scada/binding/objecttarget.h"

namespace {

/// Whether the record can hold the tag: it has no code for the current value, none above 16 bits, and no mark for a
/// property's name that begins with the prefix itself.
bool fitsRecord(const QString& tag)
{
    const Korvane::DataLinkInfo link = Korvane::quickResolveFromString(tag);
    const DataCode::DataField field = Korvane::dtStringToCode(link.field);
    const bool isDoubled =
        link.type == Korvane::ScadaObjectType::ApplicationProperty && link.name.startsWith(QLatin1String("@::"));
    return field != DataCode::DataField::Value && static_cast<int>(field) <= 0xFFFF && !isDoubled;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const StoredInput input(data, size);
    const ObjectTarget read = ObjectTarget::makeFromByteStream(input.bytes, input.context);

    QMap<QString, QVariant> map;
    QDataStream stream(input.bytes);
    stream.setVersion(QDataStream::Qt_4_6);
    ObjectTarget::fromStream(stream, input.context, map);
    require(map.size() == 2, "a record gives two named values");

    const ObjectTarget again = ObjectTarget::makeFromByteStream(read.makeByteStream(), ScadaTagActionStream());
    require(!fitsRecord(read.getTagString()) || again.isEqual(read), "what is written reads back");
    return 0;
}
