#include "simulator/isdn.hpp"

#include "simulator/values.hpp"

namespace telvox::simulator {

namespace {

constexpr Nature isdn_nature{
    .adapts = Adapts::stop_bits,
    .greeting = "\r\npassword:",
    .admission = "\r\nOK\r\n#",
    .refusal = "\r\naccess denied\r\npassword:",
    .prompt = "#",
    .ring = Time{1500},
    .connect = "CONNECT 64000",
};

Reply store_number(Isdn &unit, std::string Memory::*field, std::string_view value) {
    return store(unit.memory, field, value, number_limit);
}

} // namespace

const Command<Isdn> Isdn::cable_commands[] = {
    {"ATI1", Form::plain, [](Isdn &, std::string_view) { return Reply{.text = "Telvox-A ISDN 64000"}; }},
    {"AT&Z1=", Form::value,
     [](Isdn &unit, std::string_view value) { return store_number(unit, &Memory::service_number, value); }},
    {"AT&Z3=", Form::value,
     [](Isdn &unit, std::string_view value) { return store_number(unit, &Memory::recipient, value); }},
    {"AT#Z=", Form::value,
     [](Isdn &unit, std::string_view value) { return store_number(unit, &Memory::data_msn, value); }},
    {"AT**MSN=", Form::value,
     [](Isdn &unit, std::string_view value) { return store_number(unit, &Memory::msn, value); }},
    {"AT**PTP=", Form::value,
     [](Isdn &unit, std::string_view value) {
         if (value != "0" && value != "1")
             return refused;
         unit.memory.point_to_point = value == "1";
         unit.memory.saved = false;
         return Reply{};
     }},
    {"AT%B", Form::value,
     [](Isdn &unit, std::string_view value) {
         constexpr const char *bauds[] = {"1200", "2400", "4800", "9600", "19200", "38400"};
         if (!one_of(value, "123456"))
             return refused;
         auto format = format_text(unit.chosen_format());
         return unit.choose_format(format.replace(0, format.find(','), bauds[value[0] - '1']));
     }},
    {"AT**PRTY=", Form::value,
     [](Isdn &unit, std::string_view value) {
         if (!one_of(value, "012"))
             return refused;
         SerialFormat format = unit.chosen_format();
         format.parity = std::string_view{"noe"}[static_cast<std::size_t>(value[0] - '0')];
         return unit.choose_format(format_text(format));
     }},
    {"AT**DBITS=", Form::value,
     [](Isdn &unit, std::string_view value) {
         if (!one_of(value, "78"))
             return refused;
         SerialFormat format = unit.chosen_format();
         format.data_bits = value[0] - '0';
         return unit.choose_format(format_text(format));
     }},
    {"AT*X", Form::plain, [](Isdn &unit, std::string_view) { return send_alarm(unit.memory); }},
    {"ATZ", Form::plain, [](Isdn &, std::string_view) { return Reply{}; }},
};

const Command<Isdn> Isdn::remote_commands[] = {
    {"altxt=", Form::value,
     [](Isdn &unit, std::string_view value) {
         return store(unit.memory, &Memory::text, value.substr(0, text_limit), text_limit);
     }},
    {"aldest=", Form::value,
     [](Isdn &unit, std::string_view value) {
         if (value.size() != 1 || value[0] < '0' || value[0] > '3')
             return refused;
         return store(unit.memory, &Memory::protocol, value, 1);
     }},
    // A dash takes an entry out of the call table.
    {"catab1=", Form::value,
     [](Isdn &unit, std::string_view value) {
         return store_number(unit, &Memory::service_number, value == "-" ? "" : value);
     }},
    {"catab3=", Form::value,
     [](Isdn &unit, std::string_view value) {
         return store_number(unit, &Memory::recipient, value == "-" ? "" : value);
     }},
    {"save", Form::plain,
     [](Isdn &unit, std::string_view) {
         unit.save();
         return Reply{};
     }},
    {"Alarm", Form::plain,
     [](Isdn &unit, std::string_view) {
         Reply reply = send_alarm(unit.memory);
         reply.text = "alarm";
         return reply;
     }},
    {"reset", Form::plain, [](Isdn &, std::string_view) { return Reply{.drops_line = true}; }},
    {"quit", Form::plain, [](Isdn &, std::string_view) { return Reply{.drops_line = true}; }},
};

Isdn::Isdn() : FixedLine(isdn_nature) {}

Reply Isdn::unasked(std::string_view line) {
    if (in_remote())
        return run_command<Isdn>(remote_commands, *this, line).value_or(refused);
    if (auto reply = run_command<Isdn>(cable_commands, *this, line))
        return *reply;
    return shared_command(line);
}

} // namespace telvox::simulator
