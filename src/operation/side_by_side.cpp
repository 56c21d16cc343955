#include "operation/side_by_side.hpp"

#include <utility>

namespace telvox::operation {

namespace {

std::vector<std::string> resources_of(const std::vector<Way> &ways) {
    std::vector<std::string> resources;
    for (const Way &way : ways)
        resources.push_back(way.resource);
    return resources;
}

} // namespace

bool is_to_do(const std::optional<Attempt> &last, bool again) {
    return !last || (last->outcome == RowOutcome::begun ? again : !is_done(last->outcome));
}

SideBySide::SideBySide(Rows rows, Timer &later)
    : rows_(std::move(rows)), later_(later), run_(resources_of(rows_.ways)) {
    for (std::size_t row = 0; row < rows_.ways.size(); ++row)
        if (rows_.is_to_do(row))
            ++to_do_;
        else
            run_.leave_out(row);
}

void SideBySide::begin() {
    runs_ = true;
    start_rows();
}

void SideBySide::start_rows() {
    const std::vector<std::size_t> rows = held_ ? std::vector<std::size_t>{} : run_.start();
    std::vector<std::pair<std::size_t, Attempt>> begun;
    for (const std::size_t row : rows)
        begun.push_back(
            {row, {.outcome = RowOutcome::begun, .time = rows_.now(), .port = rows_.ways[row].label}});
    const bool noted = begun.empty() || note(std::move(begun));
    for (const std::size_t row : rows)
        if (noted)
            start_row(row);
        else
            run_.end(row, RowOutcome::cancelled);
    const bool waits = held_ && ended_ < to_do_ && !cancelled_;
    if (running_.empty() && over_.empty() && !waits && std::exchange(runs_, false))
        over();
}

void SideBySide::start_row(std::size_t row) {
    Running &running = running_[row];
    running.program = std::make_unique<RowProgram>(rows_.order(row), rows_.make(rows_.ways[row].device),
                                                   rows_.folders, rows_.despite, rows_.base);
    RowProgram *program = running.program.get();
    running.journal = std::make_unique<Journal>(program->program(), [this, program](DoneJob job) {
        job.line.message = program->by_path(job.line.message);
        done_.push_back(std::move(job));
    });
    running.journal->device = [this, row] { return label_of(rows_.list.rows[row]); };
    running.journal->port_name = [this, row](const std::string &entry) {
        return rows_.ways[row].device.empty() ? rows_.port_name(entry) : rows_.ways[row].label;
    };
    starts(row, *program);
    program->done_before([this, row](const std::string &imei) { return done_before(row, imei); });
    // The others that are over by now come before the results are noted, and wait for the disk together.
    program->over = [this, row, before = program->over] {
        before();
        over_.push_back(row);
        later_.restart(milliseconds{0});
    };
    program->start();
}

std::string SideBySide::done_before(std::size_t row, const std::string &imei) {
    const auto &rows = rows_.list.rows;
    const auto [first, is_new] = at_devices_.emplace(std::pair(imei, rows[row].job), row);
    if (!is_new && first->second != row)
        return named(rows[first->second]);
    return device_of_other_row(rows_.list, rows_.results, row, imei);
}

/// What nobody knows of would be done again, so nothing more starts once something could not be written.
bool SideBySide::note(std::vector<std::pair<std::size_t, Attempt>> attempts) {
    const std::string why = rows_.results.append(std::move(attempts));
    if (why.empty())
        return true;
    run_.stop();
    unwritten(why);
    return false;
}

void SideBySide::tick() {
    later_.Enabled(false);
    std::vector<std::pair<std::size_t, Attempt>> results;
    for (const std::size_t row : std::exchange(over_, {})) {
        Attempt attempt = running_.at(row).program->result();
        running_.erase(row);
        attempt.time = rows_.now();
        attempt.port = rows_.ways[row].label;
        results.emplace_back(row, std::move(attempt));
    }
    static_cast<void>(note(results));
    if (!done_.empty())
        done(std::exchange(done_, {}));
    for (const auto &[row, attempt] : results) {
        ++ended_;
        run_.end(row, attempt.outcome);
        ended(row, attempt);
    }
    start_rows();
}

void SideBySide::hold(bool on) {
    held_ = on;
    if (runs_)
        start_rows();
}

void SideBySide::cancel() {
    cancelled_ = true;
    run_.stop();
    for (const auto &[row, running] : running_)
        running.program->cancel();
    if (runs_)
        start_rows(); // nothing may be left that runs
}

} // namespace telvox::operation
