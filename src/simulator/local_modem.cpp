#include "simulator/local_modem.hpp"

#include <utility>

namespace telvox::simulator {

namespace {

constexpr Time busy_tone{2000}; ///< until an engaged line is recognised

char last_digit(std::string_view number) {
    const auto at = number.find_last_of("0123456789");
    return at == std::string_view::npos ? '\0' : number[at];
}

} // namespace

const Command<LocalModem> LocalModem::commands[] = {
    {"AT", Form::plain, [](LocalModem &, std::string_view) { return Reply{}; }},
    {"ATH", Form::plain,
     [](LocalModem &modem, std::string_view) {
         modem.hang_up();
         return Reply{};
     }},
    {"ATZ", Form::plain,
     [](LocalModem &modem, std::string_view) {
         modem.hang_up();
         return Reply{};
     }},
    {"ATO", Form::plain, [](LocalModem &modem, std::string_view) { return modem.go_online(); }},
    {"ATE0", Form::plain,
     [](LocalModem &modem, std::string_view) {
         modem.echo = false;
         return Reply{};
     }},
    {"ATE1", Form::plain,
     [](LocalModem &modem, std::string_view) {
         modem.echo = true;
         return Reply{};
     }},
    {"ATX3D", Form::value, [](LocalModem &modem, std::string_view number) { return modem.dial(number); }},
    {"ATD", Form::value, [](LocalModem &modem, std::string_view number) { return modem.dial(number); }},
};

LocalModem::LocalModem(Subscribers subscribers) : subscribers_(std::move(subscribers)) {}

void LocalModem::open(bool on, Time now) {
    run(now);
    open_ = on;
    from_host_.clear();
    to_host_.clear();
    if (!on)
        hang_up();
}

void LocalModem::format(const SerialFormat &format, Time now) {
    run(now);
    host_ = format;
}

void LocalModem::dtr(bool on, Time now) {
    run(now);
    if (!on)
        hang_up();
}

void LocalModem::receive(std::string_view bytes, Time now) {
    run(now);
    if (open_)
        from_host_.send(bytes, host_, now);
}

std::string LocalModem::transmit(Time now) {
    run(now);
    return to_host_.take_until(now, host_);
}

bool LocalModem::carrier(Time now) {
    run(now);
    return state_ == State::online || state_ == State::escaped;
}

std::optional<Time> LocalModem::next() const {
    const auto device = called_ ? called_->next() : std::nullopt;
    return earlier(earlier(from_host_.next(), to_host_.next()), earlier(timer_, device));
}

void LocalModem::drop_carrier(Time now) {
    run(now);
    if (state_ == State::online || state_ == State::escaped)
        lose_carrier();
}

void LocalModem::run(Time now) {
    while (true) {
        const auto heard = from_host_.next();
        const auto said = called_ ? called_->next() : std::nullopt;
        const auto first = earlier(earlier(heard, said), timer_);
        if (!first || *first > now)
            break;
        now_ = *first;
        if (heard == first) {
            for (const char byte : from_host_.take().bytes)
                hear(byte, now_);
        } else if (said == first) {
            const auto saying = called_->take();
            if (state_ == State::online)
                to_host_.send(saying.bytes, host_, now_);
            if (saying.drops_line)
                lose_carrier();
        } else {
            timer_ran_out();
        }
    }
    now_ = now;
}

void LocalModem::hear(char byte, Time at) {
    escape_.hear(byte, at);
    if (state_ == State::online) {
        timer_ = escape_.due();
        called_->hear(byte, at);
        return;
    }
    escape_.clear();
    if (echo)
        to_host_.send({&byte, 1}, host_, at);
    // Any character breaks off the dialling, and begins the next command.
    if (state_ == State::dialling && static_cast<unsigned char>(byte) >= ' ') {
        hang_up();
        say("NO CARRIER");
    }
    if (const auto line = line_.add(byte))
        run_line(*line);
}

void LocalModem::run_line(std::string_view line) {
    // A command begins with "AT"; what stands before it, such as an escape that came too late, is ignored.
    const auto begin = line.find("AT");
    if (begin == std::string_view::npos)
        return;
    const auto reply = run_command<LocalModem>(commands, *this, line.substr(begin)).value_or(refused);
    if (reply.verdict == Verdict::ok)
        say("OK");
    else if (reply.verdict == Verdict::error)
        say("ERROR");
}

void LocalModem::timer_ran_out() {
    timer_.reset();
    if (state_ == State::online) {
        state_ = State::escaped;
        escape_.clear();
        line_.clear();
        say("OK");
    } else if (called_ && !busy) {
        state_ = State::online;
        say(called_->nature().connect);
        called_->call(now_);
    } else {
        hang_up();
        say(busy ? "BUSY" : "NO CARRIER");
    }
}

void LocalModem::say(std::string_view text) {
    to_host_.send("\r\n" + std::string{text} + "\r\n", host_, now_);
}

Reply LocalModem::dial(std::string_view number) {
    const char digit = last_digit(number);
    if (digit == '\0' || state_ == State::escaped)
        return refused;
    const auto subscriber = subscribers_.find(digit);
    const bool answers = subscriber != subscribers_.end() && !subscriber->second->silent;
    called_ = answers ? subscriber->second : nullptr;
    state_ = State::dialling;
    timer_ = now_ + (busy ? busy_tone : called_ ? called_->nature().ring : ring_limit);
    return {.verdict = Verdict::asks};
}

Reply LocalModem::go_online() {
    if (state_ != State::escaped)
        return refused;
    state_ = State::online;
    return {};
}

void LocalModem::hang_up() {
    if (called_)
        called_->release(now_);
    called_.reset();
    timer_.reset();
    escape_.clear();
    line_.clear();
    state_ = State::command;
}

void LocalModem::lose_carrier() {
    hang_up();
    say("NO CARRIER");
}

} // namespace telvox::simulator
