#include "platform/ui/kvpointmimedata.h"

KVPointMimeData::KVPointMimeData(const Korvane::BrowerItemInfo& item) : m_item(item)
{
    const QString tag = item.property.isEmpty() ? item.tag : QStringLiteral("%1:%2").arg(item.tag, item.property);
    setData(format(), tag.toUtf8());
    setText(tag);
}

KVPointMimeData::~KVPointMimeData() = default;

QString KVPointMimeData::format()
{
    return QStringLiteral("application/KVPoint_MimeData");
}
