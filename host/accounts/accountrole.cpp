#include "host/accounts/accountrole.h"

#include <array>

namespace {

constexpr std::array<const char*, 5> roleNames = {"viewer", "operator", "supervisor", "engineer", "administrator"};

} // namespace

QString accountRoleName(AccountRole role)
{
    return QLatin1String(roleNames[static_cast<std::size_t>(role)]);
}

std::optional<AccountRole> accountRoleOf(const QString& name)
{
    for (std::size_t place = 0; place < roleNames.size(); ++place) {
        if (name == QLatin1String(roleNames[place]))
            return static_cast<AccountRole>(place);
    }
    return std::nullopt;
}
