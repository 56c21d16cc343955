#include "dialogues/families.hpp"
#include "dialogues/shared.hpp"

namespace telvox {

namespace dialogues {
namespace {

/// The module passes all bytes through to its network peer until the escape; then it tells what it is.
constexpr std::array<Step, 2> opening(milliseconds wait, FlagOf awaits) {
    return {{{.number = 1,
              .status = "Ethernet-Verbindung trennen",
              .send = "+++",
              .as = Write::raw,
              .wait = wait,
              .next = 2},
             {.number = 2,
              .status = "Verbindung wird hergestellt",
              .send = "ATI0",
              .wait = wait,
              .awaits = awaits}}};
}

constexpr Step write(Counter number, const char *status, RowText send, milliseconds wait) {
    return {.number = number,
            .status = status,
            .send = send,
            .wait = wait,
            .next = static_cast<Counter>(number + 1)};
}

/// New addresses are in force only after a restart, which the module does not answer.
constexpr Step restart = {.number = 5,
                          .status = "Reset durchführen",
                          .send = "AT#RESET",
                          .end = End::drop,
                          .message = "Das Ethernet-Modem wurde erfolgreich parametriert."};

constexpr auto set_address =
    table(opening(2500ms, &JobState::boolKommunikations_Fehler61),
          write(
              3, "IP einstellen", [](const Desk &d) { return "AT#IP=" + d.session.str_IP; }, 2500ms),
          write(
              4, "Port einstellen", [](const Desk &d) { return "AT#PORT=" + d.session.str_Port; }, 2500ms),
          restart);

constexpr auto set_gateway = table(
    opening(2200ms, &JobState::boolKommunikations_Fehler62),
    write(
        3, "Gateway einstellen", [](const Desk &d) { return "AT#GW=" + d.session.str_Gateway; }, 2200ms),
    write(
        4, "Netzmaske einstellen", [](const Desk &d) { return "AT#NM=" + d.session.str_Netzmaske; }, 2200ms),
    restart);

constexpr Job jobs[] = {
    {"Ethernet IP und Port", &JobState::byteEthernet_IP_Counter, set_address},
    {"Ethernet Gateway", &JobState::byteEthernet_Gateway_Counter, set_gateway},
};

constexpr Reply identified(FlagOf awaited, CounterOf counter) {
    return {.contains = "ETHERNET", .awaited = awaited, .counter = counter, .becomes = 3, .restart = 1000ms};
}

constexpr Reply replies[] = {
    identified(&JobState::boolKommunikations_Fehler61, &JobState::byteEthernet_IP_Counter),
    identified(&JobState::boolKommunikations_Fehler62, &JobState::byteEthernet_Gateway_Counter),
};

} // namespace
} // namespace dialogues

constexpr Family ethernet_family{"Ethernet", dialogues::jobs, dialogues::replies};

} // namespace telvox
