#pragma once

#include "platform/data/broweriteminfo.h"
#include "platform/platformexport.h"

#include <QMimeData>

/// What a tree of points puts on a drag: one object with, maybe, a field.
///
/// Who takes it casts to this class. Beside its own format it carries the tag as plain text, for whatever takes text.
class KORVANE_PLATFORM_EXPORT KVPointMimeData : public QMimeData
{
    Q_OBJECT
    Q_DISABLE_COPY(KVPointMimeData)

public:
    explicit KVPointMimeData(const Korvane::BrowerItemInfo& item);
    ~KVPointMimeData() override;

    Korvane::BrowerItemInfo getData() const { return m_item; }

    /// "application/KVPoint_MimeData"; its bytes are the tag in UTF-8.
    static QString format();

private:
    Korvane::BrowerItemInfo m_item;
};
