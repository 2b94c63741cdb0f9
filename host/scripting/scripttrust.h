#pragma once

#include "host/hostexport.h"

#include <QString>

/// Which project folders the user lets run scripts: a script can do whatever its user can. Asked once for each folder and
/// kept in the user's settings, for all programs of this product.
namespace ScriptTrust {

enum class Answer { NotAsked, Trusted, Refused };

/// \param folder compared by its real path; one that does not exist was not asked for
KORVANE_HOST_EXPORT Answer answerFor(const QString& folder);
/// NotAsked forgets the answer.
/// \returns false when it could not be kept.
KORVANE_HOST_EXPORT bool setAnswer(const QString& folder, Answer answer);

} // namespace ScriptTrust
