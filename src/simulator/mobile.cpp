#include "simulator/mobile.hpp"

#include "simulator/values.hpp"

namespace telvox::simulator {

const Command<Mobile> Mobile::shared_commands[] = {
    {"AT", Form::plain, [](Mobile &, std::string_view) { return Reply{}; }},
    {"AT**PIN=", Form::value, [](Mobile &unit, std::string_view value) { return unit.keep_pin(value); }},
    {"AT**PIN?", Form::plain,
     [](Mobile &unit, std::string_view) {
         return Reply{.text = unit.memory.pin.empty() ? "PIN: inactive" : "PIN: active"};
     }},
    {"AT**IMEI?", Form::plain,
     [](Mobile &unit, std::string_view) { return Reply{.text = "IMEI: " + unit.imei}; }},
    {"AT+CPIN?", Form::plain, [](Mobile &unit, std::string_view) { return unit.sim_state(); }},
    {"AT+CREG?", Form::plain,
     [](Mobile &unit, std::string_view) {
         return Reply{.text = "+CREG: 0," + std::to_string(unit.registration)};
     }},
    {"AT+CSQ", Form::plain,
     [](Mobile &unit, std::string_view) {
         return Reply{.text = "+CSQ: " + std::to_string(unit.signal) + ",0"};
     }},
    {"ATQ0", Form::plain,
     [](Mobile &unit, std::string_view) {
         unit.result_codes_ = true;
         return Reply{};
     }},
    {"ATQ1", Form::plain,
     [](Mobile &unit, std::string_view) {
         unit.result_codes_ = false;
         return Reply{};
     }},
    {"AT**BAUD=", Form::value,
     [](Mobile &unit, std::string_view value) {
         auto format = format_text(unit.chosen_format());
         return unit.choose_format(format.replace(0, format.find(','), value));
     }},
    // Data bits, parity, stop bits: "8n1".
    {"AT**FORMAT=", Form::value,
     [](Mobile &unit, std::string_view value) {
         if (value.size() != 3)
             return refused;
         return unit.choose_format(std::to_string(unit.chosen_format().baud) + "," + value[1] + "," +
                                   value[0] + "," + value[2]);
     }},
    {"AT&W", Form::plain, [](Mobile &unit, std::string_view) { return unit.save_format(); }},
    {"AT**EXIT", Form::plain,
     [](Mobile &unit, std::string_view) {
         unit.leave_remote();
         return Reply{};
     }},
};

Reply Mobile::shared_command(std::string_view line) {
    return run_command<Mobile>(shared_commands, *this, line).value_or(refused);
}

Reply Mobile::sim_state() const {
    if (!sim_present)
        return refused;
    if (sim_blocked)
        return {.text = "+CPIN: SIM PUK"};
    return {.text = sim_pin.empty() || memory.pin == sim_pin ? "+CPIN: READY" : "+CPIN: SIM PIN"};
}

Reply Mobile::keep_pin(std::string_view value) {
    if (!digits(value, 8) || (!value.empty() && value.size() < 4))
        return refused;
    keep(&Memory::pin, std::string{value});
    return {};
}

} // namespace telvox::simulator
