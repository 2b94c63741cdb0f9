#include "host/design/operationeditor.h"

#include "host/design/designdocument.h"
#include "host/design/tagfield.h"

#include <QDoubleValidator>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int noKind = -1;
constexpr int mostDecimals = 15; // a double has no more

QString numberText(double number)
{
    return QString::number(number, 'g', 15);
}

// Of a key sequence only what is pressed first.
QString keyText(const QKeySequence& keys)
{
    return keys.isEmpty() ? QString() : QKeySequence(keys[0]).toString(QKeySequence::PortableText);
}

} // namespace

OperationEditor::OperationEditor(QWidget* parent)
    : QWidget(parent),
      m_kind(new QComboBox(this)),
      m_details(new QWidget(this)),
      m_form(new QFormLayout(m_details)),
      m_mode(new QComboBox(m_details)),
      m_value(makeNumber()),
      m_numbers(new QWidget(m_details)),
      m_minimum(makeNumber()),
      m_maximum(makeNumber()),
      m_step(makeNumber()),
      m_decimals(new QSpinBox(m_numbers)),
      m_usesScale(new QCheckBox(tr("Times"), m_numbers)),
      m_scale(makeNumber()),
      m_list(new QWidget(m_details)),
      m_listed(new QTableWidget(0, 2, m_list)),
      m_key(new QKeySequenceEdit(m_details)),
      m_problem(new QLabel(this))
{
    addChoices();
    addNumbers();
    addList();
    auto* keyRow = new QHBoxLayout;
    keyRow->addWidget(m_key);
    auto* noKey = new QToolButton(m_details);
    noKey->setObjectName(QStringLiteral("noKey"));
    noKey->setText(tr("None"));
    keyRow->addWidget(noKey);
    m_form->setContentsMargins(0, 0, 0, 0);
    m_form->addRow(tr("Value"), m_mode);
    m_form->addRow(QString(), m_value);
    m_form->addRow(m_numbers);
    m_form->addRow(m_list);
    m_form->addRow(tr("Key"), keyRow);
    m_problem->setWordWrap(true);
    m_problem->setTextFormat(Qt::PlainText);
    QPalette palette = m_problem->palette();
    palette.setColor(QPalette::WindowText, Qt::red);
    m_problem->setPalette(palette);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_kind);
    layout->addWidget(m_details);
    layout->addWidget(m_problem);
    connect(noKey, &QToolButton::clicked, this, [this] {
        m_key->clear();
        take();
    });
    connect(m_key, &QKeySequenceEdit::editingFinished, this, &OperationEditor::take);
    fill();
}

OperationEditor::~OperationEditor() = default;

void OperationEditor::addChoices()
{
    m_kind->setObjectName(QStringLiteral("kind"));
    m_mode->setObjectName(QStringLiteral("mode"));
    m_value->setObjectName(QStringLiteral("value"));
    m_key->setObjectName(QStringLiteral("key"));
    m_problem->setObjectName(QStringLiteral("problem"));
    using Kind = Operation::Kind;
    m_kind->addItem(tr("No command"), noKind);
    for (const auto& [kind, text] :
         {std::pair(Kind::Select, tr("Select")), std::pair(Kind::Operate, tr("Operate")),
          std::pair(Kind::SetPoint, tr("Set a set point")), std::pair(Kind::Raise, tr("Raise")),
          std::pair(Kind::Lower, tr("Lower")), std::pair(Kind::EnterValue, tr("Enter a value by hand"))})
        m_kind->addItem(text, static_cast<int>(kind));
    m_mode->addItems({tr("is fixed"), tr("is entered"), tr("is entered within limits"), tr("is chosen from a list")});
    connect(m_kind, qOverload<int>(&QComboBox::activated), this, &OperationEditor::chooseKind);
    connect(m_mode, qOverload<int>(&QComboBox::activated), this, [this] {
        showParts();
        take();
    });
}

// Numbers as programs write them, whatever the locale: as the page file has them.
QLineEdit* OperationEditor::makeNumber()
{
    auto* number = new QLineEdit(QStringLiteral("0"), m_details);
    auto* validator = new QDoubleValidator(number);
    validator->setLocale(QLocale::c());
    number->setValidator(validator);
    connect(number, &QLineEdit::editingFinished, this, &OperationEditor::take);
    return number;
}

