#include "simulator/analog.hpp"

namespace telvox::simulator {

namespace {

constexpr Nature analog_nature{
    .adapts = Adapts::everything,
    .stars = 4,
    .greeting = "\r\nONLINE\r\n",
    .admission = "\r\n>",
    .refusal = "\r\nACCESS DENIED\r\n",
    .prompt = ">",
};

} // namespace

const Command<Analog> Analog::commands[] = {
    {"ATI", Form::plain, [](Analog &, std::string_view) { return Reply{.text = "33600"}; }},
    {"ATI0", Form::plain, [](Analog &, std::string_view) { return Reply{.text = "Telvox-A Analog"}; }},
    {"AT&Z0=", Form::value,
     [](Analog &unit, std::string_view value) {
         return store(unit.memory, &Memory::service_number, value, number_limit);
     }},
    {"AT&Z2=", Form::value,
     [](Analog &unit, std::string_view value) {
         return store(unit.memory, &Memory::recipient, value, number_limit);
     }},
    {"AT%A", Form::plain, [](Analog &unit, std::string_view) { return send_alarm(unit.memory); }},
    {"AT*E", Form::plain,
     [](Analog &unit, std::string_view) {
         unit.leave_remote();
         return Reply{};
     }},
    {"ATZ", Form::plain,
     [](Analog &unit, std::string_view) {
         unit.leave_remote();
         return Reply{};
     }},
};

Analog::Analog() : FixedLine(analog_nature) { password = "BRUNEX"; }

Reply Analog::unasked(std::string_view line) {
    if (auto reply = run_command<Analog>(commands, *this, line))
        return *reply;
    return shared_command(line);
}

} // namespace telvox::simulator
