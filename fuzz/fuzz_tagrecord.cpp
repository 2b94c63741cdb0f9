// Reads a tag record of any version from any bytes and writes it again.

#include "fuzz/storedinput.h"
#include "scada/binding/objecttarget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const StoredInput input(data, size);
    const ObjectTarget read = ObjectTarget::makeFromByteStream(input.bytes, input.context);

    QMap<QString, QVariant> map;
    QDataStream stream(input.bytes);
    stream.setVersion(QDataStream::Qt_4_6);
    ObjectTarget::fromStream(stream, input.context, map);
    require(map.value(QStringLiteral("pname")) == Korvane::quickResolveFromString(read.getTagString()).name,
            "the named values are those of the tag");

    const ObjectTarget again = ObjectTarget::makeFromByteStream(read.makeByteStream(), ScadaTagActionStream());
    require(!fitsRecord(read.getTagString()) || again.isEqual(read), "what is written reads back");
    return 0;
}
