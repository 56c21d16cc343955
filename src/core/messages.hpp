#pragma once

#include <string>
#include <utility>
#include <vector>

namespace telvox {

enum class Icon { none, exclamation };

/// Title of the window, and of every box that names no other.
inline constexpr const char *program_title = "Telvox-A Konfiguration";
/// Title of boxes about the serial port itself.
inline constexpr const char *port_error_title = "Laufzeitfehler Schnittstelle";

/// One message box with an OK button. Lines of the text (UTF-8) are joined by one carriage return.
struct Message {
    std::string text;
    std::string title = program_title;
    Icon icon = Icon::none;

    bool operator==(const Message &) const = default;
};

/// Shows boxes to the user (port). `show` returns at once; boxes are shown one after the other while timer
/// and serial events go on, so a hang-up finishes while the user still reads.
class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;
    virtual void show(const Message &message) = 0;
};

/// Messages of the handler that is running. They are shown only after it has ended: a box inside a timer
/// slot would let the timer re-enter.
class Outbox {
  public:
    void show(Message message) { waiting_.push_back(std::move(message)); }
    void show(std::string text) { show(Message{.text = std::move(text)}); }
    [[nodiscard]] std::vector<Message> take() { return std::exchange(waiting_, {}); }

  private:
    std::vector<Message> waiting_;
};

} // namespace telvox
