// Reads a condition of any version from any bytes, uses it and writes it again.

#include "fuzz/storedinput.h"
#include "scada/binding/scadacondition.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const StoredInput input(data, size);
    QDataStream stream(input.bytes);
    stream.setVersion(QDataStream::Qt_4_6);
    ScadaCondition read;
    read.fromStream(stream, input.context);

    const auto operation = static_cast<int>(read.opType());
    require(!read.checkCondition() || (operation >= 0 && operation <= 5), "an unknown operator never holds");
    require(read.displayString(true).isEmpty() == read.lValue()->getTagString().isEmpty(), "a left tag is shown");
    require(read.toMap().value(QStringLiteral("oper")) == operation, "the map names the operator");

    QByteArray written;
    QDataStream out(&written, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_4_6);
    ScadaTagActionStream context;
    read.toStream(out, context);

    QDataStream in(written);
    in.setVersion(QDataStream::Qt_4_6);
    ScadaCondition again;
    again.fromStream(in, context);
    require(in.status() == QDataStream::Ok && in.atEnd(), "what is written reads back to its last byte");
    require(again.opType() == read.opType() && again.logicType() == read.logicType(), "operator and link read back");
    for (auto side : {&ScadaCondition::lValue, &ScadaCondition::rValue}) {
        const QString tag = (read.*side)()->getTagString();
        require(!fitsRecord(tag) || (again.*side)()->getTagString() == tag, "a tag reads back");
    }
    return 0;
}
