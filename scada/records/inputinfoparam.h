#pragma once

#include "scada/records/enuminputparam.h"
#include "scada/records/numberinputparam.h"
#include "scada/scadaexport.h"

#include <QString>

#include <memory>

/// What an operator may enter when a shape asks for input: a number, or one of several named values.
///
/// Copies share the inner records, which are never changed: setting one puts another in its place.
class KORVANE_SCADA_EXPORT InputInfoParam
{
public:
    InputInfoParam() = default;

    std::shared_ptr<NumberInputParam> numberInputParam; ///< null for none
    std::shared_ptr<EnumInputParam> enumInputParam;     ///< null for none

    void setNumberInputParam(const NumberInputParam& param);
    void setEnumInputParam(const EnumInputParam& param);

    /// The record as the text of a JSON object. Kept: where there is an enum record, the number record is not written.
    QString toStream() const;
    /// Takes the records that \p text has in place of those that are there. Malformed text changes nothing.
    void fromStream(const QString& text);

    /// Whether both records are null, whatever they hold.
    bool isEmpty() const { return !numberInputParam && !enumInputParam; }
    /// Kept: false when \p other has no enum record or both have different ones, else true; number records are never
    /// compared.
    bool isEqual(const InputInfoParam& other) const;
};
