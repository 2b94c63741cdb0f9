#include "host/accounts/accountevent.h"

#include <array>

namespace {

// In the order of AccountEvent::Kind; logs keep these words for good.
constexpr std::array<const char*, 9> names = {
    "logOn",       "logOff",      "checkPassword", "addAccount",    "changeAccount",
    "setPassword", "lockAccount", "unlockAccount", "removeAccount",
};

} // namespace

QString AccountEvent::nameOf(Kind kind)
{
    return QLatin1String(names.at(static_cast<std::size_t>(kind)));
}
