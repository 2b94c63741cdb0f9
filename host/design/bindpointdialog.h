#pragma once

#include "host/hostexport.h"
#include "platform/data/broweriteminfo.h"

#include <QDialog>

class DesignDocument;
class QComboBox;
class Shape;
class TagField;

/// Asks for the point that a shape is to show and, of one that shows several, in place of which.
class KORVANE_HOST_EXPORT BindPointDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(BindPointDialog)

public:
    /// \param document not owned, must outlive the dialog
    /// \param shape of its page, which can be bound
    BindPointDialog(DesignDocument& document, Shape& shape, QWidget* parent = nullptr);
    ~BindPointDialog() override;

    /// Binds the shape, and closes.
    void accept() override;

private:
    DesignDocument& m_document;
    Shape& m_shape;
    QComboBox* m_objects; ///< in place of which; the last is empty for one more, where there may be
    TagField* m_point;
};
