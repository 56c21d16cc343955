#include "operation/all_rows.hpp"

#include "core/port_choice.hpp"
#include "core/usage_error.hpp"
#include "operation/trial.hpp"

#include <algorithm>
#include <set>
#include <utility>

namespace telvox::operation {

AllRows::AllRows(Telvox &program, PortScan &ports, MakePorts make, Timer &later)
    : program_(program), ports_(ports), make_(std::move(make)), later_(later) {
    program.add(*this);
}

Way AllRows::way_of(const Trial &trial) const {
    if (trial.port.empty())
        return {.label = port_name("Netzwerk"), .resource = "Netzwerk", .device = {}};
    const auto number = parse_port_number(trial.port);
    return {.label = number ? port_name(port_entry(*number)) : trial.port,
            .resource = port_entry(number ? *number : ports_.number_of(trial.port)),
            .device = {}};
}

/// What a check refuses, or asks about, waits for the user; so do two devices at one cable.
std::size_t AllRows::look(const Opened &opened) {
    const std::size_t rows = opened.list.rows.size();
    opened_.emplace(opened);
    ways_.assign(rows, {});
    chosen_.assign(rows, false);
    left_ = 0;
    const TrialWorld world{
        .folders = program_.desk.folders,
        .exists = [this](const std::string &device) { return ports_.number_of(device) != 0; },
        .listed = true};
    std::set<std::pair<std::string, const JobCommand *>> at_cables;
    std::set<std::string> shared;
    std::vector<bool> cable(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        const bool open = is_to_do(opened.results.last(row));
        try {
            const Order &order = opened.orders[row];
            const Trial trial = try_out(order, opened.base, world);
            ways_[row] = way_of(trial);
            cable[row] = !trial.port.empty() && !trial.remote;
            chosen_[row] = open && trial.refusal.empty();
            // Also with a row that is done: its device may hang there yet.
            if (cable[row] && !at_cables.emplace(ways_[row].resource, order.job).second)
                shared.insert(ways_[row].resource);
        } catch (const UsageError &) { // the user sees it when he comes to it
        }
        left_ += open && !chosen_[row] ? 1 : 0;
    }
    for (std::size_t row = 0; row < rows; ++row)
        if (chosen_[row] && cable[row] && shared.contains(ways_[row].resource)) {
            chosen_[row] = false;
            ++left_;
        }
    return static_cast<std::size_t>(std::count(chosen_.begin(), chosen_.end(), true));
}

void AllRows::begin(bool identifies, bool again) {
    runs_ = true;
    identifies_ = identifies;
    again_ = again;
    begin_rows(false);
}

void AllRows::begin_rows(bool held) {
    failed_ = 0;
    steps_.clear();
    work_ = std::make_unique<SideBySide>(
        SideBySide::Rows{.list = opened_->list,
                         .results = opened_->results,
                         .ways = ways_,
                         .is_to_do = [this](std::size_t row) { return chosen_[row]; },
                         .order =
                             [this](std::size_t row) {
                                 Order order = opened_->orders[row];
                                 if (!identifies_)
                                     order.values.emplace("geraet-pruefen", Given{"aus", {}});
                                 return order;
                             },
                         .base = opened_->base,
                         .make = make_,
                         .folders = program_.desk.folders,
                         .now = opened_->now,
                         .port_name = port_name},
        later_);
    work_->starts = [this](std::size_t row, RowProgram &program) {
        program.step = [this, row](std::string_view text) { steps_[row] = text; };
    };
    work_->ended = [this](std::size_t row, const Attempt &attempt) {
        chosen_[row] = !is_done(attempt.outcome);
        failed_ += chosen_[row] ? 1 : 0;
    };
    work_->done = done;
    work_->unwritten = [this](const std::string &why) {
        unwritten_ = why;
        again_ = false;
    };
    work_->over = [this] {
        repeats_ = std::exchange(again_, false) && failed_ != 0 && !work_->cancelled();
        later_.restart(milliseconds{0}); // it is in the midst of its work
    };
    work_->hold(held);
    work_->begin();
}

void AllRows::tick() {
    later_.Enabled(false);
    program_.together([this] {
        if (std::exchange(repeats_, false))
            begin_rows(work_->held());
        else if (work_->running())
            work_->tick();
        else if (std::exchange(runs_, false))
            over();
    });
}

Progress AllRows::progress() const {
    const auto all = static_cast<int>(work_->rows_to_do());
    return {.step = std::min(static_cast<int>(work_->rows_ended()) + 1, all),
            .steps = all,
            .hangs_up = work_->cancelled()};
}

std::string AllRows::step(std::size_t row) const {
    const auto found = steps_.find(row);
    return found == steps_.end() ? "" : found->second;
}

std::string AllRows::summary() const {
    return std::to_string(work_->rows_ended()) + " von " + std::to_string(work_->rows_to_do()) +
           " Zeilen fertig" +
           (work_->rows_running() != 0 ? ", " + std::to_string(work_->rows_running()) + " laufen" : "") +
           (failed_ != 0 ? ", " + std::to_string(failed_) + " ohne Erfolg" : "") +
           (held() ? " (angehalten)" : "");
}

} // namespace telvox::operation
