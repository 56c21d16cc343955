#include "cli/row_program.hpp"

#include "core/text.hpp"
#include "core/usage_error.hpp"

namespace telvox::cli {

RowProgram::RowProgram(const Call &call, Order order, std::string label, std::shared_ptr<PortMap> map,
                       const DataFolders &folders, Outputs &out)
    : call_(call),
      order_(std::move(order)),
      label_(std::move(label)),
      out_(out),
      ports_(std::move(map)),
      log_(out.remarks, call.trace),
      program_(ports_.for_program(*this), folders),
      at_the_form_(program_, ports_.scan) {
    ports_.connect(program_);
    if (call.trace)
        program_.record().added = [this](const RecordLine &line) {
            if (line.kind != RecordLine::Kind::input)
                out_.remarks.line(label_ + ": " + text_of(line));
        };
    program_.desk.observers.add(*this);
}

void RowProgram::start() {
    try {
        at_the_form_.work(order_);
    } catch (const UsageError &error) { // what was there when the list was checked has gone
        refusal_ = error.what();
    }
    if (!program_.busy() && !result_)
        end({.outcome = RowOutcome::failed, .message = refusal_});
}

void RowProgram::cancel() { program_.cancel(); }

void RowProgram::ended(const JobEnd &job) {
    Attempt attempt{.outcome = row_outcome(job.outcome)};
    if (went_well(job.outcome) && order_.job->result)
        attempt.message = found_out(*order_.job, program_.desk);
    else
        for (const Message &message : job.said)
            attempt.message = joined_lines(at_the_form_.by_path(message.text));
    log_.end(went_well(job.outcome));
    end(std::move(attempt));
}

void RowProgram::end(Attempt attempt) {
    result_ = std::move(attempt);
    over();
}

void RowProgram::show(const Message &message, Answered answered) {
    const std::string text = joined_lines(at_the_form_.by_path(message.text));
    refusal_ = text;
    if (!answered)
        return;
    out_.remarks.line(label_ + ": " + text +
                      (!message.asks   ? ""
                       : call_.despite ? " (Ja)"
                                       : " (Nein; --trotzdem bedeutet Ja)"));
    answered(!message.asks || call_.despite);
}

} // namespace telvox::cli
