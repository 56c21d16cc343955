#include "cli/follow.hpp"

#include <memory>

namespace telvox::cli {

void follow(RowProgram &row, const std::string &label, const Call &call, Outputs &out) {
    row.remark = [&out, label, &call](const std::string &text, bool asks) {
        out.remarks.line(label + ": " + text + (asks ? std::string(" ") + answer_to_all(call.despite) : ""));
    };
    if (call.trace)
        row.program().record().added = [&out, label](const RecordLine &line) {
            if (line.of_dialogue())
                out.remarks.line(label + ": " + text_of(line));
        };
    const auto log = std::make_shared<ShownLog>(out.remarks, call.trace);
    row.logs = [log](std::string_view text) { log->take(text); };
    row.over = [log, &row] { log->end(is_done(row.result().outcome)); };
}

} // namespace telvox::cli
