#include "host/design/tagfield.h"

#include "host/runtime/runtimedatabase.h"
#include "platform/data/tagresolution.h"
#include "scada/widgets/pointselectwidget.h"

#include <QLineEdit>
#include <QVBoxLayout>

using Korvane::ScadaObjectType;

TagField::TagField(const RuntimeDatabase& database, QWidget* parent)
    : QWidget(parent), m_database(database), m_point(new PointSelectWidget(this)), m_problem(new QLabel(this))
{
    m_point->hideName();
    auto* edit = m_point->findChild<QLineEdit*>(QStringLiteral("pointNameEdit"));
    edit->setClearButtonEnabled(true);
    edit->setPlaceholderText(tr("Type, drop or browse a point"));
    setFocusProxy(edit);
    m_problem->setTextFormat(Qt::PlainText); // it quotes what was typed
    m_problem->setWordWrap(true);
    QPalette palette = m_problem->palette();
    palette.setColor(QPalette::WindowText, Qt::red);
    m_problem->setPalette(palette);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_point);
    layout->addWidget(m_problem);
    connect(m_point, &PointSelectWidget::linkInfoChanged, this, &TagField::edited);
    connect(m_point, &PointSelectWidget::linkInfoChanged, this, &TagField::showProblem);
    connect(m_point, &PointSelectWidget::browserItemSelected, this, &TagField::commit);
    connect(edit, &QLineEdit::editingFinished, this, &TagField::commit);
    showProblem();
}

TagField::~TagField() = default;

void TagField::setFieldChosen(bool chosen)
{
    m_point->setShowProperty(chosen);
}

void TagField::setTag(const QString& tag)
{
    m_tag = tag;
    m_point->setTagString(tag);
}

QString TagField::typed() const
{
    return m_point->getTagString().trimmed();
}

void TagField::commit()
{
    const QString tag = typed();
    const bool isNumber =
        !tag.isEmpty() && Korvane::resolveFromString(tag, &m_database).type == ScadaObjectType::NoObject;
    if (tag == m_tag || isNumber)
        return;
    m_tag = tag;
    Q_EMIT taken(tag);
}

Korvane::BrowerItemInfo TagField::item() const
{
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(typed(), &m_database);
    const RuntimeDatabase::Object* object = link.id == 0 ? nullptr : m_database.object({link.type, link.id});
    if (!object)
        return {};
    return {object->type, object->id,          Korvane::tagPrefix(object->type) + object->name,
            object->name, object->description, link.field};
}

QString TagField::problem() const
{
    const QString tag = typed();
    if (tag.isEmpty())
        return {};
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(tag, &m_database);
    if (link.type == ScadaObjectType::NoObject)
        return tr("This is a number, not a point.");
    if (link.id == 0 && link.type != ScadaObjectType::ApplicationProperty)
        return tr("The point list has no \"%1\".").arg(link.name);
    return {};
}

void TagField::showProblem()
{
    m_problem->setText(problem());
    m_problem->setVisible(!m_problem->text().isEmpty());
}
