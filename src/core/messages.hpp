#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace telvox {

enum class Icon { none, exclamation };
/// What a message tells, for whoever shows it with a sign of its own.
enum class Tone { plain, success, refusal, failure };

/// Title of the window, and of every box that names no other.
inline constexpr const char *program_title = "Telvox-A Konfiguration";
/// Title of boxes about the serial port itself.
inline constexpr const char *port_error_title = "Laufzeitfehler Schnittstelle";

/// Another start while something runs is refused with this.
inline constexpr const char *already_running = "Es läuft bereits ein Vorgang.";
/// Said when the user has ended something; `half_done` if a device may have got a part of it.
[[nodiscard]] inline std::string cancelled(bool half_done) {
    return std::string("Der Vorgang wurde abgebrochen.") +
           (half_done ? " Das Telvox-A ist möglicherweise nur teilweise konfiguriert." : "");
}

/// One message box, with an OK button or with Ja and Nein. Lines of the text (UTF-8) are joined by one
/// carriage return.
struct Message {
    std::string text;
    std::string title = program_title;
    Icon icon = Icon::none;
    bool asks = false; ///< Ja and Nein; Nein is the default, and what closing the box means
    /// Also Zurück, which is what closing the box means and nobody hears; Ja is the default.
    bool can_go_back = false;
    Tone tone = Tone::plain;
    std::string
        about; ///< which device, where the user works at several; stands before the text, in no record
    std::string advice;   ///< what is left to do at the window, behind the text
    bool shown = true;    ///< not if it is told elsewhere, as a row's success is in its row
    bool recorded = true; ///< part of what a record plays again; not if it answers something that is not

    bool operator==(const Message &) const = default;
};

/// Hears how a box was closed: true for OK and Ja.
using Answered = std::function<void(bool yes)>;

/// Shows boxes to the user (port). `show` returns at once; boxes are shown one after the other while timer
/// and serial events go on, so a hang-up finishes while the user still reads. `answered` (may be empty) is
/// called once, when the box has closed, never from inside `show`'s caller's handler.
class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;
    virtual void show(const Message &message, Answered answered) = 0;
};

/// Messages of the handler that is running. They are shown only after it has ended: a box inside a timer
/// slot would let the timer re-enter.
class Outbox {
  public:
    struct Entry {
        Message message;
        Answered answered;
    };

    void show(Message message) { waiting_.push_back({std::move(message), {}}); }
    void show(std::string text) { show(Message{.text = std::move(text)}); }
    /// Shows a box that no record holds: it answers something that is not played again.
    void show_unrecorded(std::string text) {
        show(Message{.text = std::move(text), .tone = Tone::refusal, .recorded = false});
    }
    /// Asks with Ja and Nein; the answer comes as an event of its own.
    void ask(std::string text, Answered answered) {
        waiting_.push_back({Message{.text = std::move(text), .asks = true}, std::move(answered)});
    }
    void ask_unrecorded(std::string text, Answered answered) {
        waiting_.push_back(
            {Message{.text = std::move(text), .asks = true, .recorded = false}, std::move(answered)});
    }
    /// The same, and the user may go back as if nothing had been asked.
    void ask_or_go_back(std::string text, Answered answered) {
        waiting_.push_back(
            {Message{.text = std::move(text), .asks = true, .can_go_back = true}, std::move(answered)});
    }
    /// Shows a box and goes on when it has been read.
    void show_then(std::string text, std::function<void()> then) {
        waiting_.push_back({Message{.text = std::move(text)}, [go_on = std::move(then)](bool) { go_on(); }});
    }
    /// What waits, for who tells it in another way too.
    [[nodiscard]] std::vector<Entry> &waiting() { return waiting_; }
    /// Drops all behind the first so many.
    void forget(std::size_t behind) { waiting_.resize(std::min(behind, waiting_.size())); }
    [[nodiscard]] std::vector<Entry> take() { return std::exchange(waiting_, {}); }
    [[nodiscard]] const std::vector<Entry> &waiting() const { return waiting_; }

  private:
    std::vector<Entry> waiting_;
};

} // namespace telvox
