#include "net/network_tools.hpp"

#include "core/files/files.hpp"
#include "core/text.hpp"
#include "net/shell_commands.hpp"

#include <system_error>
#include <utility>

namespace telvox {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t longest_log = 65536;

/// Bytes from outside as plain text: what is no UTF-8 is read as the devices' code page, control characters
/// go, lines end in "\n".
std::string plain_text(std::string_view bytes) {
    std::string plain;
    Characters characters(bytes);
    for (auto c = characters.next(); !c.empty(); c = characters.next()) {
        const std::string character = code_point(c) == 0xFFFD ? from_line(c) : std::string(c);
        const char32_t point = code_point(character);
        if (point == U'\n' || (point >= 0x20 && point != 0xFFFD && (point < 0x7F || point >= 0xA0)))
            plain += character;
    }
    return plain;
}

} // namespace

void NetworkTools::start(const NetworkAction &action, NetworkTask task, NetworkPane pane, const Button &by) {
    if (busy())
        return c_.outbox.show({.text = already_running, .tone = Tone::refusal});
    action_ = action;
    task_ = std::move(task);
    pane_.emplace(pane);
    by_ = &by;
    c_.started(by);
    pane_->log.clear();
    pane_->progress = 0;
    pane_->running = true;
    const auto address = plain_address(task_.address);
    const std::string &given = task_.values.address;
    const bool can_be_given = given.empty() || plain_address(given);
    if (!address || !can_be_given || (action_.first_entry && !is_hex_pairs(task_.mac, 6))) {
        say("Keine gültige Adresse: " + first_characters(can_be_given ? task_.address : given, 40) + "\n");
        return finish(Outcome::failed, action_.unreached);
    }
    task_.address = *address;
    c_.Timer2.restart(tick_period);
    if (!action_.first_entry)
        ping();
    else if (c_.processes.tools() == Processes::Tools::of_windows)
        set_entry({});
    else
        ExecuteShell(Stage::route, route_command(task_.address), entry_limit);
}

void NetworkTools::ExecuteShell(Stage stage, const ShellCommand &command, milliseconds limit) {
    stage_ = stage;
    command_ = command;
    c_.processes.run(command, limit);
}

void NetworkTools::set_entry(const std::string &device) {
    ExecuteShell(Stage::entry, entry_command(c_.processes.tools(), task_.address, task_.mac, device),
                 entry_limit);
}

void NetworkTools::ping() {
    ExecuteShell(Stage::ping, ping_command(c_.processes.tools(), task_.address), ping_limit);
}

void NetworkTools::process_ended(const ProcessEnd &end) {
    if (!busy() || stage_ == Stage::dialogue)
        return;
    if (!end.cause.empty())
        say("'" + command_.program + "' konnte nicht gestartet werden. " + end.cause + "\n");
    else if (end.killed)
        say("'" + command_.program + "' antwortet nicht und wurde beendet.\n");
    switch (std::exchange(stage_, Stage::idle)) {
    case Stage::route:
        return after_route(end);
    case Stage::entry:
        return after_entry(end);
    default:
        return after_ping(end);
    }
}

void NetworkTools::after_route(const ProcessEnd &end) {
    const Route route = parse_route(end.output);
    if (!end.cause.empty() || end.killed)
        return finish(Outcome::failed, action_.unreached);
    if (end.exit_status != 0 || !route.problem.empty()) {
        say(end.exit_status != 0 ? end.output + "\n" : route.problem + "\n");
        return finish(Outcome::failed, action_.unreached);
    }
    set_entry(route.device);
}

void NetworkTools::after_entry(const ProcessEnd &end) {
    // Neither program says anything when it has set the entry.
    if (end.cause.empty() && !end.killed && end.exit_status == 0 && end.output.empty())
        return ping();
    say(end.output +
        "\nDer Eintrag ließ sich nicht setzen; meist fehlen dazu die Rechte. Führen Sie als "
        "Administrator diesen Befehl aus und prüfen Sie dann die Verbindung:\n" +
        text_of(command_) + "\n");
    finish(Outcome::failed, action_.unreached);
}

