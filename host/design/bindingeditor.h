#pragma once

#include "host/hostexport.h"

#include <QFormLayout>
#include <QLabel>
#include <QWidget>

#include <vector>

class DesignDocument;
class Shape;
class TagField;

/// The tags that a shape is bound to, a line each, and a line for one more where it can have one. Each is taken when the
/// user is done with it and can be undone in the document; an emptied line releases the shape from its tag.
class KORVANE_HOST_EXPORT BindingEditor : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(BindingEditor)

public:
    explicit BindingEditor(QWidget* parent = nullptr);
    ~BindingEditor() override;

    /// \param document not owned; null for none, which is to be told before a document goes
    /// \param shape of its page; null for none
    void showShape(DesignDocument* document, Shape* shape);
    /// Takes what was typed as if the user were done.
    void commit();

private:
    void fill();
    void addRow();
    void removeLastRow();
    QStringList labels() const;
    void take(std::size_t place, TagField& field);

    DesignDocument* m_document = nullptr;
    Shape* m_shape = nullptr;
    QFormLayout m_form;
    QLabel m_hint;
    std::vector<TagField*> m_fields; ///< one a binding, and maybe one for another
};
