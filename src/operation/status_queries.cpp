#include "operation/status_queries.hpp"

#include <algorithm>
#include <utility>

namespace telvox::operation {

StatusQueries::StatusQueries(Telvox &program, Timer &pause)
    : program_(program), desk_(program.desk), form_(desk_.frmGSM_Status), pause_(pause) {
    form_.cbuAlles.recorded = form_.chkLaufend.recorded = false; // the queries that they press are
    form_.cbuAlles.clicked = [this] {
        begin({&form_.cbuPIN_Status, &form_.cbuReg_zustand, &form_.cbuSignalstaerke, &form_.cbuIMEI});
    };
    form_.chkLaufend.clicked = [this] {
        if (!form_.chkLaufend.value)
            return running() ? program_.cancel() : void();
        form_.forget_antenna();
        begin({&form_.cbuSignalstaerke});
    };
    program.add(*this);
    desk_.observers.add(*this);
}

void StatusQueries::begin(std::vector<Button *> queries) {
    queries_ = std::move(queries);
    next_ = 0;
    press();
}

void StatusQueries::press() {
    began_ = pause_.now();
    queries_[next_]->enabled = true;
    program_.click(*queries_[next_]);
    if (!desk_.jobs.running) // a check has said why
        stop();
}

void StatusQueries::stop() {
    pause_.Enabled(false);
    queries_.clear();
    form_.chkLaufend.value = false;
    if (!desk_.jobs.running)
        desk_.prz_Eingaben_aktivieren();
}

void StatusQueries::tick() {
    pause_.Enabled(false);
    if (running())
        program_.together([this] { press(); });
}

void StatusQueries::ended(const JobEnd &end) {
    if (!running() || end.by != queries_[next_])
        return;
    if (!went_well(end.outcome))
        return stop();
    if (form_.chkLaufend.value) {
        form_.show_antenna();
        return pause_.restart(std::max(period - (pause_.now() - began_), milliseconds{1}));
    }
    if (++next_ == queries_.size())
        return stop();
    goes_on_ = true;
}

/// A record tells the end of one job before the next one begins.
void StatusQueries::settled() {
    if (std::exchange(goes_on_, false) && running())
        program_.together([this] { press(); });
}

void StatusQueries::happened() {
    if (running())
        form_.enable_buttons(false);
}

Progress StatusQueries::progress() const {
    return {.step = form_.chkLaufend.value ? 0 : static_cast<int>(next_) + 1,
            .steps = static_cast<int>(queries_.size())};
}

} // namespace telvox::operation
