#include "ui/questions.hpp"

#include "ui/desk.hpp"

#include <string>
#include <utility>

namespace telvox {

namespace {

struct Asking {
    Desk &desk;
    std::span<const Question> left;
    std::function<void()> then;
    bool go_on = true;
};

void ask_next(Asking asking) {
    auto &[desk, left, then, go_on] = asking;
    while (!left.empty() && !left.front().strikes(desk))
        left = left.subspan(1);
    if (left.empty()) {
        desk.asking = false;
        if (go_on)
            then();
        return;
    }
    const Question &question = left.front();
    left = left.subspan(1);
    Outbox &outbox = desk.outbox;
    auto answered = [asking = std::move(asking), &question](bool yes) mutable {
        if (!yes) {
            asking.go_on = false;
            if (question.field)
                asking.desk.focus(*question.field(asking.desk));
        }
        ask_next(asking);
    };
    if (question.kind == Question::Kind::question)
        return outbox.ask(question.text, answered);
    if (question.kind == Question::Kind::go_on_anyway)
        return outbox.ask(question.text + std::string("\rEinstellungen trotzdem übertragen?"), answered);
    const bool goes_on = question.kind == Question::Kind::notice;
    outbox.show_then(question.text, [answered, goes_on]() mutable { answered(goes_on); });
}

} // namespace

void ask_all(Desk &desk, std::span<const Question> questions, std::function<void()> then) {
    if (std::exchange(desk.asking, true))
        return;
    ask_next({.desk = desk, .left = questions, .then = std::move(then)});
}

} // namespace telvox
