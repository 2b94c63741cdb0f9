// Page files of any bytes: read or refused, and what was read is written so that it reads back the same.

#include "host/actions/canvasactionmanagerfactory.h"
#include "host/canvas/pagereader.h"
#include "host/canvas/pagewriter.h"
#include "host/runtime/runtimedatabase.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static CanvasActionManagerFactory managers(nullptr);
    static RuntimeDatabase database;
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const PageReader reader(managers, &database);
    const auto page = reader.read(text, QStringLiteral("page.pws"));
    if (!page)
        return 0;
    const QByteArray written = PageWriter::write(*page);
    const auto again = reader.read(written, QStringLiteral("page.pws"));
    if (!again || PageWriter::write(*again) != written)
        std::abort();
    page->actions->open(&database);
    return 0;
}
