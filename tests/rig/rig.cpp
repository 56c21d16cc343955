#include "rig/rig.hpp"

#include "core/port_choice.hpp"
#include "core/text.hpp"

#include <algorithm>
#include <stdexcept>

namespace telvox::test {

std::string difference(const Journal &expected, const Journal &actual) {
    const auto [e, a] = std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
    if (e == expected.end() && a == actual.end())
        return {};
    std::string text = "expected: " + (e == expected.end() ? "(nothing more)" : *e) +
                       "\ndone:     " + (a == actual.end() ? "(nothing more)" : *a) +
                       "\nall that was done:\n";
    for (const std::string &entry : actual)
        text += entry + "\n";
    return text;
}

std::string bytes_of(std::string_view text) {
    const std::string visible = to_line(text);
    std::string bytes;
    for (std::size_t i = 0; i < visible.size(); ++i) {
        if (visible[i] != '\\' || i + 1 == visible.size()) {
            bytes += visible[i];
            continue;
        }
        switch (visible[++i]) {
        case 'r':
            bytes += '\r';
            break;
        case 'n':
            bytes += '\n';
            break;
        case 'x':
            bytes += static_cast<char>(std::stoi(visible.substr(i + 1, 2), nullptr, 16));
            i += 2;
            break;
        default:
            bytes += visible[i];
        }
    }
    return bytes;
}

Rig::Rig(DataFolders folders)
    : program({.comSeriell = port,
               .scan = scan,
               .Timer1 = timer,
               .boxes = message_boxes,
               .Timer2 = timer2,
               .Winsock = tcp,
               .processes = processes,
               .help = &help,
               .files = &files},
              std::move(folders)) {
    program.desk.observers.add(*this);
}

void Rig::note(const std::string &event) { journal.push_back(std::to_string(now.count()) + " | " + event); }

void Rig::turn_to(milliseconds time) {
    const auto next = [this] {
        return timer.on && (!timer2.on || timer.due <= timer2.due) ? &timer : &timer2;
    };
    for (FakeTimer *due = next(); due->on && due->due <= time; due = next()) {
        now = due->due;
        due->due += due->period;
        (served->*due->event)();
    }
    now = std::max(now, time);
}

bool Rig::run_until_idle(milliseconds limit) {
    const milliseconds end = now + limit;
    while (served->busy() && timer.on && timer.due <= end)
        turn_to(timer.due);
    return !served->busy();
}

void Rig::arrive(std::string_view bytes, std::size_t piece) {
    if (piece == 0)
        piece = bytes.size();
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
        if (!port.is_open)
            return; // bytes for a closed port are gone
        port.pending += bytes.substr(0, piece);
        served->comSeriell_OnComm(CommEvent::data);
    }
}

void Rig::choose_cable_port(int number) {
    program.focus(program.desk.frmModem.cobSchnittstelle);
    program.select(program.desk.frmModem.cobSchnittstelle, port_entry(number));
}

void Rig::choose_modem_port(int number) {
    program.focus(program.desk.frmModem.cobModem_Port);
    program.select(program.desk.frmModem.cobModem_Port, port_entry(number));
}

void Rig::FakePort::Settings(const SerialFormat &value) {
    format = value;
    rig.note("format " + format_text(format));
    rig.on_format(format);
}

std::string Rig::FakePort::PortOpen(bool open) {
    if (open && !rig.open_failure.empty())
        return rig.open_failure;
    is_open = open;
    watches = false;
    pending.clear();
    rig.note(open ? "open " + port_entry(number) : "close");
    rig.on_open(open);
    return {};
}

void Rig::FakePort::DTREnable(bool on) {
    rig.note(on ? "DTR on" : "DTR off");
    rig.on_dtr(on);
}

void Rig::FakePort::Output(std::string_view bytes) {
    rig.note("-> " + visible(bytes));
    rig.on_output(bytes);
}

bool Rig::FakePort::drain(milliseconds) {
    rig.note("drain");
    return !stuck;
}

std::vector<PortInfo> Rig::FakeScan::ports() {
    std::vector<PortInfo> found = rig.busy_ports;
    for (const int number : rig.free_ports)
        if (number <= last_port)
            found.push_back({.number = number});
    std::sort(found.begin(), found.end(), [](const auto &a, const auto &b) { return a.number < b.number; });
    return found;
}

void Rig::FakeTimer::Interval(milliseconds value) {
    period = value;
    due = rig.now + period;
}

void Rig::FakeTimer::Enabled(bool enabled) {
    if (enabled && !on)
        due = rig.now + period;
    on = enabled;
}

void Rig::FakeTcp::connect(const std::string &address, int port) {
    rig.note("net connect " + address + ":" + std::to_string(port));
    rig.on_connect(address, port);
}

void Rig::FakeTcp::send(std::string_view bytes) {
    rig.note("net -> " + visible(bytes));
    rig.on_send(bytes);
}

void Rig::FakeProcesses::run(const ShellCommand &command, milliseconds) {
    std::string line = "run " + command.program;
    for (const std::string &argument : command.arguments)
        line += " " + argument;
    rig.note(line);
    rig.on_run(command);
}

void Rig::answer(bool yes) {
    if (answers.empty())
        throw std::logic_error("no box waits for an answer");
    const Answered answered = answers.front();
    answers.erase(answers.begin());
    answered(yes);
}

std::string Rig::FakeHelp::show(std::string_view topic) {
    rig.help_topics.emplace_back(topic);
    return rig.help_failure;
}

void Rig::FakeBoxes::show(const Message &message, Answered answered) {
    if (answered)
        rig.answers.push_back(std::move(answered));
    rig.boxes.push_back(message);
    rig.note(record_of(message));
}

} // namespace telvox::test
