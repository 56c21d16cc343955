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

std::string own_format(const JobContext &c) {
    const std::string &own = c.values.strCOMparameter_direkt;
    return parse_format(own) ? own : default_direkt;
}

/// The format to try: the session's own, then the usual ones without it.
std::string candidate(const JobContext &c, std::size_t number) {
    if (number == 0)
        return own_format(c);
    for (const char *format : usual_formats)
        if (format != own_format(c) && --number == 0)
            return format;
    return {};
}
std::string tried(const JobContext &c) { return candidate(c, c.jobs.byteErkennen_Format); }

bool answered(const JobContext &c) { return c.jobs.answered; }
/// An intelligible answer says that the format is right, so no other one is tried.
bool others_left(const JobContext &c) {
    return !answered(c) && !candidate(c, c.jobs.byteErkennen_Format + std::size_t{1}).empty();
}

/// The variant that was found, and the format that it speaks.
void take_over(const JobContext &c) {
    c.findings.recognized = c.jobs.recognized;
    if (c.jobs.byteErkennen_Format != 0)
        c.findings.format = tried(c);
}

/// "Telvox-A ISDN an COM 2, 2400,e,8,1"
std::string found_device(const JobContext &c) {
    return std::string("Telvox-A ") + family_of(*c.jobs.recognized).name + " an " + c.values.cable_port +
           ", " + tried(c);
}

/// A round of the search in each format that there is.
std::size_t rounds(const JobContext &) { return usual_formats.size() + 1; }
/// A question; "Suche mit 2400,e,8,1: ISDN".
constexpr Step question(const char *command, RowText::Build variant) {
    Step step = say(command, {"Suche mit ", variant}, 1200ms);
    step.times = rounds;
    return step;
}
constexpr Step escape = {.send = "+++", .as = Write::raw, .wait = 1200ms, .times = rounds};
std::string gsm(const JobContext &c) { return tried(c) + ": GSM"; }
std::string gprs(const JobContext &c) { return tried(c) + ": GPRS"; }
std::string gsm_or_analog(const JobContext &c) { return tried(c) + ": GSM, Analog"; }
std::string isdn(const JobContext &c) { return tried(c) + ": ISDN"; }
std::string ethernet(const JobContext &c) { return tried(c) + ": Ethernet"; }

constexpr Counter ethernet_or_isdn = 5, next_format = 9, gprs_or_gsm = 10, back_online = 11, gsm_or_gprs = 12,
                  found = 14;

/// Another row than the next one comes behind it.
constexpr Step leading_to(Counter next, Step step) {
    step.next = next;
    return step;
}

constexpr auto search =
    script(question("AT**TIME?", gsm), question("AT**IMEI?", gprs), question("ATI", gsm_or_analog),
           question("ATI1", isdn), question("ATI0", ethernet),
           // A device in its data mode passes everything on to the network; nobody else must get an escape.
           leading_to(next_format, {.when = answered}), escape, question("ATI0", ethernet),
           question("AT**IMEI?", gprs),
           leading_to(1, {.when = others_left,
                          .act = [](const JobContext &c) { ++c.jobs.byteErkennen_Format; },
                          .format = tried,
                          .wait = 100ms,
                          .times = rounds}),
           when(answered, finish("Es hat ein Gerät geantwortet, aber nicht wie ein Telvox-A.", End::failed)),
           finish(no_connection_check, End::failed),
           // A GSM device has an IMEI too, and its first answer may have been lost.
           leading_to(found, say("AT**TIME?", {}, 1200ms)),
           // It was called out of a data connection.
           leading_to(found, say("ATO", {}, 500ms)),
           // Both mobile devices bear that name: the one tells its time, the other only its IMEI.
           say("AT**TIME?", {}, 1200ms), say("AT**IMEI?", {}, 1200ms),
           Step{.act = take_over, .end = End::drop, .message = found_device});

constexpr Job jobs[] = {{"Erkennen", &JobState::byteErkennen_Counter, search}};

/// Two characters come up in noise as well; they are an answer only in a line of plain text.
bool in_plain_line(const JobContext &, const Found &found_at) {
    const std::string_view before = found_at.all.substr(0, found_at.position);
    const std::string_view line = before.substr(before.find_last_of("\r\n") + 1);
    return std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c < 0x7F; });
}

template <ModemType Type> bool is(const JobContext &c, const Found &) {
    c.jobs.recognized = Type;
    return true;
}
bool is_isdn(const JobContext &c, const Found &found_at) {
    return in_plain_line(c, found_at) && is<ModemType::ISDN>(c, found_at);
}
constexpr Reply identifies(const char *text, Take take, Counter becomes = found, At at = {}) {
    return {.contains = text,
            .at = at,
            .when = [](const JobContext &c) { return !c.jobs.recognized; },
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
    identifies("KWT Telvox-A", is<ModemType::GSM>, gsm_or_gprs),
    {.contains = "TIME:",
     .at = {counter, gsm_or_gprs + 1},
     .counter = counter,
     .becomes = found,
     .restart = 100ms},
    {.contains = "IMEI:", .at = {counter, found}, .take = is<ModemType::GPRS>, .restart = 100ms},
    identifies("33600", is<ModemType::Analog>),
    identifies("64", is_isdn, found, {counter, ethernet_or_isdn}),
    identifies("ETHERNET", is<ModemType::Ethernet>),
    {.contains = "OK", .take = in_plain_line, .sets = &JobState::answered},
    {.contains = "ERROR", .sets = &JobState::answered},
};

} // namespace
} // namespace dialogues

constexpr Family recognition_family{
    .name = "", .jobs = dialogues::jobs, .replies = dialogues::replies, .guesses = true};

} // namespace telvox
