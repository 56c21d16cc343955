#include "link/receiver.hpp"

#include "core/text.hpp"

#include <algorithm>
#include <utility>

namespace telvox {

void Receiver::begin() {
    clear();
    awaited_ = {};
    recognised_ = false;
}

void Receiver::clear() {
    link_.strCOM_Eingang.clear();
    acted_ = 0;
}

void Receiver::await(const Awaited &awaited) {
    if (awaited_.flag)
        job_.jobs.*awaited_.flag = false;
    awaited_ = awaited;
    if (awaited_.flag)
        job_.jobs.*awaited_.flag = true;
}

bool Receiver::handle(CommEvent event, std::span<const Reply> rows) {
    const bool data = event == CommEvent::data;
    const std::string arrived = data ? link_.comSeriell.Input() : std::string();
    if (job_.jobs.line_dropped && data)
        return false; // the local modem's own words
    link_.strCOM_Eingang.append(arrived);
    if (job_.jobs == JobState{} || job_.jobs.byteAuflege_Counter != 0)
        return false;
    if (data)
        last_arrival_ = timer_.now();
    bool acted = data && answered();
    std::uint64_t bit = 1;
    for (const Reply &row : rows) {
        if ((!data || (acted_ & bit) == 0) && holds(row, event)) {
            apply(row);
            acted_ |= bit;
            acted = true;
        }
        bit <<= 1;
    }
    recognised_ |= data && acted;
    return acted;
}

bool Receiver::value_under_way() {
    const auto coming = [this](const Answer &answer) {
        return answer.labelled && begins_line(link_.strCOM_Eingang.text(), answer.contains);
    };
    return !job_.jobs.line_dropped && timer_.now() - last_arrival_ <= gap &&
           std::any_of(awaited_.answers.begin(), awaited_.answers.end(), coming);
}

bool Receiver::answered() {
    const auto holds_one = [this](const Answer &answer) {
        return answer.contains && holds(answer.contains, answer.take);
    };
    if (std::none_of(awaited_.answers.begin(), awaited_.answers.end(), holds_one))
        return false;
    const Awaited awaited = std::exchange(awaited_, {});
    JobState &jobs = job_.jobs;
    if (awaited.flag)
        jobs.*awaited.flag = false;
    jobs.byteGPRS_Leseschritt = 0;
    jobs.*awaited.counter = awaited.becomes;
    for (const Move &move : awaited.moves)
        if (jobs.*move.when)
            jobs.*move.counter = move.becomes;
    if (awaited.restart.count() > 0)
        timer_.restart(awaited.restart);
    return true;
}

bool Receiver::holds(const char *contains, Take take) {
    ReceiveBuffer &buffer = link_.strCOM_Eingang;
    const std::size_t start = buffer.find(contains);
    return start != ReceiveBuffer::npos &&
           (!take || take(job_, {buffer.text().substr(start), start, buffer.text()}));
}

bool Receiver::holds(const Reply &row, CommEvent event) {
    const JobState &jobs = job_.jobs;
    return row.event == event && (!row.awaited || jobs.*row.awaited) && (!row.during || jobs.*row.during) &&
           (!row.at.counter || jobs.*row.at.counter == row.at.value) && (!row.when || row.when(job_)) &&
           holds(row.contains, row.take);
}

void Receiver::apply(const Reply &row) {
    JobState &jobs = job_.jobs;
    if (row.awaited)
        jobs.*row.awaited = false;
    if (row.clears)
        jobs.*row.clears = false;
    if (row.sets)
        jobs.*row.sets = true;
    if (row.counter)
        jobs.*row.counter = row.becomes;
    if (row.restart.count() > 0)
        timer_.restart(row.restart);
}

} // namespace telvox
