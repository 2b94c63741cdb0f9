#pragma once

#include <QDockWidget>
#include <QPlainTextEdit>

class RuntimeDatabase;
class Shape;
struct Page;

/// Says why the shape that was clicked looks as it does, and keeps saying so while values change. The text can be
/// selected and copied.
class ExplanationDock : public QDockWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(ExplanationDock)

public:
    ExplanationDock(const RuntimeDatabase& database, QWidget* parent);

    void explain(const Page& page, const Shape& shape);
    /// The shape is no longer to be explained, or is about to go.
    void forget();
    /// Says it anew, unless the user is selecting in it.
    void refresh();

private:
    const RuntimeDatabase& m_database;
    const Page* m_page = nullptr;
    const Shape* m_shape = nullptr;
    QPlainTextEdit m_text;
};
