#include "operation/cable_watch.hpp"

#include "dialogues/families.hpp"

#include <string>

namespace telvox::operation {

namespace {

using namespace std::chrono_literals;

constexpr milliseconds between = 2s, answers_within = 1200ms, looks_for = 3min;

} // namespace

void CableWatch::begin(ModemType type, int port, const SerialFormat &format) {
    end();
    question_ = family_of(type).presence;
    if (!question_)
        return;
    port_.CommPort(port);
    port_.Settings(format);
    until_ = timer_.now() + looks_for;
    timer_.restart(between);
}

void CableWatch::end() {
    timer_.Enabled(false);
    port_.PortOpen(false);
    seen_ = Seen::nothing;
}

void CableWatch::tick() {
    timer_.Enabled(false);
    const Seen before = seen_;
    if (port_.PortOpen())
        look();
    else if (timer_.now() >= until_ || !ask())
        end();
    if (seen_ != before)
        noticed();
}

/// Somebody else may have the port, which says nothing of the device.
bool CableWatch::ask() {
    if (!port_.PortOpen(true).empty())
        return false;
    port_.Output(std::string(question_) + "\r");
    timer_.restart(answers_within);
    return true;
}

void CableWatch::look() {
    const bool answers = !port_.Input().empty();
    port_.PortOpen(false);
    seen_ = !answers ? Seen::gone : seen_ == Seen::gone ? Seen::back : Seen::there;
    if (seen_ != Seen::back)
        timer_.restart(between);
}

} // namespace telvox::operation
