#include "host/design/bindingeditor.h"

#include "host/design/designdocument.h"
#include "host/design/tagfield.h"

#include <QVBoxLayout>

BindingEditor::BindingEditor(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_hint.setWordWrap(true);
    m_form.setRowWrapPolicy(QFormLayout::WrapAllRows);
    layout->addWidget(&m_hint);
    layout->addLayout(&m_form);
}

BindingEditor::~BindingEditor()
{
    m_form.setParent(nullptr); // a member, which the layout around it must not destroy
}

void BindingEditor::showShape(DesignDocument* document, Shape* shape)
{
    if (m_document)
        m_document->disconnect(this);
    m_document = document;
    m_shape = shape;
    if (document) {
        connect(document, &DesignDocument::bindingsChanged, this, [this](const Shape* changed) {
            if (changed == m_shape)
                fill();
        });
    }
    fill();
}

void BindingEditor::commit()
{
    const std::vector<TagField*> fields = m_fields; // taking one may make others
    for (TagField* field : fields)
        field->commit();
}

QStringList BindingEditor::labels() const
{
    QStringList all;
    if (!m_document || !m_shape)
        return all;
    for (const ShapeBinding& binding : m_document->bindings(*m_shape))
        all.append(binding.purpose());
    if (m_document->canAddBinding(*m_shape))
        all.append(all.isEmpty() ? tr("Point") : tr("Another curve"));
    return all;
}

// Lines keep their place and the keyboard: it may be just one of them that tells of the change.
void BindingEditor::fill()
{
    const QStringList wanted = labels();
    while (m_fields.size() > std::size_t(wanted.size()))
        removeLastRow();
    m_hint.setVisible(wanted.isEmpty());
    m_hint.setText(m_shape ? tr("This shape shows no value.") : tr("Select a shape, or drop a point on the page."));
    if (!m_document || !m_shape)
        return;
    while (m_fields.size() < std::size_t(wanted.size()))
        addRow();
    const std::vector<ShapeBinding> bindings = m_document->bindings(*m_shape);
    for (std::size_t place = 0; place < m_fields.size(); ++place) {
        qobject_cast<QLabel*>(m_form.labelForField(m_fields[place]))->setText(wanted.at(static_cast<int>(place)));
        m_fields[place]->setTag(place < bindings.size() ? bindings[place].tag : QString());
    }
}

void BindingEditor::addRow()
{
    auto* field = new TagField(m_document->database(), this);
    field->setFieldChosen(true);
    auto* label = new QLabel(this);
    m_form.addRow(label, field);
    label->show(); // at once, whatever the layout has shown so far
    field->show();
    const std::size_t place = m_fields.size();
    m_fields.push_back(field);
    connect(field, &TagField::taken, this, [this, place, field] { take(place, *field); });
}

void BindingEditor::removeLastRow()
{
    m_fields.back()->disconnect(this);
    m_fields.pop_back();
    const QFormLayout::TakeRowResult row = m_form.takeRow(m_form.rowCount() - 1);
    for (QLayoutItem* item : {row.labelItem, row.fieldItem}) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
}

void BindingEditor::take(std::size_t place, TagField& field)
{
    const QString tag = field.tag();
    const std::vector<ShapeBinding> bindings = m_document->bindings(*m_shape);
    if (place >= bindings.size()) {
        if (!tag.isEmpty())
            m_document->addBinding(*m_shape, tag);
    } else if (!tag.isEmpty()) {
        m_document->setBinding(bindings[place], tag);
    } else if (!m_document->removeBinding(bindings[place])) {
        field.setTag(bindings[place].tag); // rules compare something
    }
}
