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
    program_.desk.log_listeners.emplace_back([this](std::string_view text) { log_.take(text); });
    program_.redraw = [this] { look_whether_over(); };
}

void RowProgram::start() {
    try {
        at_the_form_.work(order_);
    } catch (const UsageError &error) { // what was there when the list was checked has gone
        said_ = error.what();
    }
    pressed_ = true;
    look_whether_over();
}

void RowProgram::cancel() { program_.cancel(); }

void RowProgram::look_whether_over() {
    if (!pressed_ || program_.busy() || std::exchange(ending_, true))
        return;
    // Boxes of the handler that has ended the job are still to come.
    QMetaObject::invokeMethod(
        &alive_, [tell = over] { tell(); }, Qt::QueuedConnection);
}

void RowProgram::show(const Message &message, Answered answered) {
    const std::string text = joined_lines(at_the_form_.by_path(message.text));
    if (!answered)
        said_ += (said_.empty() ? "" : " ") + text;
    else
        out_.remarks.line(label_ + ": " + text +
                          (!message.asks   ? ""
                           : call_.despite ? " (Ja)"
                                           : " (Nein; --trotzdem bedeutet Ja)"));
    if (answered)
        answered(!message.asks || call_.despite);
}

Attempt RowProgram::result() {
    const Outcome outcome = program_.outcome();
    const bool well = went_well(outcome);
    log_.end(well);
    if (well && order_.job->result)
        said_ = found_out(*order_.job, program_.desk);
    program_.Form_Unload();
    return {.outcome = row_outcome(outcome), .message = said_};
}

} // namespace telvox::cli
