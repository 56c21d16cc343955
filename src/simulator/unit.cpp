#include "simulator/unit.hpp"

#include <algorithm>

namespace telvox::simulator {

void Unit::call(Time now) {
    release(now);
    access_ = Access::locked;
    if (!silent && nature_->remote && nature_->stars == 0)
        greet();
}

void Unit::release(Time now) {
    now_ = now;
    access_ = Access::cable;
    deaf_ = false;
    stars_ = 0;
    line_.clear();
    for (const auto &saying : sayings_)
        format_ = saying.format.value_or(format_);
    sayings_.clear();
    forget();
}

void Unit::restart(Time now) {
    release(now);
    awake_at_ = now + nature_->start;
    const int alarms = memory.alarms;
    memory = stored_;
    memory.alarms = alarms;
    format_ = chosen_ = stored_format_;
    online = false;
    escape_.clear();
    started();
}

void Unit::save() {
    memory.saved = true;
    stored_ = memory;
}

void Unit::adapt(const SerialFormat &heard) {
    if (nature_->adapts == Adapts::everything)
        format_ = chosen_ = heard;
    else if (nature_->adapts == Adapts::stop_bits)
        format_.stop_bits = chosen_.stop_bits = heard.stop_bits;
}

Reply Unit::choose_format(const std::string &settings) {
    const auto format = parse_format(settings);
    if (!format)
        return refused;
    chosen_ = *format;
    return {.changes_format = nature_->format_at_once};
}

Reply Unit::save_format() {
    stored_format_ = chosen_;
    return {.changes_format = true};
}

void Unit::hear(char byte, Time now) {
    if (!awake(now) || deaf_)
        return;
    now_ = now;
    if (online) {
        if (!keeps_online)
            escape_.hear(byte, now);
        return;
    }
    if (access_ == Access::locked) {
        knock(byte);
        return;
    }
    if (takes(byte))
        return;
    // A caller without a password does not wait for the greeting and knocks again between its commands.
    if (in_remote() && password.empty() && nature_->stars > 0 && line_.empty() && byte == '*')
        return;
    const auto line = line_.add(byte);
    if (!line)
        return;
    if (access_ == Access::password)
        check_password(*line);
    else if (sayings_.size() < backlog)
        run_line(*line);
}

void Unit::run_line(std::string_view line) {
    // On the cable noise may stand before a command.
    if (access_ == Access::cable && !asking())
        line.remove_prefix(std::min(line.find("AT"), line.size()));
    if (!line.empty() || asking())
        answer(obey(line));
}

Reply Unit::obey(std::string_view line) {
    const auto fault = fault_at(line);
    if (!fault)
        return command(line);
    if (fault == Fault::refuses)
        return refused;
    deaf_ = fault == Fault::deafens;
    if (deaf_)
        command(line);
    return {.verdict = Verdict::asks, .drops_line = fault == Fault::breaks_off};
}

std::optional<Fault> Unit::fault_at(std::string_view line) const {
    const auto found = std::find_if(faults.begin(), faults.end(),
                                    [&](const auto &entry) { return line.starts_with(entry.first); });
    return found == faults.end() ? std::nullopt : std::optional{found->second};
}

void Unit::knock(char byte) {
    stars_ = byte == '*' ? stars_ + 1 : 0;
    if (admits && nature_->remote && nature_->stars > 0 && stars_ == nature_->stars)
        greet();
}

void Unit::greet() {
    stars_ = 0;
    line_.clear();
    const bool asks = nature_->stars == 0 || !password.empty();
    access_ = asks ? Access::password : Access::remote;
    say(std::string{nature_->greeting} + std::string{asks ? "" : nature_->prompt});
}

void Unit::check_password(std::string_view line) {
    const bool right = password.empty() || line == password;
    if (right)
        access_ = Access::remote;
    else if (nature_->stars > 0)
        access_ = Access::locked;
    say(std::string{right ? nature_->admission : nature_->refusal});
}

void Unit::answer(const Reply &reply) {
    std::string bytes;
    if (!reply.text.empty())
        bytes = "\r\n" + reply.text;
    if (reply.verdict != Verdict::asks) {
        if (!reply.text.empty())
            bytes += "\r\n";
        if (result_codes() && !reply.drops_line)
            bytes += reply.verdict == Verdict::ok ? "\r\nOK\r\n" : "\r\nERROR\r\n";
        if (in_remote() && !reply.drops_line)
            bytes += nature_->prompt;
    }
    say(std::move(bytes), reply);
}

void Unit::leave_remote() {
    if (in_remote())
        access_ = Access::locked;
}

void Unit::say(std::string bytes, const Reply &reply) {
    if (bytes.empty() && !reply.drops_line && !reply.changes_format)
        return;
    const Time begin = sayings_.empty() ? now_ : std::max(now_, sayings_.back().at);
    sayings_.push_back({begin + processing, std::move(bytes), reply.drops_line,
                        reply.changes_format ? std::optional{chosen_} : std::nullopt});
}

std::optional<Time> Unit::next() const {
    const auto said = sayings_.empty() ? std::nullopt : std::optional{sayings_.front().at};
    return earlier(said, escape_.due());
}

Unit::Saying Unit::take() {
    if (const auto escaped = escape_.due(); escaped && escaped == next()) {
        escape_.clear();
        now_ = *escaped;
        online = false;
        line_.clear();
        answer({});
        return {now_, {}};
    }
    Saying saying = std::move(sayings_.front());
    sayings_.pop_front();
    if (silent)
        return {saying.at, {}};
    format_ = saying.format.value_or(format_);
    return saying;
}

Reply store(Memory &memory, std::string Memory::*field, std::string_view value, std::size_t limit) {
    if (value.size() > limit)
        return refused;
    memory.*field = value;
    memory.saved = false;
    return {};
}

Reply send_alarm(Memory &memory) {
    if (memory.service_number.empty() || memory.recipient.empty())
        return refused;
    ++memory.alarms;
    return {};
}

} // namespace telvox::simulator
