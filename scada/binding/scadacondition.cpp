#include "scada/binding/scadacondition.h"

#include "platform/data/datafieldinfo.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/scadatagactionstream.h"
#include "platform/data/tagresolution.h"

#include <QDataStream>

namespace {

using Korvane::LogicType;
using Korvane::OpType;

// Layouts of the right value by version. Versions are compared as signed numbers, as old readers did.
constexpr qint32 firstFloatBoundVersion = 608;
constexpr qint32 firstTargetBoundVersion = 817;

/// Kept in single precision: bounds of old pages are stored so, and a live 0.1 must equal them.
float comparable(const QVariant& value)
{
    return static_cast<float>(value.toDouble());
}

} // namespace

ScadaCondition::ScadaCondition() = default;

ScadaCondition::ScadaCondition(const ConditionData& data) : m_operator(data.operation), m_logic(data.logic)
{
    m_left.m_tagString = data.leftTag;
    m_right.m_tagString = data.rightText;
}

// Kept: the targets are assigned, not copied, so a copied condition shares no logging description.
ScadaCondition::ScadaCondition(const ScadaCondition& other) : m_operator(other.m_operator), m_logic(other.m_logic)
{
    m_right = other.m_right;
    m_left = other.m_left;
}

ScadaCondition& ScadaCondition::operator=(const ScadaCondition& other) = default;

ScadaCondition::~ScadaCondition() = default;

void ScadaCondition::setRValueString(const QString& text)
{
    m_right.m_tagString = text;
}

QString ScadaCondition::opString() const
{
    switch (m_operator) {
    case OpType::Equal:
        return QStringLiteral("==");
    case OpType::Less:
        return QStringLiteral("<");
    case OpType::LessOrEqual:
        return QStringLiteral("<=");
    case OpType::Greater:
        return QStringLiteral(">");
    case OpType::GreaterOrEqual:
        return QStringLiteral(">=");
    case OpType::NotEqual:
        return QStringLiteral("!=");
    }
    return {};
}

QString ScadaCondition::logicString() const
{
    switch (m_logic) {
    case LogicType::And:
        return QStringLiteral("&&");
    case LogicType::Or:
        return QStringLiteral("||");
    case LogicType::None:
        break;
    }
    return {};
}

bool ScadaCondition::checkCondition() const
{
    if (!m_left.value().isValid() && !m_right.value().isValid())
        return false;
    const float left = comparable(m_left.value());
    const float right = comparable(m_right.value());
    switch (m_operator) {
    case OpType::Equal:
        return left == right;
    case OpType::Less:
        return left < right;
    case OpType::LessOrEqual:
        return left <= right;
    case OpType::Greater:
        return left > right;
    case OpType::GreaterOrEqual:
        return left >= right;
    case OpType::NotEqual:
        return left != right;
    }
    return false;
}

QString ScadaCondition::displayString(bool withLogic) const
{
    if (m_left.m_tagString.isEmpty())
        return {};
    // Filled in one go, so that a "%1" in a tag string stays text.
    const QString comparison = QStringLiteral("%1 %2 %3").arg(m_left.m_tagString, opString(), m_right.m_tagString);
    return withLogic ? comparison + QLatin1Char(' ') + logicString() : comparison;
}

QMap<QString, QVariant> ScadaCondition::toMap() const
{
    const Korvane::DataLinkInfo link = Korvane::quickResolveFromString(m_left.m_tagString);
    return {
        {QStringLiteral("logicalType"), static_cast<int>(m_logic)},
        {QStringLiteral("oper"), static_cast<int>(m_operator)},
        {QStringLiteral("pname"), m_left.m_tagString},
        {QStringLiteral("value"), m_right.m_tagString.toDouble()},
        {QStringLiteral("dtfield"), static_cast<int>(Korvane::dtStringToCode(link.field))},
    };
}

void ScadaCondition::toStream(QDataStream& stream, ScadaTagActionStream& actionStream) const
{
    Q_UNUSED(actionStream) // every version is written in the one layout of today
    stream << static_cast<qint8>(m_logic) << static_cast<qint8>(m_operator);
    m_right.toStream(stream);
    m_left.toStream(stream);
}

void ScadaCondition::fromStream(QDataStream& stream, const ScadaTagActionStream& actionStream)
{
    qint8 logic = 0;
    qint8 operation = 0;
    stream >> logic >> operation;
    m_logic = static_cast<LogicType>(logic);
    m_operator = static_cast<OpType>(operation);

    const auto version = static_cast<qint32>(actionStream.version());
    if (version < firstFloatBoundVersion) {
        double bound = 0;
        stream >> bound;
        m_right.setValue(bound);
        m_right.m_tagString.clear();
        return; // kept: these streams held only the bound, so the left value stays
    }
    if (version < firstTargetBoundVersion) {
        float bound = 0; // as wide in the stream as the stream's own precision says
        stream >> bound;
        m_right.setValue(bound);
        m_right.m_tagString = QString::number(static_cast<double>(bound), 'g', 6);
    } else {
        m_right.fromStream(stream, actionStream);
    }
    m_left.fromStream(stream, actionStream);
}

bool ScadaCondition::isEqual(const ScadaCondition& other) const
{
    return m_operator == other.m_operator && m_logic == other.m_logic && m_right.isEqual(other.m_right) &&
           m_left.isEqual(other.m_left);
}
