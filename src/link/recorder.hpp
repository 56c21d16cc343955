#pragma once

#include "core/messages.hpp"
#include "core/timer.hpp"
#include "link/mask.hpp"
#include "link/serial_port.hpp"

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace telvox {

/// One line of a record.
struct RecordLine {
    enum class Kind {
        done,     ///< what the program did: "-> ATI\r", "open COM 3", "status Anwahl"
        received, ///< bytes that came
        event,    ///< what else happened to the line: "carrier", "lost"
        input,    ///< what the user did: "enter tboAmt 0", "click cbuTest"
    };
    milliseconds at{0};    ///< since the record began
    milliseconds begin{0}; ///< of the job that it belongs to, the last one that was started
    Kind kind = Kind::done;
    std::string text; ///< control characters as "\r", "\x1B"; secrets as "***"
    /// The pieces in which it came, if it was more than one: each may be what a reply was recognised by.
    std::vector<std::pair<milliseconds, std::string>> pieces = {};
    bool rejects = false; ///< the device's line "ERROR"

    bool operator==(const RecordLine &) const = default;
    /// Part of the dialogue with the device, which is what readers want to see; the rest is for playing it
    /// again.
    [[nodiscard]] bool of_dialogue() const { return kind != Kind::input; }
};

/// A line of the record with its time since the job began: "100 | -> ATI\r", "250 <- OK\r\n", "4000 carrier".
[[nodiscard]] std::string text_of(const RecordLine &line);
/// What a record says of a box.
[[nodiscard]] std::string record_of(const Message &message);

/// Bytes of the line as one line of readable text.
[[nodiscard]] std::string visible(std::string_view bytes);

/// Writes down what goes over a port while it passes it on.
class Recorder final : public SerialPort {
  public:
    /// Older lines go when it is full, so that a minute of noise is a minute of noise and no more.
    static constexpr std::size_t capacity = 10'000;
    using Clock = std::function<milliseconds()>;

    Recorder(SerialPort &port, Mask mask, Clock now)
        : port_(port), mask_(std::move(mask)), now_([now, zero = now()] { return now() - zero; }) {}

    /// Hears each line as soon as it is complete.
    std::function<void(const RecordLine &)> added = [](const RecordLine &) {};
    [[nodiscard]] const std::deque<RecordLine> &lines() const { return lines_; }
    /// How many lines have gone because it was full: the number of the first one in `lines`.
    [[nodiscard]] std::size_t gone() const { return gone_; }
    /// The whole, with times since the record began: a transcript, which can be played again. Where lines
    /// have gone it says so.
    [[nodiscard]] std::string transcript();

    /// While it pauses it writes nothing down of what program and user do.
    void pause(bool on) { paused_ = on; }
    /// Notes what the program did, or what happened to it.
    void note(RecordLine::Kind kind, std::string text);
    void event(CommEvent event);
    /// Notes what the user did to a control; further typing into the same one replaces what it said.
    void input(const std::string &verb, const std::string &control, const std::string &value);

    void CommPort(int number) override { port_.CommPort(number); }
    [[nodiscard]] int CommPort() const override { return port_.CommPort(); }
    void Settings(const SerialFormat &format) override;
    std::string PortOpen(bool open) override;
    [[nodiscard]] bool PortOpen() const override { return port_.PortOpen(); }
    void DTREnable(bool on) override;
    void Output(std::string_view bytes) override;
    std::string Input() override;
    bool drain(milliseconds limit) override;
    void watch_carrier(bool on) override { port_.watch_carrier(on); }

  private:
    struct Piece {
        milliseconds at;
        std::string bytes;
    };
    /// Longer than any answer's line; noise without a line end is shown in pieces of this length.
    static constexpr std::size_t longest_line = 200;

    void add(RecordLine line);
    void flush(bool line_ended = false);

    SerialPort &port_;
    Mask mask_;
    Clock now_;
    milliseconds job_{0}; ///< when the last job began
    std::deque<RecordLine> lines_;
    std::size_t gone_ = 0;
    std::vector<Piece> pending_; ///< received, the line not yet ended
    std::size_t pending_size_ = 0;
    bool paused_ = false;
    std::string begun_;           ///< of a line that came in parts, what is shown already
    bool rest_is_secret_ = false; ///< a secret was cut; the rest of its line is one too
};

} // namespace telvox
