#include "simulator/fixed_line.hpp"

namespace telvox::simulator {

constexpr char last_protocol = '6';

const Command<FixedLine> FixedLine::shared_commands[] = {
    {"AT", Form::plain, [](FixedLine &, std::string_view) { return Reply{}; }},
    {"AT*V", Form::plain,
     [](FixedLine &unit, std::string_view) {
         unit.asks_text_ = true;
         return Reply{.text = "NEW ALARM TEXT: ", .verdict = Verdict::asks};
     }},
    {"AT*M", Form::value,
     [](FixedLine &unit, std::string_view value) {
         if (value.size() != 1 || value[0] < '0' || value[0] > last_protocol)
             return refused;
         return store(unit.memory, &Memory::protocol, "M" + std::string{value}, 2);
     }},
    {"AT&W", Form::plain,
     [](FixedLine &unit, std::string_view) {
         unit.save();
         return unit.save_format();
     }},
};

Reply FixedLine::command(std::string_view line) {
    if (asks_text_) {
        asks_text_ = false;
        return store(memory, &Memory::text, line.substr(0, text_limit), text_limit);
    }
    return unasked(line);
}

Reply FixedLine::shared_command(std::string_view line) {
    return run_command<FixedLine>(shared_commands, *this, line).value_or(refused);
}

} // namespace telvox::simulator
