#pragma once

#include "host/hostexport.h"

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

/// Passwords as Argon2id texts (RFC 9106), with libsodium's limits for interactive use: two passes over 64 MiB, some
/// 60 ms. A password counts in Unicode's normal form C, since keyboards differ in how they compose a letter, and as
/// UTF-8.
namespace PasswordHash {

/// By the limits of AccountDatabase.
enum class Length { Good, TooShort, TooLong };
KORVANE_HOST_EXPORT Length lengthOf(const QString& password);

/// A text with the hash and its random salt.
/// \returns why it could not be made, such as memory that is missing
KORVANE_HOST_EXPORT tl::expected<QByteArray, QString> make(const QString& password);
/// Whether \p hash is that of \p password, compared in constant time; false for a text that is no hash.
/// \returns why it could not be told, such as memory that is missing
KORVANE_HOST_EXPORT tl::expected<bool, QString> verify(const QByteArray& hash, const QString& password);
/// Made up of random numbers, so that no password is known to have it; costs verify() what any other does, and nothing to
/// make.
KORVANE_HOST_EXPORT QByteArray ofNobody();

} // namespace PasswordHash
