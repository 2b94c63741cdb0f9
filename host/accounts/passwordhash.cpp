#include "host/accounts/passwordhash_p.h"

#include "host/accounts/accountdatabase.h"

#include <QCoreApplication>

#include <sodium.h>

#include <array>
#include <cerrno>

namespace {

/// A password's bytes, which are overwritten when they are no longer needed.
class PasswordBytes
{
public:
    explicit PasswordBytes(const QString& password)
    {
        // Composing makes nothing shorter than a quarter: what is longer is too long in any form.
        if (password.size() > 4 * AccountDatabase::longestPassword) {
            m_isTooLong = true;
            return;
        }
        QString composed = password.normalized(QString::NormalizationForm_C);
        m_bytes = composed.toUtf8();
        if (composed.constData() != password.constData())
            sodium_memzero(composed.data(), std::size_t(composed.size()) * sizeof(QChar));
        m_isTooLong = m_bytes.size() > AccountDatabase::longestPassword;
    }
    ~PasswordBytes() { sodium_memzero(m_bytes.data(), std::size_t(m_bytes.size())); }
    Q_DISABLE_COPY(PasswordBytes)

    bool isTooLong() const { return m_isTooLong; }
    int size() const { return m_bytes.size(); }
    const char* data() const { return m_bytes.constData(); }

private:
    QByteArray m_bytes;
    bool m_isTooLong = false;
};

QString translated(const char* text)
{
    return QCoreApplication::translate("PasswordHash", text);
}

tl::expected<void, QString> start()
{
    static const int result = sodium_init();
    if (result < 0)
        return tl::make_unexpected(translated(QT_TRANSLATE_NOOP("PasswordHash", "libsodium could not be started")));
    return {};
}

tl::unexpected<QString> noMemory()
{
    return tl::make_unexpected(
        translated(QT_TRANSLATE_NOOP("PasswordHash", "there is too little memory to check a password")));
}

QByteArray randomBase64(std::size_t bytes)
{
    std::array<unsigned char, 64> random{};
    std::array<char, 128> text{};
    Q_ASSERT(bytes <= random.size());
    randombytes_buf(random.data(), bytes);
    sodium_bin2base64(text.data(), text.size(), random.data(), bytes, sodium_base64_VARIANT_ORIGINAL_NO_PADDING);
    return text.data();
}

} // namespace

namespace PasswordHash {

Length lengthOf(const QString& password)
{
    const PasswordBytes bytes(password);
    if (bytes.isTooLong())
        return Length::TooLong;
    return bytes.size() < AccountDatabase::shortestPassword ? Length::TooShort : Length::Good;
}

tl::expected<QByteArray, QString> make(const QString& password)
{
    if (const auto started = start(); !started)
        return tl::make_unexpected(started.error());
    const PasswordBytes bytes(password);
    Q_ASSERT(!bytes.isTooLong());
    std::array<char, crypto_pwhash_STRBYTES> text{};
    if (crypto_pwhash_str(text.data(), bytes.data(), static_cast<unsigned long long>(bytes.size()),
                          crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0)
        return noMemory();
    return QByteArray(text.data());
}

tl::expected<bool, QString> verify(const QByteArray& hash, const QString& password)
{
    if (const auto started = start(); !started)
        return tl::make_unexpected(started.error());
    const PasswordBytes bytes(password);
    if (bytes.isTooLong() || hash.size() >= int(crypto_pwhash_STRBYTES))
        return false;
    errno = 0;
    if (crypto_pwhash_str_verify(hash.constData(), bytes.data(), static_cast<unsigned long long>(bytes.size())) == 0)
        return true;
    if (errno == ENOMEM)
        return noMemory();
    return false;
}

QByteArray ofNobody()
{
    constexpr std::size_t saltBytes = 16;
    constexpr std::size_t hashBytes = 32;
    return QByteArrayLiteral("$argon2id$v=19$m=") + QByteArray::number(crypto_pwhash_MEMLIMIT_INTERACTIVE / 1024U) +
           ",t=" + QByteArray::number(crypto_pwhash_OPSLIMIT_INTERACTIVE) + ",p=1$" + randomBase64(saltBytes) + '$' +
           randomBase64(hashBytes);
}

} // namespace PasswordHash
