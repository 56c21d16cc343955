#include "rig/player.hpp"

#include "rig/ordered.hpp"

#include "core/text.hpp"
#include "operation/profile.hpp"

#include <algorithm>
#include <map>
#include <optional>

namespace telvox::test {

namespace {

constexpr milliseconds long_enough{180'000}; ///< for every job to end by itself

std::string event_of(const std::string &entry) { return entry.substr(entry.find('|') + 2); }

const std::map<std::string, std::string Session::*> session_texts = {
    {"strSMS_Protokoll", &Session::strSMS_Protokoll},
    {"strSMS_Protokoll_ISDN", &Session::strSMS_Protokoll_ISDN},
    {"strSMS_Protokoll_ISDN_fern", &Session::strSMS_Protokoll_ISDN_fern},
    {"strCOMparameter_direkt", &Session::strCOMparameter_direkt}};

/// The program in the rig, fed line by line.
class Player {
  public:
    /// Turns the clock to this line's time, tick by tick, and feeds it.
    void feed(const Line &line, std::size_t piece = 0) {
        turn_before(line);
        if (stopped())
            return;
        rig.now = line.at;
        if (is_reply(line))
            return rig.arrive(bytes_of(line.rest), piece);
        if (line.verb == from_network) {
            const std::string bytes = bytes_of(line.rest.substr(line.rest.find(' ') + 1));
            for (std::size_t at = 0; at < bytes.size(); at += piece ? piece : bytes.size())
                rig.program.Winsock_DataArrival(
                    std::string_view(bytes).substr(at, piece ? piece : bytes.size()));
            return;
        }
        if (!act(line.verb, line.rest))
            complain("not understood: " + line.verb + " " + line.rest);
    }

    /// Bytes of the same instant come before the tick, all else after it.
    void turn_before(const Line &line) {
        turn_to(line.verb == bytes_before_tick ? line.at - milliseconds{1} : line.at);
    }

    /// Turns the clock until `outputs` is reached, at most to this time.
    void turn_to(milliseconds time) {
        while (!stopped() && rig.timer.on && rig.timer.due <= time)
            rig.turn_to(rig.timer.due);
        if (!stopped())
            rig.turn_to(time);
    }

    void lose_port() { rig.lose_port(); }

    /// A call that is being dialled is down within four seconds.
    void cancel_twice() {
        rig.program.cancel();
        rig.program.cancel();
        turn_to(rig.now + milliseconds{4000});
        if (rig.port.is_open)
            complain("the line is still up");
    }

    /// The session is as before a job.
    void check_idle() {
        if (rig.program.busy() || (ordered && ordered->plan.busy()))
            complain("the session is not idle");
        if (rig.timer.on || rig.timer2.on)
            complain("the timer still runs");
        if (rig.port.is_open)
            complain("the port was left open");
        const Desk &d = rig.program.desk;
        if (!d.frmModem.fraModemart.usable() || !d.frmModem.fraVerbindungsart.usable() ||
            !d.frmGSM_Status.cbuSchließen.enabled || !d.frmGateway.cbuEthernet_GW_Abbruch.enabled ||
            !d.frmIPoEthernet.cbuEthernet_Abbruch.enabled)
            complain("the inputs are still locked");
    }

    void complain(const std::string &what) { faults += std::to_string(rig.now.count()) + ": " + what + "\n"; }

    /// The boxes since the last job was started, those apart that only refuse another start.
    std::vector<std::string> boxes_of_job() {
        std::vector<std::string> boxes;
        for (const std::string &entry : rig.journal) {
            const std::string event = event_of(entry);
            if (event.starts_with("open "))
                boxes.clear();
            else if (event.starts_with("box ") && event != "box Es läuft bereits ein Vorgang.")
                boxes.push_back(event.substr(4));
        }
        return boxes;
    }

    /// How often a job was begun.
    [[nodiscard]] auto jobs() const {
        return std::count_if(rig.journal.begin(), rig.journal.end(),
                             [](const auto &entry) { return event_of(entry).starts_with("open "); });
    }

    Rig rig;
    std::optional<Ordered> ordered;
    std::string faults;
    std::optional<int> outputs; ///< the clock stands still after this many outputs

    [[nodiscard]] bool stopped() const {
        const auto is_output = [](const auto &entry) { return event_of(entry).starts_with("->"); };
        return outputs && std::count_if(rig.journal.begin(), rig.journal.end(), is_output) >= *outputs;
    }

  private:
    /// Does something with the control of this kind with this name; not if there is none, or more than one.
    template <class Kind, class Action> bool with(const std::string &name, Action action) {
        const auto dot = name.find('.');
        std::vector<Kind *> found;
        for (Form *form : rig.program.desk.forms)
            if (dot == std::string::npos || name.substr(0, dot) == form->name)
                if (Kind *control = form->find<Kind>(dot == std::string::npos ? name : name.substr(dot + 1)))
                    found.push_back(control);
        if (found.size() == 1)
            action(*found[0]);
        return found.size() == 1;
    }

    bool act(const std::string &verb, const std::string &text) {
        Telvox &p = rig.program;
        const std::string name = text.substr(0, text.find(' ')),
                          argument = text.substr(std::min(name.size() + 1, text.size()));
        if (verb == "choose")
            return with<OptionButton>(name, [&](auto &c) { p.choose(c); });
        if (verb == "enter")
            return with<TextBox>(name, [&](auto &c) { p.enter(c, argument); });
        if (verb == "tick" || verb == "untick")
            return with<CheckBox>(name, [&](auto &c) { p.set(c, verb == "tick"); });
        if (verb == "click")
            return with<Button>(name, [&](auto &c) { p.click(c); }) ||
                   with<MenuEntry>(name, [&](auto &c) { p.click(c); });
        if (verb == "shows")
            return with<Control>(name, [&](auto &c) {
                std::string shown = c.holds();
                for (std::size_t at = 0; (at = shown.find('\n', at)) != std::string::npos;)
                    shown.replace(at, 1, "\\n");
                if (shown != argument)
                    complain(name + " shows " + shown + ", not " + argument);
            });
        if (verb == "close" || verb == "dismiss") {
            for (Form *form : p.desk.forms)
                if (name == form->name)
                    return verb == "close" ? p.close(*form) : p.dismiss(*form), true;
            return false;
        }
        if (verb == "begin")
            return operation::Operator(p, rig.scan).begin_with(operation::values_of_row(text)), true;
        if (verb == "order")
            return ordered.emplace(rig, operation::values_of_row(text)), true;
        if (verb == "tell")
            return p.tell(text), true;
        if (verb == "set") {
            const auto session_text = session_texts.find(name);
            return session_text != session_texts.end() &&
                   (p.desk.session.*session_text->second = argument, true);
        }
        if (verb == "cable" || verb == "modem") {
            rig.free_ports = {std::stoi(name)};
            verb == "cable" ? rig.choose_cable_port(std::stoi(name)) : rig.choose_modem_port(std::stoi(name));
            return true;
        }
        if (verb == "cannot-open" || verb == "can-open")
            return rig.open_failure = text, true;
        if (verb == "carrier" || verb == "no-carrier") {
            if (!rig.port.watches)
                complain("nobody watches the carrier");
            p.comSeriell_OnComm(verb == "carrier" ? CommEvent::carrier_rise : CommEvent::carrier_fall);
            return true;
        }
        if (verb == "process") {
            ProcessEnd end;
            end.killed = name == "killed";
            (name == "missing" ? end.cause : end.output) = from_line(bytes_of(argument));
            if (!end.killed && end.cause.empty())
                end.exit_status = std::stoi(name);
            return rig.program.process_ended(end), true;
        }
        if (verb == "tools")
            return rig.processes.has = Processes::Tools::of_windows, name == "windows";
        if (verb == "pick")
            return with<ComboBox>(name, [&](auto &c) { p.select(c, argument); });
        if (verb == "answer")
            return rig.answer(name == "ja"), true;
        if (verb == "lost")
            return lose_port(), true;
        if (verb == "end")
            return check_idle(), true;
        return false;
    }
};

/// Feeds all lines of a transcript before this one.
void feed_until(Player &player, const Transcript &transcript, std::size_t end, std::size_t piece = 0) {
    for (std::size_t i = 0; i < end; ++i)
        if (transcript[i].verb != done && transcript[i].verb != stays_out)
            player.feed(transcript[i], piece);
}

/// What was done, without the sentence that a first check's report gets when the device has sent anything: a
/// part of a reply is something too.
std::string without_hint(const std::string &entry) {
    const std::string hint = "Es hat ein Gerät";
    return entry.substr(0, std::min(entry.find("\\r\\r" + hint), entry.find(" " + hint)));
}

std::string play_written(const Transcript &transcript, std::size_t piece) {
    Player player;
    feed_until(player, transcript, transcript.size(), piece);
    Journal expected;
    for (const Line &line : transcript)
        if (line.verb == done)
            expected.push_back(entry(line.at, line.rest));
    return player.faults + difference(expected, player.rig.journal);
}

/// On a real clock ticks are late and opening a port takes time. So what comes in comes as long after what
/// was done before it as it did then.
std::string play_recorded(const Transcript &transcript) {
    constexpr milliseconds as_late_as{1000};
    Player player;
    Rig &rig = player.rig;
    Journal expected, actual;
    milliseconds shift{0};
    for (Line line : transcript) {
        line.at += shift;
        if (line.verb != done) {
            line.at = std::max(line.at, rig.now);
            player.feed(line);
            continue;
        }
        expected.push_back(line.rest);
        while (rig.journal.size() < expected.size() && rig.timer.on && rig.timer.due <= line.at + as_late_as)
            rig.turn_to(rig.timer.due);
        if (rig.journal.size() >= expected.size())
            shift += milliseconds{std::stoll(rig.journal[expected.size() - 1])} - line.at;
    }
    for (const std::string &entry : rig.journal)
        actual.push_back(event_of(entry));
    return player.faults + difference(expected, actual);
}

/// The device says nothing from line `reply` on: what the program does until it has reported that.
std::string play_silent(const Transcript &transcript, std::size_t reply, const Line &report) {
    Player player;
    feed_until(player, transcript, reply);
    player.turn_before(transcript[reply]);
    const std::size_t before = player.rig.journal.size();
    std::string status = "status Bereit", command;
    bool dialled = false;
    for (const std::string &entry : player.rig.journal) {
        const std::string event = event_of(entry);
        dialled = (dialled && !event.starts_with("open ")) || event.starts_with("-> ATX3D") ||
                  event.starts_with("-> ATD");
        if (event.starts_with("status "))
            status = event;
        if (event.starts_with("->"))
            command = event;
    }
    player.turn_to(report.at + long_enough);
    player.check_idle();

    Journal expected,
        actual(player.rig.journal.begin() + static_cast<std::ptrdiff_t>(before), player.rig.journal.end());
    std::transform(actual.begin(), actual.end(), actual.begin(), without_hint);
    // Dialling again is all that may happen until then.
    std::erase_if(actual, [&](const std::string &entry) {
        return event_of(entry).starts_with("ends ") || (event_of(entry) == command && dialled);
    });
    const auto then = [&, at = report.at](int guards, std::initializer_list<std::string> events) {
        for (const std::string &event : events)
            expected.push_back(entry(at + guards * milliseconds{1100}, event));
    };
    if (transcript[reply].verb == from_network)
        then(0, {"net close"});
    else if (!dialled)
        then(0, {"drain", "DTR off", "close"});
    if (const std::string after = dialled ? "status Verbindung wird getrennt" : "status Bereit";
        status != after)
        then(0, {after});
    then(0, {"box " + report.rest});
    if (dialled) {
        then(1, {"status Lokales Modem in den Befehlsmodus schalten", "-> +++"});
        then(2, {"status auflegen", "-> ATH\\r", "drain", "DTR off", "close", "status Bereit"});
    }
    std::string wrong = player.faults + difference(expected, actual);
    return wrong.empty() ? wrong : "silent instead of \"" + transcript[reply].rest + "\":\n" + wrong;
}

/// Something happens after any output, and one box then says so if the job had not ended.
std::string play_interrupted(const Transcript &transcript, void (Player::*happens)(), const char *box) {
    for (int output = 1;; ++output) {
        Player player;
        player.outputs = output;
        feed_until(player, transcript, transcript.size());
        if (!player.stopped())
            return {};
        player.outputs.reset();
        if (!player.rig.port.is_open)
            continue; // it was the job's last output
        const bool ended = !player.boxes_of_job().empty();
        const auto jobs = player.jobs();
        (player.*happens)();
        player.turn_to(player.rig.now + long_enough);
        player.check_idle();
        const auto boxes = player.boxes_of_job();
        if (boxes.size() != 1 || (!ended && !boxes[0].starts_with(box)))
            player.complain(std::to_string(boxes.size()) + " boxes, not the one that says so");
        if (player.jobs() != jobs)
            player.complain("it went on with the next job");
        if (!player.faults.empty())
            return box + (" after output " + std::to_string(output)) + ":\n" + player.faults;
    }
}

/// All that can be seen when of line `reply` only these bytes come, and nothing after it.
std::string seen_after(const Transcript &transcript, std::size_t reply, const std::string &bytes,
                       std::string &faults) {
    Player player;
    feed_until(player, transcript, reply);
    Line part = transcript[reply];
    part.rest = visible(bytes);
    player.feed(part);
    player.turn_to(part.at + long_enough);
    player.check_idle();
    faults += player.faults;
    std::string seen;
    for (const std::string &entry : player.rig.journal)
        seen += without_hint(entry) + "\n";
    for (Form *form : player.rig.program.desk.forms) {
        for (Control *control : form->controls())
            seen += std::string(control->name) + " " + control->holds() + "\n";
    }
    return seen;
}

/// Half a reply is either enough, and does what the whole one does, or it does nothing.
std::string play_halved(const Transcript &transcript, std::size_t reply) {
    const std::string bytes = bytes_of(transcript[reply].rest);
    std::string faults;
    const std::string half = seen_after(transcript, reply, bytes.substr(0, bytes.size() / 2), faults);
    if (half != seen_after(transcript, reply, bytes, faults) &&
        half != seen_after(transcript, reply, "", faults))
        faults += half;
    return faults.empty() ? faults : "half of \"" + transcript[reply].rest + "\":\n" + faults;
}

/// A record says what became of an opening behind the click that led to it; to be played it must be known
/// before, and holds for that click only.
Transcript with_failures_first(Transcript transcript) {
    for (auto failure = transcript.begin(); failure != transcript.end(); ++failure) {
        auto click = failure;
        while (failure->verb == "cannot-open" && click != transcript.begin() && click->verb != "click" &&
               std::prev(click)->at == failure->at)
            --click;
        if (click == failure || click->verb != "click")
            continue;
        const Line able{failure->at, "can-open", ""};
        std::rotate(click, failure, failure + 1);
        failure = transcript.insert(failure + 1, able);
    }
    return transcript;
}

} // namespace

std::string play(const Transcript &written, Playing how) {
    const Transcript transcript = with_failures_first(written);
    if (how == Playing::whole || how == Playing::bytewise)
        return play_written(transcript, how == Playing::whole ? 0 : 1);
    if (how == Playing::recorded)
        return play_recorded(transcript);
    if (how == Playing::lost)
        return play_interrupted(transcript, &Player::lose_port, "Die Verbindung zur Schnittstelle COM ");
    if (how == Playing::cancelled)
        return play_interrupted(transcript, &Player::cancel_twice, "Der Vorgang wurde abgebrochen.");
    std::string wrong;
    for (std::size_t i = 0; i < transcript.size(); ++i) {
        if (how == Playing::silent && transcript[i].verb == stays_out)
            wrong += play_silent(transcript, i - 1, transcript[i]);
        if (how == Playing::halved && is_reply(transcript[i]))
            wrong += play_halved(transcript, i);
    }
    return wrong;
}

} // namespace telvox::test
