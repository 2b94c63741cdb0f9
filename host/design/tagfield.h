#pragma once

#include "host/hostexport.h"
#include "platform/data/broweriteminfo.h"

#include <QLabel>
#include <QString>
#include <QWidget>

class PointSelectWidget;
class RuntimeDatabase;

/// A PointSelectWidget that tells a tag when the user is done with it, and says below it what is wrong with one: it
/// names no object, or it is a number, which is not taken.
class KORVANE_HOST_EXPORT TagField : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(TagField)

public:
    /// \param database where tags are looked up; not owned, must outlive the field
    explicit TagField(const RuntimeDatabase& database, QWidget* parent = nullptr);
    ~TagField() override;

    /// Whether a field of the object is chosen along with it; false at first.
    void setFieldChosen(bool chosen);
    /// Shows a tag, whatever was typed.
    void setTag(const QString& tag);
    /// The tag that was shown or taken last.
    QString tag() const { return m_tag; }
    /// Takes what was typed as if the user were done.
    void commit();

    /// The object that the typed text names, with its field; one of type NoObject for none.
    Korvane::BrowerItemInfo item() const;

Q_SIGNALS:
    /// The user is done with another tag than before; empty for none.
    void taken(const QString& tag);
    /// Another text stands there.
    void edited();

private:
    QString typed() const;
    QString problem() const;
    void showProblem();

    const RuntimeDatabase& m_database;
    PointSelectWidget* m_point;
    QLabel* m_problem;
    QString m_tag;
};