void OperationEditor::addNumbers()
{
    m_minimum->setObjectName(QStringLiteral("minimum"));
    m_maximum->setObjectName(QStringLiteral("maximum"));
    m_step->setObjectName(QStringLiteral("step"));
    m_decimals->setObjectName(QStringLiteral("decimals"));
    m_usesScale->setObjectName(QStringLiteral("usesScale"));
    m_scale->setObjectName(QStringLiteral("scale"));
    m_decimals->setRange(0, mostDecimals);
    m_usesScale->setToolTip(tr("What is sent is what was entered times this."));
    auto* form = new QFormLayout(m_numbers);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(tr("From"), m_minimum);
    form->addRow(tr("To"), m_maximum);
    form->addRow(tr("Step"), m_step);
    form->addRow(tr("Decimals"), m_decimals);
    form->addRow(m_usesScale, m_scale);
    connect(m_decimals, qOverload<int>(&QSpinBox::valueChanged), this, &OperationEditor::take);
    connect(m_usesScale, &QCheckBox::toggled, this, &OperationEditor::take);
    connect(m_usesScale, &QCheckBox::toggled, m_scale, &QWidget::setEnabled);
}

void OperationEditor::addList()
{
    m_listed->setObjectName(QStringLiteral("listed"));
    m_listed->setHorizontalHeaderLabels({tr("Text"), tr("Value")});
    m_listed->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_listed->verticalHeader()->hide();
    m_listed->setMinimumHeight(110);
    auto* add = new QPushButton(tr("Add"), m_list);
    add->setObjectName(QStringLiteral("add"));
    auto* remove = new QPushButton(tr("Remove"), m_list);
    remove->setObjectName(QStringLiteral("remove"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(add);
    buttons->addWidget(remove);
    auto* layout = new QVBoxLayout(m_list);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_listed);
    layout->addLayout(buttons);
    connect(add, &QPushButton::clicked, this, &OperationEditor::addListed);
    connect(remove, &QPushButton::clicked, this, &OperationEditor::removeListed);
    connect(m_listed, &QTableWidget::cellChanged, this, &OperationEditor::take);
}

void OperationEditor::showShape(DesignDocument* document, Shape* shape)
{
    if (m_document)
        m_document->disconnect(this);
    if (m_document != document) {
        if (m_tag)
            m_form->removeRow(m_tag);
        m_tag = nullptr;
    }
    m_document = document;
    m_shape = shape;
    if (document) {
        if (!m_tag)
            addTag();
        connect(document, &DesignDocument::operationChanged, this, [this](const Shape* changed) {
            if (changed == m_shape)
                fill();
        });
    }
    fill();
}

void OperationEditor::addTag()
{
    m_tag = new TagField(m_document->database(), m_details);
    m_form->insertRow(0, tr("Object"), m_tag);
    connect(m_tag, &TagField::taken, this, &OperationEditor::take);
}

void OperationEditor::commit()
{
    if (!m_shape)
        return;
    m_tag->commit();
    take();
}

// Lines that already say what the document has stay as they are, with the cursor in them.
void OperationEditor::fill()
{
    setEnabled(m_shape && DesignDocument::canHaveScripts(m_shape));
    const Operation* operation = m_shape ? m_document->operation(*m_shape) : nullptr;
    const std::optional<Operation> shown = m_shape && m_tag ? edited() : std::nullopt;
    if (operation && shown && shown->isEqual(*operation)) {
        showParts();
        return;
    }
    m_isFilling = true;
    const Operation held = operation ? *operation : Operation();
    m_kind->setCurrentIndex(operation ? m_kind->findData(static_cast<int>(held.kind)) : 0);
    if (m_tag)
        m_tag->setTag(held.tag);
    m_mode->setCurrentIndex(held.value                    ? FixedValue
                            : held.input.enumInputParam   ? ListedValue
                            : held.input.numberInputParam ? NumberWithin
                                                          : AnyNumber);
    m_value->setText(numberText(held.value.value_or(0)));
    showNumbers(held.input.numberInputParam ? *held.input.numberInputParam : NumberInputParam());
    showList(held.input.enumInputParam ? *held.input.enumInputParam : EnumInputParam());
    m_key->setKeySequence(QKeySequence(held.key, QKeySequence::PortableText));
    m_isFilling = false;
    showParts();
}

void OperationEditor::showNumbers(const NumberInputParam& number)
{
    m_minimum->setText(numberText(number.minValue));
    m_maximum->setText(numberText(number.maxValue));
    m_step->setText(numberText(number.singleStep));
    m_decimals->setValue(number.decimals);
    m_usesScale->setChecked(number.useScale);
    m_scale->setText(numberText(number.scale));
    m_scale->setEnabled(number.useScale);
}

void OperationEditor::showList(const EnumInputParam& list)
{
    m_listed->setRowCount(0);
    for (const auto& [text, value] : list.enumValues) {
        const int row = m_listed->rowCount();
        m_listed->insertRow(row);
        m_listed->setItem(row, 0, new QTableWidgetItem(text));
        m_listed->setItem(row, 1, new QTableWidgetItem(numberText(value)));
    }
}

void OperationEditor::showParts()
{
    const int kind = m_kind->currentData().toInt();
    const bool hasValue = kind != noKind && Operation::hasValue(static_cast<Operation::Kind>(kind));
    m_details->setVisible(kind != noKind);
    const int mode = m_mode->currentIndex();
    m_mode->setVisible(hasValue);
    m_form->labelForField(m_mode)->setVisible(hasValue);
    m_value->setVisible(hasValue && mode == FixedValue);
    m_numbers->setVisible(hasValue && mode == NumberWithin);
    m_list->setVisible(hasValue && mode == ListedValue);
    showProblem();
}

void OperationEditor::showProblem()
{
    QString problem;
    if (const std::optional<Operation> operation = m_shape ? edited() : std::nullopt)
        problem = unfinished().isEmpty() ? doubtful(*operation) : unfinished();
    m_problem->setText(problem);
    m_problem->setVisible(!problem.isEmpty());
}

// Why what stands there can't be taken yet; empty when it can.
QString OperationEditor::unfinished() const
{
    if (m_tag->tag().isEmpty())
        return tr("Name the object that the command goes to.");
    for (const QLineEdit* number : {m_value, m_minimum, m_maximum, m_step, m_scale}) {
        if (!number->hasAcceptableInput())
            return tr("\"%1\" is no number.").arg(number->text());
    }
    for (int row = 0; row < m_listed->rowCount(); ++row) {
        bool isNumber = false;
        const QString text = m_listed->item(row, 1)->text();
        text.toDouble(&isNumber);
        if (!isNumber)
            return tr("\"%1\" is no number.").arg(text);
    }
    return {};
}

QString OperationEditor::doubtful(const Operation& operation) const
{
    const auto& number = operation.input.numberInputParam;
    if (m_mode->currentIndex() == NumberWithin && number && number->minValue > number->maxValue)
        return tr("The lower limit lies above the upper one.");
    for (const auto& [shape, other] : m_document->page().operations.all()) {
        if (shape != m_shape && !other.key.isEmpty() && other.key == operation.key)
            return tr("Another shape has this key: %1.").arg(shape->name());
    }
    return {};
}

// The command goes to what the shape shows unless another object is named.
void OperationEditor::chooseKind()
{
    if (m_kind->currentData().toInt() != noKind && m_tag->tag().isEmpty())
        m_tag->setTag(m_document->boundObjects(*m_shape).value(0));
    showParts();
    take();
}

void OperationEditor::addListed()
{
    const int row = m_listed->rowCount();
    m_isFilling = true;
    m_listed->insertRow(row);
    m_listed->setItem(row, 0, new QTableWidgetItem(tr("State %1").arg(row)));
    m_listed->setItem(row, 1, new QTableWidgetItem(numberText(row)));
    m_isFilling = false;
    m_listed->setCurrentCell(row, 0);
    take();
}

void OperationEditor::removeListed()
{
    m_listed->removeRow(m_listed->currentRow());
    take();
}

NumberInputParam OperationEditor::editedNumber() const
{
    NumberInputParam number;
    number.minValue = m_minimum->text().toDouble();
    number.maxValue = m_maximum->text().toDouble();
    number.singleStep = m_step->text().toDouble();
    number.decimals = static_cast<qint8>(m_decimals->value());
    number.useScale = m_usesScale->isChecked();
    number.scale = m_scale->text().toDouble();
    return number;
}

EnumInputParam OperationEditor::editedList() const
{
    EnumInputParam list;
    for (int row = 0; row < m_listed->rowCount(); ++row)
        list.enumValues.append({m_listed->item(row, 0)->text(), m_listed->item(row, 1)->text().toDouble()});
    return list;
}

// What this editor has no line for stays as the document has it.
std::optional<Operation> OperationEditor::edited() const
{
    const int kind = m_kind->currentData().toInt();
    if (kind == noKind)
        return {};
    const Operation* held = m_document->operation(*m_shape);
    Operation operation = held ? *held : Operation();
    operation.kind = static_cast<Operation::Kind>(kind);
    operation.tag = m_tag->tag();
    operation.key = keyText(m_key->keySequence());
    const int mode = m_mode->currentIndex();
    operation.value = mode == FixedValue ? std::optional(m_value->text().toDouble()) : std::nullopt;
    if (mode == AnyNumber)
        operation.input = {};
    if (mode == NumberWithin) {
        operation.input.enumInputParam = nullptr;
        operation.input.setNumberInputParam(editedNumber());
    }
    if (mode == ListedValue)
        operation.input.setEnumInputParam(editedList());
    if (!Operation::hasValue(operation.kind)) {
        operation.value.reset();
        operation.input = {};
    }
    return operation;
}

void OperationEditor::take()
{
    if (m_isFilling || !m_shape)
        return;
    const std::optional<Operation> operation = edited();
    showProblem();
    if (!operation || unfinished().isEmpty())
        m_document->setOperation(*m_shape, operation);
}
