#include "host/design/bindpointdialog.h"

#include "host/design/designdocument.h"
#include "host/design/tagfield.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>

BindPointDialog::BindPointDialog(DesignDocument& document, Shape& shape, QWidget* parent)
    : QDialog(parent),
      m_document(document),
      m_shape(shape),
      m_objects(new QComboBox(this)),
      m_point(new TagField(document.database(), this))
{
    setWindowTitle(tr("Bind point"));
    resize(440, sizeHint().height());
    for (const QString& object : document.boundObjects(shape))
        m_objects->addItem(object, object);
    if (document.canAddBinding(shape))
        m_objects->addItem(tr("(one more)"), QString());
    m_point->setFieldChosen(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    auto* form = new QFormLayout(this);
    if (m_objects->count() > 1)
        form->addRow(tr("Instead of"), m_objects);
    else
        m_objects->hide();
    form->addRow(tr("Point"), m_point);
    form->addRow(buttons);
    QPushButton* ok = buttons->button(QDialogButtonBox::Ok);
    const auto heed = [this, ok] { ok->setEnabled(m_point->item().type != Korvane::ScadaObjectType::NoObject); };
    connect(m_point, &TagField::edited, this, heed);
    connect(m_objects, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this] { m_point->setTag(m_objects->currentData().toString()); });
    connect(buttons, &QDialogButtonBox::accepted, this, &BindPointDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_point->setTag(m_objects->currentData().toString());
    heed();
    m_point->setFocus();
}

BindPointDialog::~BindPointDialog() = default;

void BindPointDialog::accept()
{
    const Korvane::BrowerItemInfo item = m_point->item();
    if (item.type == Korvane::ScadaObjectType::NoObject)
        return;
    const QString object = m_objects->currentData().toString();
    if (object.isEmpty())
        m_document.addBinding(m_shape, item);
    else
        m_document.replaceObject(m_shape, object, item);
    QDialog::accept();
}
