#pragma once

#include <functional>
#include <span>

namespace telvox {

struct Control;
struct Desk;

/// A check of the inputs that the user may overrule, and what he is told where it strikes.
struct Question {
    enum class Kind {
        question,     ///< Ja and Nein; Nein objects
        go_on_anyway, ///< Ja and Nein: "Einstellungen trotzdem übertragen?"; Nein objects
        notice,       ///< OK, and it goes on
        objection,    ///< OK, and it does not go on
    };
    bool (*strikes)(const Desk &) = nullptr;
    const char *text = "";
    Kind kind = Kind::go_on_anyway;
    Control *(*field)(Desk &) = nullptr; ///< gets the focus where it does not go on
};

/// Puts all questions that strike, one after the other, also behind one that was denied, and goes on with
/// `then` if none objects. While questions are being asked no others are.
void ask_all(Desk &desk, std::span<const Question> questions, std::function<void()> then);

} // namespace telvox
