#include "dialogues/families.hpp"

namespace telvox {

namespace dialogues {
namespace {

constexpr const char *login = "tovri"; ///< the module's user name, and its password

constexpr Prompt user = {.contains = "Username",
                         .unless = &TelnetState::user_sent,
                         .sets = &TelnetState::user_sent,
                         .send = login};

/// The module's prompt for a command is "AT", and "OK" is how it takes one.
constexpr Prompt gateway[] = {
    user,
    {.contains = "Password",
     .unless = &TelnetState::password_sent,
     .sets = &TelnetState::password_sent,
     .send = login},
    {.contains = "OK",
     .given = &TelnetState::gateway_confirmed,
     .unless = &TelnetState::netmask_confirmed,
     .sets = &TelnetState::netmask_confirmed},
    {.contains = "OK",
     .given = &TelnetState::gateway_sent,
     .unless = &TelnetState::gateway_confirmed,
     .sets = &TelnetState::gateway_confirmed},
    {.contains = "AT",
     .unless = &TelnetState::gateway_sent,
     .sets = &TelnetState::gateway_sent,
     .send = "#GW=",
     .value = &TelnetValues::gateway},
    {.contains = "AT",
     .given = &TelnetState::gateway_confirmed,
     .unless = &TelnetState::netmask_sent,
     .sets = &TelnetState::netmask_sent,
     .send = "#NM=",
     .value = &TelnetValues::netmask},
    {.contains = "AT",
     .given = &TelnetState::netmask_confirmed,
     .sets = &TelnetState::reset_sent,
     .send = "#RESET"},
};

/// An "OK" before the address was sent says nothing of it; it is told again at each prompt until then.
constexpr Prompt address[] = {
    user,
    {.contains = "Password",
     .unless = &TelnetState::password_sent,
     .sets = &TelnetState::password_sent,
     .send = login},
    {.contains = "OK",
     .given = &TelnetState::address_sent,
     .unless = &TelnetState::address_confirmed,
     .sets = &TelnetState::address_confirmed},
    {.contains = "AT",
     .given = &TelnetState::address_confirmed,
     .sets = &TelnetState::reset_sent,
     .send = "#RESET"},
    {.contains = "AT",
     .unless = &TelnetState::address_confirmed,
     .sets = &TelnetState::address_sent,
     .send = "#IP=",
     .value = &TelnetValues::address},
};

} // namespace
} // namespace dialogues

constexpr TelnetDialogues ethernet_dialogues{dialogues::gateway, dialogues::address};

} // namespace telvox
