#include "simulator/gprs.hpp"

#include "simulator/values.hpp"

namespace telvox::simulator {

namespace {

constexpr Nature gprs_nature{
    .format_at_once = true, .stars = 3, .greeting = "\r\nREMOTE CONFIGURATION MODE\r\n"};

constexpr char ctrl_z = 26; ///< ends a message text
constexpr char escape = 27; ///< gives it up

constexpr std::string_view default_key = "7305914862037519846203751984620375198462037519846203751984620399";

using Fits = bool (*)(std::string_view value);

template <std::size_t Limit> bool text(std::string_view value) { return value.size() <= Limit; }
bool port(std::string_view value) { return value.empty() || number(value, 65535); }
bool minutes(std::string_view value) { return number(value, 255); }
bool yes_no(std::string_view value) { return one_of(value, "01"); }
bool target(std::string_view value) { return one_of(value, "0123"); }
bool targets(std::string_view value) {
    return value.size() == 5 && value[1] == ',' && value[3] == ',' && target(value.substr(0, 1)) &&
           target(value.substr(2, 1)) && target(value.substr(4, 1));
}

/// One setting: "AT**name=value" sets it; "AT**query?" answers all settings of that query with their labels.
struct Setting {
    std::string_view name;
    Fits fits;
    std::string_view query;
    std::string_view label;
    std::string_view factory = "";
};

constexpr Setting settings[] = {
    {"GPRSAPN", text<63>, "GPRSAPN", "GPRSAPN: "},
    {"PPPUSER", text<63>, "PPPUSER", "PPPUSER: "},
    {"PPPPW", text<63>, "PPPPW", "PPPPW: "},
    {"PPPAUTH", yes_no, "PPPAUTH", "PPPAUTH: PAP=", "0"},
    {"AUTOIP", text<15>, "AUTOIP", "AUTOIP1: "},
    {"AUTOPORTIP", port, "AUTOPORTIP", "AUTOPORTIP1: "},
    {"AUTOURL", text<253>, "AUTOURL", "AUTOURL1: "},
    {"AUTOPORTURL", port, "AUTOPORTURL", "AUTOPORTURL1: "},
    {"CLIP", yes_no, "", "", "0"},
    {"CLIP1", text<20>, "CLIP", "CLIP 1: "},
    {"CLIP2", text<20>, "CLIP", "CLIP 2: "},
    {"CLIP3", text<20>, "CLIP", "CLIP 3: "},
    {"Callback", targets, "Callback", "CALLBACK: ", "0,0,3"},
    {"LL", target, "LL", "LL1: ", "0"},
    {"KEEP", minutes, "KEEP", "KEEP: ", "0"},
    {"IPT", target, "IPT", "IPT: ", "0"},
    {"IPTUSER", text<63>, "IPT", "IPTUSER: "},
    {"IPTPW", text<63>, "IPT", "IPTPW: "},
    {"IPTCONREQ", yes_no, "", "", "0"},
    {"IPTWATCHDOG", yes_no, "", "", "1"},
    {"IPTKEYF", text<128>, "IPT", "IPTKEYF: ", default_key},
    {"IPTKEYC", text<128>, "IPT", "IPTKEYC: ", default_key},
};

} // namespace

const Command<Gprs> Gprs::commands[] = {
    {"ATI", Form::plain, [](Gprs &, std::string_view) { return Reply{.text = "KWT Telvox-A GPRS V2.0"}; }},
    {"ATH", Form::plain,
     [](Gprs &unit, std::string_view) {
         unit.connected_ = false;
         return Reply{};
     }},
    {"ATO", Form::plain,
     [](Gprs &unit, std::string_view) {
         unit.online = unit.connected_;
         return unit.connected_ ? Reply{} : refused;
     }},
    {"AT**SAVE", Form::plain,
     [](Gprs &unit, std::string_view) {
         unit.save();
         return Reply{};
     }},
    // A restart would break the call that asks for it, so it waits for the end of the call.
    {"AT**RESET", Form::plain,
     [](Gprs &unit, std::string_view) {
         if (unit.in_call())
             unit.restarts_after_call_ = true;
         else
             unit.restart(unit.now());
         return Reply{.verdict = Verdict::asks};
     }},
    {"AT**INPUT=", Form::value,
     [](Gprs &unit, std::string_view value) {
         if (!yes_no(value))
             return refused;
         unit.memory.input_armed = value == "1";
         unit.memory.saved = false;
         return Reply{};
     }},
    {"AT+CMGF=", Form::value,
     [](Gprs &unit, std::string_view value) {
         if (!yes_no(value))
             return refused;
         unit.memory.text_mode = value == "1";
         unit.memory.saved = false;
         return Reply{};
     }},
    {"AT+CMGD=1", Form::plain,
     [](Gprs &unit, std::string_view) {
         unit.keep(&Memory::message_stored, false);
         unit.keep(&Memory::recipient, std::string{});
         unit.keep(&Memory::text, std::string{});
         return Reply{};
     }},
    {"AT+CSCA=", Form::value,
     [](Gprs &unit, std::string_view value) {
         return store(unit.memory, &Memory::service_number, value, number_limit);
     }},
    {"AT+CMGW=", Form::value, [](Gprs &unit, std::string_view value) { return unit.begin_message(value); }},
};

Gprs::Gprs(const char *number) : Mobile(gprs_nature) {
    imei = number;
    for (const auto &setting : settings)
        memory.settings.emplace(setting.name, setting.factory);
    save();
}

void Gprs::go_online() { online = connected_ = true; }

Reply Gprs::command(std::string_view line) {
    if (auto reply = run_command<Gprs>(commands, *this, line))
        return *reply;
    constexpr std::string_view prefix = "AT**";
    if (line.starts_with(prefix)) {
        const Reply reply = line.ends_with('?') && line.find('=') == std::string_view::npos
                                ? query(line.substr(prefix.size(), line.size() - prefix.size() - 1))
                                : set(line.substr(prefix.size()));
        if (reply.verdict == Verdict::ok)
            return reply;
    }
    return shared_command(line);
}

Reply Gprs::set(std::string_view line) {
    const auto name = line.substr(0, line.find('='));
    for (const auto &setting : settings) {
        if (name.size() == line.size() || setting.name != name)
            continue;
        const auto value = line.substr(name.size() + 1);
        if (!setting.fits(value))
            return refused;
        memory.settings[std::string{name}] = value;
        memory.saved = false;
        return {};
    }
    return refused;
}

Reply Gprs::query(std::string_view name) const {
    std::string answer;
    for (const auto &setting : settings) {
        if (setting.query != name || name.empty())
            continue;
        answer += answer.empty() ? "" : "\r\n";
        answer += setting.label;
        answer += memory.settings.find(setting.name)->second;
    }
    return answer.empty() ? refused : Reply{.text = std::move(answer)};
}

Reply Gprs::begin_message(std::string_view recipient) {
    if (!memory.text_mode || recipient.empty() || recipient.size() > number_limit)
        return refused;
    message_ = Message{std::string{recipient}, {}};
    return {.text = "> ", .verdict = Verdict::asks};
}

bool Gprs::takes(char byte) {
    if (!message_)
        return false;
    if (byte == ctrl_z)
        answer(store_message());
    if (byte == ctrl_z || byte == escape)
        message_.reset();
    else if (message_->text.size() <= text_limit)
        message_->text += byte;
    return true;
}

/// The message goes to the lowest free slot; the alarm is sent from the first.
Reply Gprs::store_message() {
    if (message_->text.size() > text_limit)
        return refused;
    if (memory.message_stored)
        return {.text = "+CMGW: 2"};
    keep(&Memory::message_stored, true);
    keep(&Memory::recipient, message_->recipient);
    keep(&Memory::text, message_->text);
    return {.text = "+CMGW: 1"};
}

void Gprs::forget() {
    message_.reset();
    if (restarts_after_call_) {
        restarts_after_call_ = false;
        restart(now());
    }
}

void Gprs::started() {
    Mobile::started();
    connected_ = false;
}

} // namespace telvox::simulator
