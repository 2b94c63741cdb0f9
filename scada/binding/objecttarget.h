#pragma once

#include "platform/data/datacode.h"
#include "platform/data/objecttagvalue.h"
#include "platform/data/scadaobjecttype.h"
#include "scada/scadaexport.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QVariant>

class KorvaneScadaCoreInterface;
class QDataStream;
class ScadaRuntimeInterface;
class ScadaTagActionStream;
struct LogDataInfo;

/// A tag reference: names what a binding reads (a point or object and, optionally, one data field of it, or a constant)
/// and carries the last value received for it.
///
/// It is written as a tag string (grammar: Korvane::resolveFromString). Setting a tag string only stores the text;
/// resolve() binds it to the runtime database, after which the tag string is the bare name.
class KORVANE_SCADA_EXPORT ObjectTarget : public ObjectTagValue
{
    Q_DECLARE_TR_FUNCTIONS(ObjectTarget)

public:
    enum TagMappingState {
        TagUnmapped = 0, ///< the tag string is empty
        TagMapped = 1,
    };

    /// Data fields with their display names, in the order in which editors show them.
    using FieldList = QList<QPair<DataCode::DataField, QString>>;

    ObjectTarget();
    /// The copy shares the logging description of \p other, which no target ever deletes.
    ObjectTarget(const ObjectTarget& other);
    /// Copies both strings and the value side; the logging description stays this target's own.
    const ObjectTarget& operator=(const ObjectTarget& other);
    virtual ~ObjectTarget();

    static ObjectTarget fromTagString(const QString& tag);

    /// Sets the tag string in force and the stored one.
    void setTagString(const QString& tag);
    /// The tag string in force.
    QString getTagString() const { return m_tagString; }

    /// Compares the tag strings in force, and nothing else: case-sensitive, without resolving them.
    bool isEqual(const ObjectTarget& other) const { return m_tagString == other.m_tagString; }

    TagMappingState mappingState() const { return m_tagString.isEmpty() ? TagUnmapped : TagMapped; }

    /// The kind of the bound object: what resolving or reading a record gave.
    Korvane::ScadaObjectType objectKindType() const { return m_kind; }

    /// Binds the target to the object that the tag string names in \p runtime (null: by the text alone). The tag string
    /// becomes the object's bare name, without prefix and field; the stored one stays.
    void resolve(ScadaRuntimeInterface* runtime);

    /// Replaces every occurrence of \p before in the tag string: plain, case-sensitive text, no regard to word
    /// boundaries; an empty text occurs before, between and behind all characters, as QString has it. The stored tag
    /// string and the binding stay.
    /// \returns false, with nothing changed, when the tag string does not contain \p before.
    bool replaceText(const QString& before, const QString& after);

    /// Renames points: each pair (old, new) whose old name the stored tag string contains is applied, in order, to a
    /// copy of it, which then becomes the tag string and is bound through the hub's runtime database. The stored tag
    /// string stays, so a pair is never applied to what another pair put in unless its own old name was stored too.
    /// Prefix and field stay in the tag string: resolve() leaves the bare name again.
    /// \param hub null binds by the text alone
    /// \returns whether any pair applied; if not, nothing changes.
    bool replacePointName(KorvaneScadaCoreInterface* hub, const QList<QPair<QString, QString>>& renames);

    /// Takes \p value when it differs from the current value as QVariant compares them: no dead band, no tolerance
    /// beyond QVariant's own.
    /// \returns whether it differed.
    bool needUpdate(double value);

    /// The logging description; null until setLogDataInfo. Belongs to no target: copies share it and it is never
    /// deleted.
    const LogDataInfo* getLogDataInfo() const { return m_logDataInfo; }
    void setLogDataInfo(const LogDataInfo& info);

    /// Writes the record: type, id, bare name, field code. See docs/stored-records.md for the layouts.
    void toStream(QDataStream& stream) const;
    /// Reads a record as laid out in the version of \p actionStream. A stream that ends early gives zeros and empty
    /// texts for what is missing; its status tells.
    void fromStream(QDataStream& stream, const ScadaTagActionStream& actionStream);
    /// Reads a record and reports it as "pname", the object's name, and "dtfield", the field's code or -1. Other
    /// entries of \p out stay.
    static void fromStream(QDataStream& stream, const ScadaTagActionStream& actionStream, QMap<QString, QVariant>& out);

    /// The record in a byte array of its own, written with stream version 12.
    QByteArray makeByteStream() const;
    static ObjectTarget makeFromByteStream(const QByteArray& bytes, const ScadaTagActionStream& actionStream);

    /// The fields that objects of \p type have; of any other type, or none, the fields of both kinds of points.
    static FieldList getFieldInformationByType(Korvane::ScadaObjectType type);
    /// The fields of a point by the range of the id that \p tag resolves to by its text alone.
    static FieldList getPointFieldInformationByTagString(const QString& tag);
    /// The fields that carry a history value of a point.
    static FieldList getPointDataFieldInformation();
    /// The fields offered for a data-link item, past values first.
    static FieldList getDataLinkItemFieldInformation();

private:
    friend class ScadaCondition; // sets the tag string in force alone

    QString m_tagString;
    QString m_storedTagString;
    LogDataInfo* m_logDataInfo = nullptr;
};
