#include "host/operating/operatorinputdialog.h"

#include "host/operating/commandtext.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

using Choices = QList<QPair<QString, double>>;

constexpr double farthest = 1e12;
constexpr int mostDecimals = 15;
constexpr int usualDecimals = 3;
constexpr int longestReason = 500;

Choices statesOf(const RuntimeDatabase::Object& object)
{
    Choices choices;
    const int count = std::max(object.states.size(), 2);
    for (int state = 0; state < count; ++state) {
        const QString name = object.states.value(state);
        choices.append({name.isEmpty() ? QString::number(state) : name, double(state)});
    }
    return choices;
}

/// What the page says of the number, or what the point does where the page is silent.
NumberInputParam numberOf(const RuntimeDatabase::Object& object, const InputInfoParam& input)
{
    if (input.numberInputParam && !input.numberInputParam->isEmpty())
        return *input.numberInputParam;
    NumberInputParam number;
    number.minValue = std::isnan(object.control.low) ? -farthest : object.control.low;
    number.maxValue = std::isnan(object.control.high) ? farthest : object.control.high;
    number.decimals = static_cast<qint8>(object.decimals < 0 ? usualDecimals : object.decimals);
    number.singleStep = object.control.step;
    return number;
}

} // namespace

OperatorInputDialog::OperatorInputDialog(const RuntimeDatabase::Object& object, const Question& question,
                                         QWidget* parent)
    : QDialog(parent), m_isReasonNeeded(question.isReasonNeeded)
{
    setObjectName(QStringLiteral("OperatorInputDialog"));
    setWindowTitle(tr("Command"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* column = new QVBoxLayout(this);
    auto* command = new QLabel(question.command, this);
    command->setTextFormat(Qt::PlainText);
    command->setWordWrap(true);
    QFont font = command->font();
    font.setBold(true);
    command->setFont(font);
    column->addWidget(command);
    auto* form = new QFormLayout;
    column->addLayout(form);
    if (question.isValueNeeded) {
        if (question.present.isValid())
            form->addRow(tr("Present value:"), new QLabel(CommandText::valueText(object, question.present), this));
        const bool isAnalog = object.type == Korvane::ScadaObjectType::AnalogPoint;
        if (question.input.enumInputParam && !question.input.enumInputParam->isEmpty())
            addChoice(*form, question.input.enumInputParam->enumValues, question.present);
        else if (!isAnalog && !question.input.numberInputParam)
            addChoice(*form, statesOf(object), question.present);
        else
            addNumber(*form, object, question);
    }
    if (m_isReasonNeeded) {
        m_reason = new QLineEdit(this);
        m_reason->setObjectName(QStringLiteral("reason"));
        m_reason->setMaxLength(longestReason);
        connect(m_reason, &QLineEdit::textChanged, this, &OperatorInputDialog::enableOk);
        form->addRow(tr("&Reason:"), m_reason);
    }
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    column->addWidget(m_buttons);
    enableOk();
}

OperatorInputDialog::~OperatorInputDialog() = default;

void OperatorInputDialog::addNumber(QFormLayout& form, const RuntimeDatabase::Object& object, const Question& question)
{
    const NumberInputParam number = numberOf(object, question.input);
    if (number.useScale && number.scale != 0)
        m_scale = number.scale;
    m_number = new QDoubleSpinBox(this);
    m_number->setObjectName(QStringLiteral("number"));
    m_number->setDecimals(std::clamp<int>(number.decimals, 0, mostDecimals));
    // A page that states its limits in the wrong order means the numbers between them all the same.
    m_number->setRange(std::min(number.minValue, number.maxValue), std::max(number.minValue, number.maxValue));
    m_number->setSingleStep(number.singleStep > 0 ? number.singleStep : std::pow(10.0, -m_number->decimals()));
    m_number->setSuffix(m_scale == 1 && !object.unit.isEmpty() ? QLatin1Char(' ') + object.unit : QString());
    m_number->setMinimumWidth(fontMetrics().averageCharWidth() * 20);
    m_number->setValue(question.present.toDouble() / m_scale);
    m_number->selectAll();
    // Where nothing is known, what stands there is not what anybody meant.
    m_isNumberMeant = question.present.isValid();
    connect(m_number->findChild<QLineEdit*>(), &QLineEdit::textEdited, this, [this] {
        m_isNumberMeant = true;
        enableOk();
    });
    connect(m_number, qOverload<double>(&QDoubleSpinBox::valueChanged), this, [this] {
        m_isNumberMeant = true;
        enableOk();
    });
    form.addRow(tr("&Value:"), m_number);
    if (std::abs(number.minValue) < farthest && std::abs(number.maxValue) < farthest) {
        form.addRow(tr("Limits:"), new QLabel(tr("%1 to %2", "limits of a number")
                                                  .arg(m_number->textFromValue(m_number->minimum()),
                                                       m_number->textFromValue(m_number->maximum())),
                                              this));
    }
}

void OperatorInputDialog::addChoice(QFormLayout& form, const Choices& choices, const QVariant& present)
{
    m_choice = new QComboBox(this);
    m_choice->setObjectName(QStringLiteral("choice"));
    for (const auto& [name, value] : choices)
        m_choice->addItem(name, value);
    m_choice->setCurrentIndex(present.isValid() ? m_choice->findData(present.toDouble()) : -1);
    connect(m_choice, qOverload<int>(&QComboBox::currentIndexChanged), this, &OperatorInputDialog::enableOk);
    form.addRow(tr("&Value:"), m_choice);
}

void OperatorInputDialog::enableOk()
{
    if (!m_buttons)
        return;
    const bool hasReason = !m_isReasonNeeded || !reason().isEmpty();
    const bool hasValue = m_choice ? m_choice->currentIndex() >= 0 : !m_number || m_isNumberMeant;
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(hasReason && hasValue);
}

double OperatorInputDialog::value() const
{
    if (m_number)
        return m_number->value() * m_scale;
    return m_choice ? m_choice->currentData().toDouble() : 0;
}

QString OperatorInputDialog::reason() const
{
    return m_reason ? m_reason->text().trimmed() : QString();
}
