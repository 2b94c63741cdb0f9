#pragma once

#include "host/actions/tagaction.h"
#include "host/canvas/operation.h"
#include "host/canvas/pageaccess.h"
#include "host/design/designdocument.h"

#include <QByteArray>
#include <QUndoCommand>
#include <QVariantMap>

#include <memory>
#include <optional>

/// An edit of a page that is undone as it is done: what the page has and what the command holds change places.
class DesignCommand : public QUndoCommand
{
public:
    DesignCommand(DesignDocument& document, const QString& text) : QUndoCommand(text), m_document(document) {}

    void redo() final { swap(); }
    void undo() final { swap(); }

protected:
    virtual void swap() = 0;
    DesignDocument& document() const { return m_document; }
    Page& page() const { return m_document.m_page; }
    Page& trial() const { return m_document.m_trial; }
    void forgetTrial() const;

private:
    DesignDocument& m_document;
};

/// Puts a tag action in the place of another, or of none, and sets properties of its shape.
class BindCommand : public DesignCommand
{
public:
    /// \param before null for none
    /// \param after null for none
    BindCommand(DesignDocument& document, const QString& text, Shape& shape, TagAction* before,
                std::unique_ptr<TagAction> after, const QVariantMap& properties);

protected:
    void swap() override;

private:
    Shape& m_shape;
    int m_place; ///< among the shape's actions
    TagAction* m_inPage;
    std::unique_ptr<TagAction> m_held;
    QVariantMap m_properties; ///< to be set
};

/// Puts a new shape with its action on top of a layer, which is made where there is none of that place.
class AddShapeCommand : public DesignCommand
{
public:
    AddShapeCommand(DesignDocument& document, const QString& text, std::unique_ptr<Shape> shape,
                    std::unique_ptr<TagAction> action, std::size_t layer);
    ~AddShapeCommand() override;

protected:
    void swap() override;

private:
    void putIn();
    void takeOut();

    Shape& m_shape;
    const std::size_t m_layer;
    bool m_isLayerMade;
    std::unique_ptr<Shape> m_held; ///< while it is not on the page
    TagAction* m_action;
    std::unique_ptr<TagAction> m_heldAction; ///< goes before its shape
};

class OperationCommand : public DesignCommand
{
public:
    OperationCommand(DesignDocument& document, const QString& text, const Shape& shape,
                     const std::optional<Operation>& operation);

protected:
    void swap() override;

private:
    const Shape& m_shape;
    std::optional<Operation> m_operation;
    QByteArray m_unreadable;
};

class AccessCommand : public DesignCommand
{
public:
    AccessCommand(DesignDocument& document, const QString& text, const PageAccess& access);

protected:
    void swap() override;

private:
    PageAccess m_access;
};
