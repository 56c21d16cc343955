#include "dialogues/families.hpp"
#include "dialogues/interface_change.hpp"
#include "dialogues/shared.hpp"

#include <iterator>

namespace telvox {

namespace dialogues {
namespace {

/// The module passes all bytes through to its network peer until the escape; then it tells what it is.
constexpr Step escape(milliseconds wait) {
    return {.status = "Ethernet-Verbindung trennen", .send = "+++", .as = Write::raw, .wait = wait};
}
constexpr const char *identified = "ETHERNET";
constexpr std::array<Step, 2> opening(milliseconds wait, FlagOf awaits) {
    return {escape(wait), ask("ATI0", "Verbindung wird hergestellt", wait, awaits, {identified}, 1000ms)};
}

/// New addresses are in force only after a restart, which the module does not answer.
constexpr Step restart = {.status = "Reset durchführen",
                          .send = "AT#RESET",
                          .changes_device = true,
                          .end = End::drop,
                          .message = "Das Ethernet-Modem wurde erfolgreich parametriert."};

constexpr auto set_address =
    script(opening(2500ms, &JobState::boolKommunikations_Fehler61),
           tell({"AT#IP=", value<&JobValues::str_IP>}, "IP einstellen", 2500ms),
           tell({"AT#PORT=", value<&JobValues::str_Port>}, "Port einstellen", 2500ms), restart);

constexpr auto set_gateway =
    script(opening(2200ms, &JobState::boolKommunikations_Fehler62),
           tell({"AT#GW=", value<&JobValues::str_Gateway>}, "Gateway einstellen", 2200ms),
           tell({"AT#NM=", value<&JobValues::str_Netzmaske>}, "Netzmaske einstellen", 2200ms), restart);

/// The module's command for parity, data bits and stop bits; it knows no other formats.
std::string code_command(const JobContext &c) {
    constexpr const char *formats[] = {"n,8,1", "e,7,1", "o,7,1", "",      "e,7,2",
                                       "o,7,2", "n,7,2", "e,8,1", "o,8,1", "n,8,2"};
    const std::string wanted = format_text(new_format(c));
    for (std::size_t code = 0; code < std::size(formats); ++code)
        if (*formats[code] != 0 && wanted.ends_with(formats[code]))
            return "AT*U" + std::to_string(code);
    return {};
}

constexpr Step unknown_format = {.when = [](const JobContext &c) { return code_command(c).empty(); },
                                 .status = changing_format,
                                 .format = at_new_rate};
std::string rate_command(const JobContext &c) { return "AT*S" + std::to_string(place_of_new_rate(c) + 1); }

/// Rate and format come into force one after the other, and the own port follows each.
constexpr auto change_interface = script(
    escape(2500ms), check_format("ATI0", checking_format, 1s, identified), tell(rate_command, changing_rate),
    unknown_format, in_format(at_new_rate, tell(code_command, changing_format)),
    in_format(in_new_format, save_format), check_new_format("ATI0", identified),
    format_changed("Das Ethernet-Modem wurde erfolgreich parametriert."));

constexpr Job jobs[] = {
    {"Ethernet IP und Port", &JobState::byteEthernet_IP_Counter, set_address},
    {"Ethernet Gateway", &JobState::byteEthernet_Gateway_Counter, set_gateway},
    {"Ethernet Schnittstelle", &JobState::byteSchnittstellenaenderung_Counter, change_interface},
};

} // namespace
} // namespace dialogues

constexpr Family ethernet_family{.name = "Ethernet", .jobs = dialogues::jobs};

} // namespace telvox
