#pragma once

#include "core/serial_format.hpp"
#include "dialogues/shared.hpp"

#include <algorithm>
#include <string>

/// What the changes of the devices' own serial format share. The device is told in the present format and is
/// checked in the new one; where between them the own port follows is each family's matter.
namespace telvox::dialogues {

inline SerialFormat new_format(const Desk &desk) {
    return parse_format(desk.session.strCOMparameter_gewuenscht).value_or(SerialFormat{});
}

// Formats of the own port.
inline std::string in_new_format(const Desk &desk) { return desk.session.strCOMparameter_gewuenscht; }
/// For a device that changes its rate at once and the rest of its format later.
inline std::string at_new_rate(const Desk &desk) {
    SerialFormat format = parse_format(desk.session.strCOMparameter_direkt).value_or(SerialFormat{});
    format.baud = new_format(desk).baud;
    return format_text(format);
}

/// Place of the new rate among the rates of the devices, from 0.
inline int place_of_new_rate(const Desk &desk) {
    const auto place = std::find(device_rates.begin(), device_rates.end(), new_format(desk).baud);
    return static_cast<int>(place - device_rates.begin());
}

// The mobile devices' commands.
inline std::string baud_command(const Desk &desk) {
    return "AT**BAUD=" + std::to_string(new_format(desk).baud);
}
inline std::string format_command(const Desk &desk) {
    const SerialFormat format = new_format(desk);
    return "AT**FORMAT=" + std::to_string(format.data_bits) + format.parity +
           std::to_string(format.stop_bits);
}

inline constexpr const char *changing_rate = "Baudrate umstellen";
inline constexpr const char *changing_format = "Datenformat umstellen";
inline constexpr const char *checking_format = "Verbindung prüfen";

constexpr Step change(Counter number, const char *status, RowText send, RowText format = {}) {
    Step step = command(number, status, send);
    step.format = format;
    return step;
}
constexpr Step save_format(Counter number, RowText format = {}) {
    return change(number, "speichern", "AT&W", format);
}
constexpr Step check_new_format(Counter number, const char *command, RowText format = {}) {
    return {.number = number,
            .status = checking_format,
            .format = format,
            .send = command,
            .awaits = &JobState::boolKommunikations_Fehler77};
}
/// The device has answered in the new format, which the next job speaks.
constexpr Step format_changed(Counter number, const char *message) {
    return {.number = number,
            .act =
                [](Desk &d) {
                    d.session.strCOMparameter_direkt = d.session.strCOMparameter_gewuenscht;
                    d.frmEinstellungen.device_changed();
                },
            .end = End::drop,
            .message = message};
}

/// What a device says of itself moves the change on, after the interval that stands.
constexpr Reply change_reply(const char *text, FlagOf awaited, Counter becomes) {
    return {.contains = text,
            .awaited = awaited,
            .during = &JobState::boolUART_umstellen,
            .at = {&JobState::byteSchnittstellenaenderung_Counter, 0},
            .counter = &JobState::byteSchnittstellenaenderung_Counter,
            .becomes = becomes};
}

} // namespace telvox::dialogues
