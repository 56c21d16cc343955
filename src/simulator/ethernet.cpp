#include "simulator/ethernet.hpp"

#include "simulator/values.hpp"

namespace telvox::simulator {

namespace {

constexpr Nature ethernet_nature{.format_at_once = true, .remote = false, .start = Time{3000}};

bool port(std::string_view value) { return number(value, 65535); }

struct Setting {
    std::string_view command;
    const char *name;
    bool (*fits)(std::string_view value);
    const char *factory;
};

constexpr Setting settings[] = {
    {"#IP=", "IP", ip_address, "0.0.0.0"},
    {"#PORT=", "PORT", port, "1234"},
    {"#GW=", "GW", ip_address, "0.0.0.0"},
    {"#NM=", "NM", ip_address, "255.255.255.0"},
};

} // namespace

const Command<Ethernet> Ethernet::commands[] = {
    {"AT", Form::plain, [](Ethernet &, std::string_view) { return Reply{}; }},
    {"ATI0", Form::plain,
     [](Ethernet &, std::string_view) { return Reply{.text = "ETHERNET Telvox-A V1.1"}; }},
    {"AT#RESET", Form::plain,
     [](Ethernet &unit, std::string_view) {
         unit.restart(unit.now());
         return Reply{.verdict = Verdict::asks};
     }},
    {"AT#", Form::value,
     [](Ethernet &unit, std::string_view line) { return unit.set("#" + std::string{line}); }},
    {"AT*S", Form::value,
     [](Ethernet &unit, std::string_view value) {
         constexpr const char *bauds[] = {"300", "600", "1200", "2400", "4800", "9600", "19200", "38400"};
         if (!one_of(value, "12345678"))
             return refused;
         auto format = format_text(unit.chosen_format());
         return unit.choose_format(format.replace(0, format.find(','), bauds[value[0] - '1']));
     }},
    {"AT*U", Form::value,
     [](Ethernet &unit, std::string_view value) {
         constexpr const char *formats[] = {"n,8,1", "e,7,1", "o,7,1", "",      "e,7,2",
                                            "o,7,2", "n,7,2", "e,8,1", "o,8,1", "n,8,2"};
         if (!one_of(value, "0123456789"))
             return refused;
         return unit.choose_format(std::to_string(unit.chosen_format().baud) + "," + formats[value[0] - '0']);
     }},
    {"AT&W", Form::plain, [](Ethernet &unit, std::string_view) { return unit.save_format(); }},
};

Ethernet::Ethernet(std::string mac, const std::string &address)
    : Unit(ethernet_nature), mac_(std::move(mac)) {
    for (const auto &setting : settings)
        memory.settings.emplace(setting.name, setting.factory);
    memory.settings["IP"] = address;
    save();
    started();
}

Reply Ethernet::set(std::string_view line) {
    for (const auto &setting : settings) {
        if (!line.starts_with(setting.command))
            continue;
        const auto value = line.substr(setting.command.size());
        if (!setting.fits(value))
            return refused;
        memory.settings[setting.name] = value;
        save();
        return {};
    }
    return refused;
}

void Ethernet::take_address(const std::string &address) {
    set("#IP=" + address);
    in_force_["IP"] = address;
}

Reply Ethernet::command(std::string_view line) {
    return run_command<Ethernet>(commands, *this, line).value_or(refused);
}

void Ethernet::started() {
    in_force_ = memory.settings;
    session = nullptr;
    online = true;
}

} // namespace telvox::simulator
