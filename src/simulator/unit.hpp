#pragma once

#include "simulator/command.hpp"
#include "simulator/device.hpp"
#include "simulator/escape_watch.hpp"
#include "simulator/line_collector.hpp"

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace telvox::simulator {

/// What a device keeps. Texts stand as they came over the line, one byte per character.
struct Memory {
    std::string recipient;
    std::string text;
    std::string service_number; ///< gateway or service centre; the alarm function is off while it is empty
    std::string protocol;       ///< of a fixed-line device, "M6"
    std::string pin;
    std::string msn;
    std::string data_msn; ///< the MSN for data calls, which has a command of its own
    std::map<std::string, std::string, std::less<>> settings; ///< by the name in their command
    bool message_stored = false; ///< the message slot that a GPRS device sends as its alarm is taken
    bool text_mode = false;      ///< messages are taken as text
    bool input_armed = false;
    bool point_to_point = false;
    bool saved = true; ///< false from a change until the command that saves
    int alarms = 0;    ///< alarm messages sent

    bool operator==(const Memory &) const = default;
};

/// What of a serial format a device takes over from whoever addresses it.
enum class Adapts { nothing, stop_bits, everything };

/// What distinguishes a family as a whole.
struct Nature {
    Adapts adapts = Adapts::nothing;
    bool format_at_once = false;     ///< a format is in force behind the answer, not with the saving
    bool remote = true;              ///< can be configured in a call
    std::size_t stars = 0;           ///< a caller asks for the configuration by these; 0: by calling
    std::string_view greeting = "";  ///< answer to that
    std::string_view admission = ""; ///< answer to the right password
    std::string_view refusal = "";   ///< answer to a wrong one
    std::string_view prompt = "";    ///< stands behind every answer of a remote session
    Time ring{3000};                 ///< until it takes a call
    Time start{8000};                ///< hears nothing for this long after its power came
    std::string_view connect = "CONNECT 2400"; ///< what a modem reports of the connection
};

/// What a device with a fault does with a command instead of running it.
enum class Fault {
    unanswered, ///< nothing
    refuses,    ///< refuses it
    breaks_off, ///< ends the call
    deafens,    ///< runs it without an answer, and hears nothing more until the line is closed
    jams,       ///< the adapter keeps it to itself
    unplugs,    ///< the adapter goes away
};

/// Serial format that every device leaves the factory with.
inline constexpr SerialFormat factory_format{2400, 'e', 8, 1};

/// One Telvox-A without its line: command lines in, answers out. The same device sits on a cable or is
/// called.
class Unit {
  public:
    /// A device needs this long for a command; commands wait for one another.
    static constexpr Time processing{40};
    /// Answers that it can have in work; commands beyond them are lost.
    static constexpr std::size_t backlog = 32;

    struct Saying {
        Time at;
        std::string bytes;
        bool drops_line = false;
        std::optional<SerialFormat> format{}; ///< which the device talks in from behind this on
    };

    explicit Unit(const Nature &nature) : nature_(&nature) {}
    virtual ~Unit() = default;
    Unit(const Unit &) = delete;
    Unit &operator=(const Unit &) = delete;

    [[nodiscard]] const Nature &nature() const { return *nature_; }
    /// A call has come in.
    void call(Time now);
    /// The call is over, or the cable was plugged or its port opened: what was begun is forgotten.
    void release(Time now);
    /// Switch: the power goes off and comes back. The device is deaf until it has started, what was not saved
    /// is lost.
    void restart(Time now);
    /// Whether it has power and has started.
    [[nodiscard]] bool awake(Time now) const { return !silent && now >= awake_at_; }
    void hear(char byte, Time now);
    [[nodiscard]] std::optional<Fault> fault_at(std::string_view line) const;
    /// When the device next says something.
    [[nodiscard]] std::optional<Time> next() const;
    /// Takes what it says next; only when there is a next.
    Saying take();

    /// Serial format in which the device hears and talks.
    [[nodiscard]] const SerialFormat &format() const { return format_; }
    /// Switch: the device has had this format for long.
    void set_format(const SerialFormat &format) { format_ = chosen_ = stored_format_ = format; }
    /// The device is addressed in a format, and takes over of it what its family can.
    void adapt(const SerialFormat &heard);

    Memory memory;
    std::string password; ///< of the remote configuration; without one every caller is let in
    bool silent = false;  ///< switch: without power, neither hears nor says anything
    /// Bytes pass through to a peer instead of being commands, until "+++" with silence around it.
    bool online = false;
    bool keeps_online = false; ///< switch: does not heed the escape
    bool occupied = false;     ///< switch: another program has its cable
    bool admits = true;        ///< switch: lets callers into its configuration
    /// Switch: commands, by their beginning, that it has a fault at.
    std::map<std::string, Fault, std::less<>> faults;

  protected:
    /// Runs a command line.
    virtual Reply command(std::string_view line) = 0;
    /// Whether a question is open, so that an empty line counts as its answer.
    [[nodiscard]] virtual bool asking() const { return false; }
    [[nodiscard]] virtual bool result_codes() const { return true; }
    virtual void forget() {}
    /// The device has started anew.
    virtual void started() {}
    /// Whether the device takes a byte for something else than a command line.
    virtual bool takes(char) { return false; }
    /// Says the answer to what the device was told.
    void answer(const Reply &reply);
    /// Keeps everything but the format beyond the power going off.
    void save();
    /// Takes a format (text "9600,n,8,1") that holds as soon as the family puts a new one in force; refuses
    /// what is none.
    Reply choose_format(const std::string &settings);
    /// Puts the chosen format in force and keeps it.
    Reply save_format();
    [[nodiscard]] const SerialFormat &chosen_format() const { return chosen_; }
    /// Keeps one value for good at once, and no other.
    template <class Value> void keep(Value Memory::*field, Value value) {
        memory.*field = value;
        stored_.*field = std::move(value);
    }
    /// Ends the remote configuration; the call stays until the caller hangs up.
    void leave_remote();
    /// In a call, behind the password.
    [[nodiscard]] bool in_remote() const { return access_ == Access::remote; }
    [[nodiscard]] bool in_call() const { return access_ != Access::cable; }
    [[nodiscard]] Time now() const { return now_; }

  private:
    enum class Access { cable, locked, password, remote };

    void say(std::string bytes, const Reply &reply = {});
    void greet();
    void knock(char byte);
    Reply obey(std::string_view line);
    void run_line(std::string_view line);
    void check_password(std::string_view line);

    const Nature *nature_;
    Access access_ = Access::cable;
    bool deaf_ = false; ///< by a fault
    Time now_{0};
    Time awake_at_{0};
    Memory stored_; ///< what the device has after a start
    SerialFormat format_ = factory_format;
    SerialFormat chosen_ = factory_format;
    SerialFormat stored_format_ = factory_format;
    EscapeWatch escape_;
    std::size_t stars_ = 0;
    LineCollector line_;
    std::deque<Saying> sayings_;
};

/// Stores a value of at most `limit` characters; refuses a longer one.
Reply store(Memory &memory, std::string Memory::*field, std::string_view value, std::size_t limit);
/// Sends an alarm message. Without a service number or a recipient the alarm function is off.
Reply send_alarm(Memory &memory);

inline constexpr std::size_t number_limit = 40;
inline constexpr std::size_t text_limit = 160; ///< what one SMS holds

} // namespace telvox::simulator
