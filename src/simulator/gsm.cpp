#include "simulator/gsm.hpp"

#include "simulator/values.hpp"

#include <cstdio>

namespace telvox::simulator {

namespace {

constexpr Nature newer_nature{.remote = false};
constexpr Nature older_nature{.stars = 3, .greeting = "\r\nREMOTE CONFIGURATION MODE\r\n"};

} // namespace

const Command<Gsm> Gsm::commands[] = {
    {"AT**TIME?", Form::plain, [](Gsm &unit, std::string_view) { return unit.clock(); }},
    {"AT**SCN=", Form::value,
     [](Gsm &unit, std::string_view value) {
         return unit.keep_value(&Memory::service_number, value, number_limit);
     }},
};

const Command<Gsm> Gsm::newer_commands[] = {
    {"ATI", Form::plain, [](Gsm &, std::string_view) { return Reply{.text = "KWT Telvox-A GSM V3.2"}; }},
    {"AT**DST1=", Form::value,
     [](Gsm &unit, std::string_view value) {
         return unit.keep_value(&Memory::recipient, value, number_limit);
     }},
    {"AT**MSG1=", Form::value, [](Gsm &unit, std::string_view value) { return unit.keep_text(value); }},
    {"AT**INPUT1=", Form::value, [](Gsm &unit, std::string_view value) { return unit.arm_input(value); }},
    {"AT**SMS=1", Form::plain, [](Gsm &unit, std::string_view) { return send_alarm(unit.memory); }},
};

const Command<Gsm> Gsm::older_commands[] = {
    {"ATI", Form::plain, [](Gsm &, std::string_view) { return Reply{.text = "Telvox-A GSM V1.4"}; }},
    {"AT**DST2=", Form::value,
     [](Gsm &unit, std::string_view value) {
         return unit.keep_value(&Memory::recipient, value, number_limit);
     }},
    {"AT**MSG2=", Form::value, [](Gsm &unit, std::string_view value) { return unit.keep_text(value); }},
    {"AT**INPUT2=", Form::value, [](Gsm &unit, std::string_view value) { return unit.arm_input(value); }},
    {"AT**SMS=2", Form::plain, [](Gsm &unit, std::string_view) { return send_alarm(unit.memory); }},
};

Gsm::Gsm(Generation generation)
    : Mobile(generation == Generation::newer ? newer_nature : older_nature), generation_(generation) {}

Reply Gsm::command(std::string_view line) {
    const auto own = generation_ == Generation::newer ? std::span<const Command<Gsm>>{newer_commands}
                                                      : std::span<const Command<Gsm>>{older_commands};
    if (auto reply = run_command<Gsm>(own, *this, line))
        return *reply;
    if (auto reply = run_command<Gsm>(commands, *this, line))
        return *reply;
    return shared_command(line);
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

Reply Gsm::keep_value(std::string Memory::*field, std::string_view value, std::size_t limit) {
    if (value.size() > limit)
        return refused;
    keep(field, std::string{value});
    return {};
}

/// A text stands between double quotes and holds none itself.
Reply Gsm::keep_text(std::string_view value) {
    if (value.size() < 2 || value.front() != '"' || value.find('"', 1) != value.size() - 1)
        return refused;
    return keep_value(&Memory::text, value.substr(1, value.size() - 2), text_limit);
}

Reply Gsm::arm_input(std::string_view value) {
    if (!one_of(value, "01"))
        return refused;
    keep(&Memory::input_armed, value == "1");
    return {};
}

} // namespace telvox::simulator
