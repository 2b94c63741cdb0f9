#include "apps/designer/bindingdock.h"

#include "host/design/bindingeditor.h"
#include "host/design/operationeditor.h"

#include <QGroupBox>
#include <QScrollArea>
#include <QVBoxLayout>

BindingDock::BindingDock(QWidget* parent)
    : QDockWidget(tr("Binding"), parent), m_bindings(new BindingEditor), m_operation(new OperationEditor)
{
    setObjectName(QStringLiteral("binding"));
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    const auto addBox = [&](const QString& title, QWidget* editor) {
        auto* box = new QGroupBox(title, content);
        (new QVBoxLayout(box))->addWidget(editor);
        layout->addWidget(box);
        return box;
    };
    addBox(tr("Shows"), m_bindings);
    m_operationBox = addBox(tr("Commands"), m_operation);
    layout->addStretch();
    auto* area = new QScrollArea(this);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(content);
    setWidget(area);
    showShape(nullptr, nullptr);
}

BindingDock::~BindingDock() = default;

void BindingDock::showShape(DesignDocument* document, Shape* shape)
{
    m_bindings->showShape(document, shape);
    m_operation->showShape(document, shape);
    m_operationBox->setVisible(shape);
}

void BindingDock::commit()
{
    m_bindings->commit();
    m_operation->commit();
}
