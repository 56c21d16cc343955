#include "cli/follow.hpp"

#include <memory>

namespace telvox::cli {

void follow(RowProgram &row, const std::string &label, const Call &call, Outputs &out) {
    row.remark = [&out, label](const std::string &text) { out.remarks.line(label + ": " + text); };
    if (call.trace)
        row.program().record().added = [&out, label](const RecordLine &line) {
            if (line.kind != RecordLine::Kind::input)
                out.remarks.line(label + ": " + text_of(line));
        };
    const auto log = std::make_shared<ShownLog>(out.remarks, call.trace);
    row.logs = [log](std::string_view text) { log->take(text); };
    row.over = [log, &row] { log->end(is_done(row.result().outcome)); };
}

} // namespace telvox::cli
