#pragma once

#include "core/serial_format.hpp"
#include "dialogues/shared.hpp"

#include <algorithm>
#include <string>

/// What the changes of the devices' own serial format share. The device is told in the present format and is
/// checked in the new one; where between them the own port follows is each family's matter.
namespace telvox::dialogues {

inline SerialFormat new_format(const JobContext &c) {
    return parse_format(c.values.strCOMparameter_gewuenscht).value_or(SerialFormat{});
}

// Formats of the own port.
inline std::string in_new_format(const JobContext &c) { return c.values.strCOMparameter_gewuenscht; }
/// For a device that changes its rate at once and the rest of its format later.
inline std::string at_new_rate(const JobContext &c) {
    SerialFormat format = parse_format(c.values.strCOMparameter_direkt).value_or(SerialFormat{});
    format.baud = new_format(c).baud;
    return format_text(format);
}

/// Place of the new rate among the rates of the devices, from 0.
inline int place_of_new_rate(const JobContext &c) {
    const auto place = std::find(device_rates.begin(), device_rates.end(), new_format(c).baud);
    return static_cast<int>(place - device_rates.begin());
}

// The mobile devices' commands.
inline std::string baud_command(const JobContext &c) {
    return "AT**BAUD=" + std::to_string(new_format(c).baud);
}
inline std::string format_command(const JobContext &c) {
    const SerialFormat format = new_format(c);
    return "AT**FORMAT=" + std::to_string(format.data_bits) + format.parity +
           std::to_string(format.stop_bits);
}

inline constexpr const char *changing_rate = "Baudrate umstellen";
inline constexpr const char *changing_format = "Datenformat umstellen";
inline constexpr const char *checking_format = "Verbindung prüfen";

/// The own port changes before the step sends.
constexpr Step in_format(RowText format, Step step) {
    step.format = format;
    return step;
}
/// The device answers in the present format. The interval that stands goes on to the next step.
constexpr Step check_format(const char *command, const char *status, milliseconds wait, const char *answer) {
    return ask(command, status, wait, &JobState::boolKommunikations_Fehler76, {answer}, 0ms);
}
inline constexpr Step save_format = tell("AT&W", "speichern");
constexpr Step check_new_format(const char *command, const char *answer) {
    return ask(command, checking_format, {}, &JobState::boolKommunikations_Fehler77, {answer}, 0ms);
}
/// The device has answered in the new format, which the next job speaks.
constexpr Step format_changed(const char *message) {
    return {.act =
                [](const JobContext &c) {
                    c.findings.format = c.values.strCOMparameter_gewuenscht;
                    c.findings.format_changed = true;
                },
            .end = End::drop,
            .message = message};
}

} // namespace telvox::dialogues
