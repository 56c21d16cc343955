#include "core/lists/list_run.hpp"

#include <utility>

namespace telvox {

ListRun::ListRun(const std::vector<std::string> &resources) : rows_(resources.size()) {
    std::map<std::string, std::size_t> known;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const auto [entry, is_new] = known.emplace(resources[row], resources_.size());
        if (is_new) {
            free_.push_back(resources_.size());
            resources_.emplace_back();
        }
        rows_[row].resource = entry->second;
        resources_[entry->second].push_back(row);
    }
}

void ListRun::leave_out(std::size_t row) { rows_.at(row).state = State::done; }

std::vector<std::size_t> ListRun::start() {
    std::vector<std::size_t> started;
    for (const std::size_t key : std::exchange(free_, {})) {
        Waiting &waiting = resources_[key];
        while (!waiting.empty() && rows_[waiting.front()].state != State::open)
            waiting.pop_front();
        if (waiting.empty())
            continue;
        started.push_back(waiting.front());
        rows_[waiting.front()].state = State::running;
        waiting.pop_front();
        ++running_;
    }
    return started;
}

void ListRun::end(std::size_t row, RowOutcome outcome) {
    Row &of = rows_.at(row);
    of.state = outcome == RowOutcome::cancelled ? State::open : State::done;
    of.outcome = outcome;
    free_.push_back(of.resource);
    --running_;
}

void ListRun::stop() {
    for (Waiting &waiting : resources_)
        waiting.clear();
}

} // namespace telvox
