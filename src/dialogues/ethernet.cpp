#include "dialogues/families.hpp"
#include "dialogues/interface_change.hpp"
#include "dialogues/shared.hpp"

#include <iterator>

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

/// New addresses are in force only after a restart, which the module does not answer.
constexpr Step restart = {.number = 5,
                          .status = "Reset durchführen",
                          .send = "AT#RESET",
                          .end = End::drop,
                          .message = "Das Ethernet-Modem wurde erfolgreich parametriert."};

constexpr auto set_address =
    table(opening(2500ms, &JobState::boolKommunikations_Fehler61),
          command(
              3, "IP einstellen", [](const Desk &d) { return "AT#IP=" + d.session.str_IP; }, 2500ms),
          command(
              4, "Port einstellen", [](const Desk &d) { return "AT#PORT=" + d.session.str_Port; }, 2500ms),
          restart);

constexpr auto set_gateway = table(
    opening(2200ms, &JobState::boolKommunikations_Fehler62),
    command(
        3, "Gateway einstellen", [](const Desk &d) { return "AT#GW=" + d.session.str_Gateway; }, 2200ms),
    command(
        4, "Netzmaske einstellen", [](const Desk &d) { return "AT#NM=" + d.session.str_Netzmaske; }, 2200ms),
    restart);

/// The module's command for parity, data bits and stop bits; it knows no other formats.
std::string code_command(const Desk &desk) {
    constexpr const char *formats[] = {"n,8,1", "e,7,1", "o,7,1", "",      "e,7,2",
                                       "o,7,2", "n,7,2", "e,8,1", "o,8,1", "n,8,2"};
    const std::string wanted = format_text(new_format(desk));
    for (std::size_t code = 0; code < std::size(formats); ++code)
        if (*formats[code] != 0 && wanted.ends_with(formats[code]))
            return "AT*U" + std::to_string(code);
    return {};
}

/// Rate and format come into force one after the other, and the own port follows each.
constexpr Step change_interface[] = {
    {.number = 1,
     .status = "Ethernet-Verbindung trennen",
     .send = "+++",
     .as = Write::raw,
     .wait = 2500ms,
     .next = 2},
    {.number = 2,
     .status = checking_format,
     .send = "ATI0",
     .wait = 1s,
     .awaits = &JobState::boolKommunikations_Fehler76},
    change(3, changing_rate, [](const Desk &d) { return "AT*S" + std::to_string(place_of_new_rate(d) + 1); }),
    {.number = 4,
     .when = [](const Desk &d) { return code_command(d).empty(); },
     .status = changing_format,
     .format = at_new_rate,
     .next = 5},
    change(4, changing_format, code_command, at_new_rate),
    save_format(5, in_new_format),
    check_new_format(6, "ATI0"),
    format_changed(7, "Das Ethernet-Modem wurde erfolgreich parametriert."),
};

constexpr Job jobs[] = {
    {"Ethernet IP und Port", &JobState::byteEthernet_IP_Counter, set_address},
    {"Ethernet Gateway", &JobState::byteEthernet_Gateway_Counter, set_gateway},
    {"Ethernet Schnittstelle", &JobState::byteSchnittstellenaenderung_Counter, change_interface},
};

constexpr Reply identified(FlagOf awaited, CounterOf counter) {
    return {.contains = "ETHERNET", .awaited = awaited, .counter = counter, .becomes = 3, .restart = 1000ms};
}

constexpr Reply replies[] = {
    change_reply("ETHERNET", &JobState::boolKommunikations_Fehler76, 3),
    change_reply("ETHERNET", &JobState::boolKommunikations_Fehler77, 7),
    identified(&JobState::boolKommunikations_Fehler61, &JobState::byteEthernet_IP_Counter),
    identified(&JobState::boolKommunikations_Fehler62, &JobState::byteEthernet_Gateway_Counter),
};

} // namespace
} // namespace dialogues

constexpr Family ethernet_family{"Ethernet", dialogues::jobs, dialogues::replies};

} // namespace telvox
