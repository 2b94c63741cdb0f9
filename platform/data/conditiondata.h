#pragma once

#include <QString>

namespace Korvane {

/// Comparison of a condition. The numbers stand in stored pages; a stored condition can hold any other number, which
/// then compares as false.
enum class OpType : qint32 {
    Equal = 0,
    Less = 1,
    LessOrEqual = 2,
    Greater = 3,
    GreaterOrEqual = 4,
    NotEqual = 5,
};

/// How a condition joins the next one. The numbers stand in stored pages.
enum class LogicType : qint32 {
    None = 0, ///< the last of a chain
    And = 1,
    Or = 2,
};

} // namespace Korvane

/// What a condition is built from: texts as an engineer typed them.
struct ConditionData
{
    QString leftTag;   ///< tag string of the value tested
    QString rightText; ///< the bound, in practice a number
    Korvane::OpType operation = Korvane::OpType::Equal;
    Korvane::LogicType logic = Korvane::LogicType::None;
};
