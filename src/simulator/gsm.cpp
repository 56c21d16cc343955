#include "simulator/gsm.hpp"

#include <algorithm>
#include <cstdio>

namespace telvox::simulator {

namespace {

constexpr Nature newer_nature{.remote = false};
constexpr Nature older_nature{.stars = 3, .greeting = "\r\nREMOTE CONFIGURATION MODE\r\n"};

/// Keeps a value for good at once; a mobile device has no command that it would wait for.
Reply keep(Gsm &unit, std::string Memory::*field, std::string_view value, std::size_t limit) {
    const Reply reply = store(unit.memory, field, value, limit);
    unit.memory.saved = true;
    return reply;
}

Reply keep_recipient(Gsm &unit, std::string_view value) {
    return keep(unit, &Memory::recipient, value, number_limit);
}

Reply keep_pin(Gsm &unit, std::string_view value) {
    const bool digits = std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!digits || (!value.empty() && value.size() < 4))
        return refused;
    return keep(unit, &Memory::pin, value, 8);
}

Reply arm_input(Gsm &unit, std::string_view value) {
    if (value != "0" && value != "1")
        return refused;
    unit.memory.input_armed = value == "1";
    return {};
}

/// A text stands between double quotes and holds none itself.
Reply keep_text(Gsm &unit, std::string_view value) {
    if (value.size() < 2 || value.front() != '"' || value.find('"', 1) != value.size() - 1)
        return refused;
    return keep(unit, &Memory::text, value.substr(1, value.size() - 2), text_limit);
}

} // namespace

const Command<Gsm> Gsm::commands[] = {
    {"AT", Form::plain, [](Gsm &, std::string_view) { return Reply{}; }},
    {"AT**TIME?", Form::plain, [](Gsm &unit, std::string_view) { return unit.clock(); }},
    {"AT**SCN=", Form::value,
     [](Gsm &unit, std::string_view value) {
         return keep(unit, &Memory::service_number, value, number_limit);
     }},
    {"AT**PIN=", Form::value, keep_pin},
    {"AT**PIN?", Form::plain,
     [](Gsm &unit, std::string_view) {
         return Reply{.text = unit.memory.pin.empty() ? "PIN: inactive" : "PIN: active"};
     }},
    {"AT**IMEI?", Form::plain,
     [](Gsm &unit, std::string_view) { return Reply{.text = "IMEI: " + unit.imei}; }},
    {"AT+CPIN?", Form::plain, [](Gsm &unit, std::string_view) { return unit.sim_state(); }},
    {"AT+CREG?", Form::plain,
     [](Gsm &unit, std::string_view) {
         return Reply{.text = "+CREG: 0," + std::to_string(unit.registration)};
     }},
    {"AT+CSQ", Form::plain,
     [](Gsm &unit, std::string_view) {
         return Reply{.text = "+CSQ: " + std::to_string(unit.signal) + ",0"};
     }},
    {"ATQ0", Form::plain,
     [](Gsm &unit, std::string_view) {
         unit.result_codes_ = true;
         return Reply{};
     }},
    {"ATQ1", Form::plain,
     [](Gsm &unit, std::string_view) {
         unit.result_codes_ = false;
         return Reply{};
     }},
    {"AT&W", Form::plain, [](Gsm &, std::string_view) { return Reply{}; }},
    {"AT**EXIT", Form::plain,
     [](Gsm &unit, std::string_view) {
         unit.leave_remote();
         return Reply{};
     }},
};

const Command<Gsm> Gsm::newer_commands[] = {
    {"ATI", Form::plain, [](Gsm &, std::string_view) { return Reply{.text = "KWT Telvox-A GSM V3.2"}; }},
    {"AT**DST1=", Form::value, keep_recipient},
    {"AT**MSG1=", Form::value, keep_text},
    {"AT**INPUT1=", Form::value, arm_input},
    {"AT**SMS=1", Form::plain, [](Gsm &unit, std::string_view) { return send_alarm(unit.memory); }},
};

const Command<Gsm> Gsm::older_commands[] = {
    {"ATI", Form::plain, [](Gsm &, std::string_view) { return Reply{.text = "Telvox-A GSM V1.4"}; }},
    {"AT**DST2=", Form::value, keep_recipient},
    {"AT**MSG2=", Form::value, keep_text},
    {"AT**INPUT2=", Form::value, arm_input},
    {"AT**SMS=2", Form::plain, [](Gsm &unit, std::string_view) { return send_alarm(unit.memory); }},
};

Gsm::Gsm(Generation generation)
    : Unit(generation == Generation::newer ? newer_nature : older_nature), generation_(generation) {}

Reply Gsm::command(std::string_view line) {
    if (auto reply = run_command<Gsm>(commands, *this, line))
        return *reply;
    const auto own = generation_ == Generation::newer ? std::span<const Command<Gsm>>{newer_commands}
                                                      : std::span<const Command<Gsm>>{older_commands};
    return run_command<Gsm>(own, *this, line).value_or(refused);
}

/// The clock has no battery: it starts anew with the power.
Reply Gsm::clock() const {
    using namespace std::chrono;
    const auto power_on = sys_days{year{2000} / January / 1};
    const auto moment = power_on + floor<seconds>(now());
    const auto day = floor<days>(moment);
    const year_month_day date{day};
    const hh_mm_ss time{moment - day};
    char text[64];
    std::snprintf(text, sizeof text, "TIME: %04d/%02u/%02u,%02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return {.text = text};
}

Reply Gsm::sim_state() const {
    if (!sim_present)
        return refused;
    return {.text = sim_pin.empty() || memory.pin == sim_pin ? "+CPIN: READY" : "+CPIN: SIM PIN"};
}

} // namespace telvox::simulator