void NetworkTools::after_ping(const ProcessEnd &end) {
    const PingResult result = evaluate_ping(through_file(end.output), action_.rule, task_.address);
    for (const std::string &line : result.lines)
        say(line + "\n");
    if (!result.answered)
        return finish(Outcome::failed, action_.unreached);
    if (task_.dialogue.empty())
        return finish(Outcome::succeeded, action_.reached);
    if (action_.full_after_ping)
        pane_->progress = pane_->progress_maximum;
    telnet_ = TelnetDialogue(task_.dialogue, task_.values);
    stage_ = Stage::dialogue;
    c_.Winsock.connect(task_.address, telnet_port);
    c_.Timer2.restart(tick_period);
}

/// Leaves the output in "Shell.txt" and reads it back from there; where the folder cannot be written, the
/// output is what was read anyway.
std::string NetworkTools::through_file(const std::string &output) const {
    const fs::path path = c_.data_folder / "Shell.txt";
    std::error_code error;
    fs::remove(path, error); // a link is not followed here
    if (error || replace_file(path, output) != 0)
        return output;
    const FileContent file = read_file(path, output.size());
    return file.error == 0 ? file.bytes : output;
}

void NetworkTools::Winsock_DataArrival(std::string_view bytes) {
    if (stage_ != Stage::dialogue)
        return;
    const TelnetDialogue::Reaction reaction = telnet_.arrive(bytes);
    say(reaction.text);
    for (const std::string &command : reaction.sent)
        c_.Winsock.send(command);
}

void NetworkTools::Timer2_Timer() {
    if (!busy())
        return;
    if (pane_->progress < pane_->progress_maximum)
        ++pane_->progress;
    if (stage_ != Stage::dialogue || !telnet_.tick())
        return;
    const bool done = telnet_.state().reset_sent;
    finish(done ? Outcome::succeeded : Outcome::failed, done ? action_.done : action_.failed);
}

void NetworkTools::finish(Outcome outcome, std::string box) {
    stop();
    if (outcome != Outcome::cancelled)
        pane_->progress = pane_->progress_maximum;
    const Message message{.text = std::move(box),
                          .tone = outcome == Outcome::succeeded ? Tone::success
                                  : outcome == Outcome::failed  ? Tone::failure
                                                                : Tone::plain};
    c_.ended({.by = by_, .outcome = outcome, .said = {message}});
    c_.outbox.show(message);
}

void NetworkTools::stop() {
    c_.Timer2.Enabled(false);
    if (stage_ == Stage::dialogue)
        c_.Winsock.close();
    else if (stage_ != Stage::idle)
        c_.processes.kill();
    stage_ = Stage::idle;
    if (pane_)
        pane_->running = false;
}

void NetworkTools::cancel() {
    if (!busy())
        return;
    const TelnetState &state = telnet_.state();
    const bool told = stage_ == Stage::dialogue && (state.gateway_sent || state.address_sent);
    finish(Outcome::cancelled, cancelled(told));
}

void NetworkTools::abandon() {
    if (!busy())
        return;
    stop();
    c_.ended({.by = by_, .outcome = Outcome::cancelled, .said = {}});
}

void NetworkTools::log(std::string &into, std::string_view text) const {
    const std::string plain = plain_text(text);
    c_.observers.tell(&Observer::logged, std::string_view(plain));
    into += plain;
    if (into.size() <= longest_log)
        return;
    std::size_t cut = into.size() - longest_log;
    while (cut < into.size() && (static_cast<unsigned char>(into[cut]) & 0xC0u) == 0x80u)
        ++cut; // never in the middle of a character
    into.erase(0, cut);
}

} // namespace telvox
