#pragma once

#include <QDockWidget>

class BindingEditor;
class DesignDocument;
class OperationEditor;
class Shape;

/// What the selected shape shows and what it does: its tags and its operation.
class BindingDock : public QDockWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(BindingDock)

public:
    explicit BindingDock(QWidget* parent);
    ~BindingDock() override;

    /// \param document not owned; null for none, which is to be told before a document goes
    /// \param shape of its page; null for the page itself
    void showShape(DesignDocument* document, Shape* shape);
    /// Takes what was typed as if the user were done.
    void commit();

private:
    BindingEditor* m_bindings;
    OperationEditor* m_operation;
    QWidget* m_operationBox;
};
