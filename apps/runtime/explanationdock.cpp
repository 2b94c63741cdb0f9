#include "apps/runtime/explanationdock.h"

#include "host/inspection/shapeexplanation.h"

#include <QPushButton>
#include <QVBoxLayout>

ExplanationDock::ExplanationDock(const RuntimeDatabase& database, QWidget* parent)
    : QDockWidget(tr("Why does this shape look like this"), parent), m_database(database)
{
    setObjectName(QStringLiteral("explanation"));
    m_text.setReadOnly(true);
    m_text.setObjectName(QStringLiteral("text"));
    m_text.setPlaceholderText(tr("Click a shape."));
    auto* copy = new QPushButton(tr("Copy all"));
    connect(copy, &QPushButton::clicked, this, [this] {
        m_text.selectAll();
        m_text.copy();
        m_text.moveCursor(QTextCursor::Start);
    });
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(&m_text);
    layout->addWidget(copy, 0, Qt::AlignRight);
    setWidget(content);
}

void ExplanationDock::explain(const Page& page, const Shape& shape)
{
    m_page = &page;
    m_shape = &shape;
    m_text.setPlainText(explainShape(page, shape, m_database));
}

void ExplanationDock::forget()
{
    m_page = nullptr;
    m_shape = nullptr;
    m_text.clear();
}

void ExplanationDock::refresh()
{
    if (!m_shape || !isVisible() || m_text.textCursor().hasSelection())
        return;
    const QString text = explainShape(*m_page, *m_shape, m_database);
    if (text != m_text.toPlainText())
        m_text.setPlainText(text);
}
