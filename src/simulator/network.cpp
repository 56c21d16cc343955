#include "simulator/network.hpp"

#include "simulator/values.hpp"

#include <utility>

namespace telvox::simulator {

namespace {

constexpr Time latency{1};
constexpr Time before_restart{200}; ///< between the answer to "#RESET" and the restart
constexpr Time flood_pause{10};
constexpr std::size_t flood_packet = 1024;
constexpr std::size_t backlog = 10'000; ///< packets under way; lines beyond them are lost
constexpr int telnet_port = 23;
constexpr int attempts = 3; ///< to log in
constexpr std::string_view login = "tovri";
constexpr std::string_view prompt = "\r\nAT> ";
constexpr std::string_view no_address = "0.0.0.0";

constexpr char option_begin = '\xff';
constexpr std::string_view option_requests = "\xff\xfb\x01\xff\xfb\x03\xff\xfd\x18";

/// Hexadecimal digits in pairs with one kind of separator become "00-05-B6-00-1C-04"; else empty.
std::string normal_mac(std::string_view mac) {
    std::string normal;
    if (mac.size() != 17)
        return normal;
    for (std::size_t i = 0; i < mac.size(); ++i) {
        const char c = mac[i] >= 'a' && mac[i] <= 'f' ? static_cast<char>(mac[i] - 'a' + 'A') : mac[i];
        const bool separator = i % 3 == 2;
        if (separator ? mac[i] != mac[2] || (c != '-' && c != ':')
                      : std::string_view{"0123456789ABCDEF"}.find(c) == std::string_view::npos)
            return {};
        normal += separator ? '-' : c;
    }
    return normal;
}

} // namespace

Connection::Connection(std::shared_ptr<Ethernet> module, int port, Time now)
    : module_(std::move(module)), answered_at_(now + latency), seen_(now), flood_at_(now + latency) {
    if (!module_ || port != telnet_port || module_->session || module_->faults.refuses_connection)
        return;
    accepted_ = true;
    module_->session = this;
    if (misbehaves("connect", now))
        return;
    if (module_->faults.negotiates)
        say(option_requests, now);
    say("\r\nTelvox-A Ethernet\r\n\r\nUsername: ", now + Unit::processing);
}

Connection::State Connection::state(Time now) const {
    if (closed_by_host_)
        return State::closed;
    if (!module_ || now < answered_at_)
        return State::connecting;
    if (!accepted_)
        return State::rejected;
    return ends_ && now >= *ends_ ? State::closed : State::open;
}

void Connection::receive(std::string_view bytes, Time now) {
    if (state(now) != State::open || ends_)
        return;
    // A module that has started anew knows nothing of the connection.
    if (module_->session != this)
        return end(now);
    for (const char byte : bytes) {
        if (!module_->awake(now) || packets_.size() > backlog || !is_text(byte))
            continue;
        if (const auto line = line_.add(byte); line && !ends_)
            run_line(*line, now + latency + Unit::processing);
    }
}

std::string Connection::transmit(Time now) {
    if (module_ && module_->faults.floods && packets_.empty() && flood_at_ <= now &&
        state(now) == State::open) {
        say(std::string(flood_packet, '.'), now - latency);
        flood_at_ = now + flood_pause;
    }
    seen_ = now;
    std::string bytes;
    for (; !packets_.empty() && packets_.front().arrives <= now; packets_.pop_front())
        bytes += packets_.front().bytes;
    return bytes;
}

std::optional<Time> Connection::next() const {
    if (!module_ || closed_by_host_)
        return std::nullopt;
    auto due = packets_.empty() ? std::optional<Time>{} : packets_.front().arrives;
    if (answered_at_ > seen_)
        due = earlier(due, answered_at_);
    if (ends_ && *ends_ > seen_)
        due = earlier(due, ends_);
    if (module_->faults.floods && packets_.empty() && state(seen_) == State::open)
        due = earlier(due, flood_at_);
    return due;
}

void Connection::close() {
    closed_by_host_ = true;
    packets_.clear();
    if (module_ && module_->session == this)
        module_->session = nullptr;
}

bool Connection::is_text(char byte) {
    if (option_.empty() && byte != option_begin)
        return true;
    option_ += byte;
    // WILL, WON'T, DO and DON'T name an option; other commands stand alone.
    const bool names_option = option_.size() > 1 && option_[1] >= '\xfb' && option_[1] <= '\xfe';
    if (option_.size() == (names_option ? 3u : 2u))
        module_->options_answered += std::exchange(option_, {});
    return false;
}

void Connection::run_line(const std::string &line, Time at) {
    if (asks_ == Asks::command)
        return run_command(line, at);
    if (misbehaves(asks_ == Asks::user ? "Username" : "Password", at))
        return;
    if (asks_ == Asks::user) {
        user_ = line;
        asks_ = Asks::password;
        say("\r\nPassword: ", at);
    } else if (user_ == login && line == login && !module_->faults.refuses_login) {
        asks_ = Asks::command;
        say(prompt, at);
    } else {
        asks_ = Asks::user;
        say("\r\nLogin incorrect\r\n\r\nUsername: ", at);
        if (++failures_ == attempts)
            end(at);
    }
}

void Connection::run_command(const std::string &line, Time at) {
    constexpr std::string_view reset = "#RESET";
    const auto equals = line.find('=');
    if (misbehaves(equals == std::string::npos ? line : line.substr(0, equals + 1), at))
        return;
    const Reply reply = line.empty() || line == reset ? Reply{} : module_->set(line);
    const bool says_ok = !line.empty() && !module_->faults.never_ok;
    say(reply.verdict == Verdict::error ? "\r\nERROR\r\n" : says_ok ? "\r\nOK\r\n" : "", at);
    say(prompt, at);
    if (line == reset) {
        module_->restart(at + before_restart);
        end(at + before_restart);
    }
}

bool Connection::misbehaves(std::string_view step, Time at) {
    const auto &faults = module_->faults;
    if (step.empty())
        return false;
    if (step == faults.error_at)
        say("\r\nERROR\r\n" + std::string{prompt}, at);
    else if (step == faults.closes_at)
        end(at);
    return step == faults.error_at || step == faults.closes_at || step == faults.mute_at;
}

void Connection::say(std::string_view text, Time at) {
    Time arrives = std::max(at + latency, packets_.empty() ? Time{0} : packets_.back().arrives);
    if (!module_->faults.one_byte_packets) {
        packets_.push_back({arrives, std::string{text}});
        return;
    }
    for (const char byte : text)
        packets_.push_back({++arrives, {byte}});
}

/// The close follows what was said.
void Connection::end(Time at) {
    ends_ = std::max(at + latency, packets_.empty() ? Time{0} : packets_.back().arrives);
    if (module_->session == this)
        module_->session = nullptr;
}

std::optional<Time> Network::ping(std::string_view address, Time now) {
    if (const auto entry = bound_.find(address); entry != bound_.end()) {
        for (const auto &module : modules_) {
            if (module->mac() == entry->second && module->address() == no_address && module->awake(now))
                module->take_address(entry->first);
        }
    }
    if (!module_at(address, now))
        return std::nullopt;
    return 2 * latency + Time{pings_++ % 3};
}

bool Network::bind(std::string_view address, std::string_view mac) {
    const std::string normal = normal_mac(mac);
    if (!ip_address(address) || address == no_address || normal.empty())
        return false;
    bound_[std::string{address}] = normal;
    return true;
}

std::unique_ptr<Connection> Network::connect(std::string_view address, int port, Time now) {
    return std::make_unique<Connection>(module_at(address, now), port, now);
}

/// A static entry goes before what the network would answer.
std::shared_ptr<Ethernet> Network::module_at(std::string_view address, Time now) {
    const auto entry = bound_.find(address);
    for (const auto &module : modules_) {
        if (address != no_address && module->address() == address && module->awake(now) &&
            (entry == bound_.end() || entry->second == module->mac()))
            return module;
    }
    return nullptr;
}

} // namespace telvox::simulator
