#pragma once

#include "telvox.hpp"

#include <functional>
#include <string>
#include <vector>

namespace telvox::test {

/// What the program did to its outside, in order, one line each behind the time in milliseconds: "1200 | ->
/// ATI\r".
using Journal = std::vector<std::string>;

/// What differs between two journals, with all of what was done; empty: nothing.
std::string difference(const Journal &expected, const Journal &actual);

/// The reverse of `visible`: "\r", "\n", "\\" and "\xNN" become bytes, other text Windows-1252.
std::string bytes_of(std::string_view text);

/// Simulated outside: a port, timers, a socket, programs and boxes that write a journal, and a clock that the
/// test turns.
class Rig : private Observer {
  public:
    /// Without folders of a test's own there are none, and not even the superuser can make them.
    explicit Rig(DataFolders folders = {"/dev/null/none", {}});

    /// Turns the clock forward to this time; every tick that falls due on the way runs at its time.
    void turn_to(milliseconds time);
    void turn_by(milliseconds span) { turn_to(now + span); }
    /// Turns it until the session is idle, at most this far. Returns whether it is.
    bool run_until_idle(milliseconds limit);
    /// Bytes arrive from the line, in pieces of `piece` bytes (0: all at once), without time passing.
    void arrive(std::string_view bytes, std::size_t piece = 0);
    /// The adapter is unplugged.
    void lose_port() {
        port.is_open = false;
        program.comSeriell_OnComm(CommEvent::lost);
    }
    void note(const std::string &event);
    /// How the last job or action that began came out.
    [[nodiscard]] Outcome outcome() const { return ends.empty() ? Outcome::refused : ends.back().outcome; }

    /// The user closes the oldest box that somebody waits for: OK or Ja, or else Nein.
    void answer(bool yes);

    /// Opens the port lists with these free ports and chooses them.
    void choose_cable_port(int number);
    void choose_modem_port(int number);

    milliseconds now{0};
    Journal journal;
    std::vector<Message> boxes;
    std::vector<JobEnd> ends;
    std::vector<Answered> answers;    ///< of the boxes that are still open
    std::vector<PortInfo> busy_ports; ///< ports that are there but cannot be opened
    std::vector<int> free_ports{3};
    std::string open_failure;                      ///< why the port cannot be opened, empty: it can
    std::vector<std::string> help_topics;          ///< that were asked for
    std::string help_failure;                      ///< why help cannot be shown, empty: it can
    std::vector<FileQuestions::Entry> asked_files; ///< answered by the test, or never
    // The far end of the line, where a test has one.
    std::function<void(std::string_view)> on_output = [](std::string_view) {};
    std::function<void(const SerialFormat &)> on_format = [](const SerialFormat &) {};
    std::function<void(bool)> on_open = [](bool) {};
    std::function<void(bool)> on_dtr = [](bool) {};
    // The far end of the network.
    std::function<void(const std::string &address, int port)> on_connect = [](const std::string &, int) {};
    std::function<void(std::string_view)> on_send = [](std::string_view) {};
    std::function<void(const ShellCommand &)> on_run = [](const ShellCommand &) {};

  private:
    void status(std::string_view text) override { note("status " + std::string(text)); }
    void ended(const JobEnd &end) override { ends.push_back(end); }

    struct FakePort final : SerialPort {
        explicit FakePort(Rig &owner) : rig(owner) {}
        void CommPort(int value) override { number = value; }
        [[nodiscard]] int CommPort() const override { return number; }
        void Settings(const SerialFormat &value) override;
        std::string PortOpen(bool open) override;
        [[nodiscard]] bool PortOpen() const override { return is_open; }
        void DTREnable(bool on) override;
        void Output(std::string_view bytes) override;
        std::string Input() override { return std::exchange(pending, {}); }
        bool drain(milliseconds limit) override;
        void watch_carrier(bool on) override { watches = on; }

        Rig &rig;
        int number = 0;
        SerialFormat format;
        bool is_open = false;
        bool watches = false;
        bool stuck = false; ///< nothing that is written leaves it
        std::string pending;
    };
    struct FakeScan final : PortScan {
        explicit FakeScan(Rig &owner) : rig(owner) {}
        std::vector<PortInfo> ports() override;
        int number_of(const std::string &) override { return 0; }
        Rig &rig;
    };
    struct FakeTimer final : Timer {
        FakeTimer(Rig &owner, void (Telvox::*tick)()) : rig(owner), event(tick) {}
        void Interval(milliseconds value) override;
        void Enabled(bool on) override;
        [[nodiscard]] milliseconds now() const override { return rig.now; }

        Rig &rig;
        void (Telvox::*event)();
        milliseconds period{100};
        milliseconds due{0};
        bool on = false;
    };
    struct FakeTcp final : TcpClient {
        explicit FakeTcp(Rig &owner) : rig(owner) {}
        void connect(const std::string &address, int port) override;
        void send(std::string_view bytes) override;
        void close() override { rig.note("net close"); }
        Rig &rig;
    };
    struct FakeProcesses final : Processes {
        explicit FakeProcesses(Rig &owner) : rig(owner) {}
        [[nodiscard]] Tools tools() const override { return has; }
        void run(const ShellCommand &command, milliseconds limit) override;
        void kill() override { rig.note("kill"); }
        Rig &rig;
        Tools has = Tools::of_linux;
    };
    struct FakeBoxes final : MessageBoxes {
        explicit FakeBoxes(Rig &owner) : rig(owner) {}
        void show(const Message &message, Answered answered) override;
        Rig &rig;
    };
    struct FakeHelp final : HelpViewer {
        explicit FakeHelp(Rig &owner) : rig(owner) {}
        std::string show(std::string_view topic) override;
        Rig &rig;
    };
    struct FakeFiles final : FileDialogs {
        explicit FakeFiles(Rig &owner) : rig(owner) {}
        void show(const FileQuestion &question, FileAnswered answered) override {
            rig.asked_files.push_back({question, std::move(answered)});
        }
        Rig &rig;
    };

  public:
    FakePort port{*this};
    FakeScan scan{*this};
    FakeTimer timer{*this, &Telvox::Timer1_Timer};
    FakeTimer timer2{*this, &Telvox::Timer2_Timer};
    FakeTcp tcp{*this};
    FakeProcesses processes{*this};
    FakeBoxes message_boxes{*this};
    FakeHelp help{*this};
    FakeFiles files{*this};
    Telvox program;
    Telvox *served = &program; ///< that the outside belongs to
};

} // namespace telvox::test
