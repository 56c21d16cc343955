#include "core/serial_format.hpp"
#include "dialogues/families.hpp"
#include "dialogues/shared.hpp"

#include <array>

namespace telvox {

namespace dialogues {
namespace {

/// Formats in which the devices are usually left, beside the one that the session has for the cable.
constexpr std::array usual_formats = {"2400,e,8,1", "9600,n,8,1", "19200,n,8,1", "38400,n,8,1",
                                      "9600,e,8,1", "4800,e,8,1", "1200,e,8,1"};

std::string own_format(const Desk &desk) {
    return parse_format(desk.session.strCOMparameter_direkt) ? desk.session.strCOMparameter_direkt
                                                             : default_direkt;
}

/// The format to try: the session's own, then the usual ones without it.
std::string candidate(const Desk &desk, std::size_t number) {
    if (number == 0)
        return own_format(desk);
    for (const char *format : usual_formats)
        if (format != own_format(desk) && --number == 0)
            return format;
    return {};
}
std::string tried(const Desk &desk) { return candidate(desk, desk.jobs.byteErkennen_Format); }

/// An intelligible answer says that the format is right, so no other one is tried.
bool others_left(const Desk &desk) {
    return !desk.jobs.answered && !candidate(desk, desk.jobs.byteErkennen_Format + std::size_t{1}).empty();
}

/// The form gets the variant that was found, the session the format that it speaks; what was entered for the
/// variant stays if it was chosen already.
void take_over(Desk &desk) {
    OptionButton &option = desk.frmModem.option_of(*desk.jobs.recognized);
    if (!option.value)
        option.choose();
    if (desk.jobs.byteErkennen_Format != 0)
        desk.session.strCOMparameter_direkt = tried(desk);
}

/// "Telvox-A ISDN an COM 2, 2400,e,8,1", once the session has the format.
std::string found_device(const Desk &desk) {
    return std::string("Telvox-A ") + family_of(*desk.jobs.recognized).name + " an " +
           desk.frmModem.cobSchnittstelle.text + ", " + own_format(desk);
}

/// A question, given the formats that there are.
constexpr Step ask(Counter number, RowText status, const char *command) {
    return {.number = number,
            .status = status,
            .send = command,
            .wait = 1200ms,
            .times = [](const Desk &) { return usual_formats.size() + 1; },
            .next = static_cast<Counter>(number + 1)};
}

/// "Suche mit 2400,e,8,1: ISDN"
std::string looking_for(const Desk &desk, const char *variant) {
    return "Suche mit " + tried(desk) + ": " + variant;
}

constexpr Counter next_format = 9, gprs_or_gsm = 10, back_online = 11, found = 12;

constexpr Step search[] = {
    ask(
        1, [](const Desk &d) { return looking_for(d, "GSM"); }, "AT**TIME?"),
    ask(
        2, [](const Desk &d) { return looking_for(d, "GPRS"); }, "AT**IMEI?"),
    ask(
        3, [](const Desk &d) { return looking_for(d, "GSM, Analog"); }, "ATI"),
    ask(
        4, [](const Desk &d) { return looking_for(d, "ISDN"); }, "ATI1"),
    ask(
        5, [](const Desk &d) { return looking_for(d, "Ethernet"); }, "ATI0"),
    // A device in its data mode passes everything on to the network; nobody else must get an escape.
    {.number = 6, .when = [](const Desk &d) { return d.jobs.answered; }, .next = next_format},
    {.number = 6, .send = "+++", .as = Write::raw, .wait = 1200ms, .next = 7},
    ask(
        7, [](const Desk &d) { return looking_for(d, "Ethernet"); }, "ATI0"),
    ask(
        8, [](const Desk &d) { return looking_for(d, "GPRS"); }, "AT**IMEI?"),
    {.number = next_format,
     .when = others_left,
     .act = [](Desk &d) { ++d.jobs.byteErkennen_Format; },
     .format = tried,
     .wait = 100ms,
     .next = 1},
    {.number = next_format,
     .when = [](const Desk &d) { return d.jobs.answered; },
     .end = End::failed,
     .message = "Es hat ein Gerät geantwortet, aber nicht wie ein Telvox-A."},
    {.number = next_format, .end = End::failed, .message = no_connection_check},
    // A GSM device has an IMEI too, and its first answer may have been lost.
    {.number = gprs_or_gsm, .send = "AT**TIME?", .wait = 1200ms, .next = found},
    // It was called out of a data connection.
    {.number = back_online, .send = "ATO", .wait = 500ms, .next = found},
    {.number = found, .act = take_over, .end = End::drop, .message = found_device},
};

constexpr Job jobs[] = {{"Erkennen", &JobState::byteErkennen_Counter, search}};

/// Two characters come up in noise as well; they are an answer only in a line of plain text.
bool in_plain_line(Desk &, const Found &found_at) {
    const std::string_view before = found_at.all.substr(0, found_at.position);
    const std::string_view line = before.substr(before.find_last_of("\r\n") + 1);
    return std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c < 0x7F; });
}

template <ModemType Type> bool is(Desk &desk, const Found &) {
    desk.jobs.recognized = Type;
    return true;
}
bool is_isdn(Desk &desk, const Found &found_at) {
    return in_plain_line(desk, found_at) && is<ModemType::ISDN>(desk, found_at);
}
constexpr Reply identifies(const char *text, bool (*take)(Desk &, const Found &), Counter becomes = found,
                           At at = {}) {
    return {.contains = text,
            .at = at,
            .when = [](const Desk &d) { return !d.jobs.recognized; },
            .take = take,
            .counter = &JobState::byteErkennen_Counter,
            .becomes = becomes,
            .restart = 100ms};
}
constexpr CounterOf counter = &JobState::byteErkennen_Counter;

constexpr Reply replies[] = {
    identifies("TIME:", is<ModemType::GSM>),
    {.contains = "TIME:", .at = {counter, found}, .take = is<ModemType::GSM>, .restart = 100ms},
    identifies("IMEI:", is<ModemType::GPRS>, back_online, {counter, next_format}),
    identifies("IMEI:", is<ModemType::GPRS>, gprs_or_gsm),
    identifies("KWT Telvox-A", is<ModemType::GSM>),
    identifies("33600", is<ModemType::Analog>),
    identifies("64", is_isdn, found, {counter, 5}),
    identifies("ETHERNET", is<ModemType::Ethernet>),
    {.contains = "OK", .take = in_plain_line, .sets = &JobState::answered},
    {.contains = "ERROR", .sets = &JobState::answered},
};

} // namespace
} // namespace dialogues

constexpr Family recognition_family{"", dialogues::jobs, dialogues::replies, true};

} // namespace telvox
