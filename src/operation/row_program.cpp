#include "operation/row_program.hpp"

#include "core/text.hpp"
#include "core/usage_error.hpp"

namespace telvox::operation {

RowProgram::RowProgram(Order order, std::unique_ptr<OwnPorts> ports, const DataFolders &folders, bool despite,
                       const Values &base)
    : order_(std::move(order)),
      despite_(despite),
      ports_(std::move(ports)),
      given_(ports_->for_program(*this)),
      program_(given_, folders),
      at_the_form_(program_, given_.scan) {
    ports_->connect(program_);
    if (!base.empty())
        at_the_form_.begin_with(base);
    program_.desk.observers.add(*this);
    plan_.over = [this](const WorkEnd &work) { ended_with(work); };
}

void RowProgram::start() {
    try {
        if (at_the_form_.begin(order_))
            plan_.start(order_, true);
    } catch (const UsageError &error) { // what was there when the order was checked has gone
        refusal_ = error.what();
    }
    if (!plan_.busy() && !result_)
        end({.outcome = RowOutcome::failed, .message = refusal_});
}

void RowProgram::cancel() { program_.cancel(); }

void RowProgram::ended_with(const WorkEnd &work) {
    if (work.outcome == Outcome::refused)
        return; // the last that was said tells why
    Attempt attempt = attempt_of(work, *order_.job, program_.desk);
    attempt.message = at_the_form_.by_path(attempt.message);
    end(std::move(attempt));
}

void RowProgram::end(Attempt attempt) {
    result_ = std::move(attempt);
    over();
}

void RowProgram::show(const Message &message, Answered answered) {
    refusal_ = joined_lines(at_the_form_.by_path(message.text));
    if (!answered)
        return;
    remark(refusal_, message.asks);
    answered(!message.asks || despite_);
}

} // namespace telvox::operation
