#pragma once

#include <QDockWidget>
#include <QHash>
#include <QLineEdit>
#include <QTreeWidget>

class DesignDocument;
class Shape;

/// The page and its shapes in a tree by layers, those with scripts in bold; filtered while one types.
class ObjectDock : public QDockWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(ObjectDock)

public:
    explicit ObjectDock(QWidget* parent);
    ~ObjectDock() override;

    /// \param document not owned; null for none, which is to be told before a document goes
    void showDocument(const DesignDocument* document);
    /// Selects a shape, or the page for null, without telling of it.
    void select(const Shape* shape);

    /// How an object is called for the user: a shape by its name or, without one, its text; the page by its title.
    static QString nameOf(const DesignDocument& document, const Shape* shape);

Q_SIGNALS:
    /// The user chose a shape, or the page for null.
    void selected(Shape* shape);

private:
    void fill();
    void refill();
    void markScripts(const Shape* shape);
    void filter(const QString& text);
    void tell(QTreeWidgetItem* item);

    const DesignDocument* m_document = nullptr;
    QHash<const Shape*, QTreeWidgetItem*> m_items; ///< of the shapes, and of the page under null
    QLineEdit m_filter;
    QTreeWidget m_tree;
};
