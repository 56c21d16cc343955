#pragma once

#include "core/messages.hpp"
#include "core/network.hpp"
#include "core/observer.hpp"
#include "net/ping.hpp"
#include "net/telnet.hpp"

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// What a button of a network dialog does: a ping, before it perhaps the entry that gives a device without an
/// address one, and after it perhaps a Telnet dialogue.
struct NetworkAction {
    PingRule rule = PingRule::any_answer;
    bool first_entry = false;      ///< binds the address to the MAC address first
    bool full_after_ping = false;  ///< the bar is full already when the dialogue begins
    const char *reached = nullptr; ///< box when the device answers and that is all
    const char *unreached = "";    ///< box when it does not
    const char *done = nullptr;    ///< box of a dialogue that came to its reset
    const char *failed = nullptr;  ///< and of one that did not
};

/// What an action works with; copied from the fields when it starts.
struct NetworkTask {
    std::string address; ///< that is pinged, and connected to
    std::string mac;     ///< "00-05-B6-00-1C-04"
    std::span<const Prompt> dialogue;
    TelnetValues values;
};

/// Where a dialog shows an action; all of it outlives the action.
struct NetworkPane {
    std::string &log;
    int &progress;
    int progress_maximum;
    bool &running;
};

/// Runs the one action on the network. It has its own timer and does not touch the jobs of the serial line.
class NetworkTools {
  public:
    /// Everything that it works on; all of it outlives it.
    struct Context {
        TcpClient &Winsock;
        Processes &processes;
        Timer &Timer2;
        Outbox &outbox;
        const std::filesystem::path &data_folder;
        const Observers &observers; ///< hear what goes into the log
        /// Take the beginning of each action, and its end.
        std::function<void(const Button &)> started;
        std::function<void(JobEnd)> ended;
    };

    explicit NetworkTools(const Context &context) : c_(context) {}

    /// Starts an action by this button. Not while another one runs; a box says so.
    void start(const NetworkAction &action, NetworkTask task, NetworkPane pane, const Button &by);
    [[nodiscard]] bool busy() const { return stage_ != Stage::idle; }

    /// Half a second of `Timer2`: the bar goes on, and a dialogue without progress ends.
    void Timer2_Timer();
    void Winsock_DataArrival(std::string_view bytes);
    void process_ended(const ProcessEnd &end);

    /// Ends the action at the user's wish, and says so.
    void cancel();
    /// The same without a word.
    void abandon();
    /// Nothing of it goes on: process, connection and timer.
    void stop();

    /// Adds lines to a dialog's log, which is plain text of at most 64 KB; older text gives way.
    void log(std::string &into, std::string_view text) const;

  private:
    enum class Stage { idle, route, entry, ping, dialogue };
    static constexpr milliseconds tick_period{500};
    static constexpr milliseconds ping_limit{10'000};
    static constexpr milliseconds entry_limit{5'000};
    static constexpr int telnet_port = 23;

    void ExecuteShell(Stage stage, const ShellCommand &command, milliseconds limit);
    void set_entry(const std::string &device);
    void ping();
    void after_route(const ProcessEnd &end);
    void after_entry(const ProcessEnd &end);
    void after_ping(const ProcessEnd &end);
    [[nodiscard]] std::string through_file(const std::string &output) const;
    void finish(Outcome outcome, std::string box);
    void say(std::string_view text) { log(pane_->log, text); }

    Context c_;
    Stage stage_ = Stage::idle;
    NetworkAction action_;
    NetworkTask task_;
    std::optional<NetworkPane> pane_;
    const Button *by_ = nullptr; ///< that started it
    ShellCommand command_;       ///< that runs, or ran last
    TelnetDialogue telnet_;
};

} // namespace telvox
