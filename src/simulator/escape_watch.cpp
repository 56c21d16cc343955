#include "simulator/escape_watch.hpp"

namespace telvox::simulator {

void EscapeWatch::hear(char byte, Time now) {
    const bool silence = !last_byte_ || now - *last_byte_ >= guard_time;
    if (byte != '+')
        pluses_ = 0;
    else if (silence)
        pluses_ = 1;
    else
        pluses_ = pluses_ > 0 && pluses_ < 3 ? pluses_ + 1 : 0;
    due_ = pluses_ == 3 ? std::optional{now + guard_time} : std::nullopt;
    last_byte_ = now;
}

void EscapeWatch::clear() {
    pluses_ = 0;
    due_.reset();
}

} // namespace telvox::simulator
