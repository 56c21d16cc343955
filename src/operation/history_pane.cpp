#include "operation/history_pane.hpp"

#include "core/files/files.hpp"
#include "core/files/system_error.hpp"
#include "core/usage_error.hpp"

namespace telvox::operation {

HistoryPane::HistoryPane(Telvox &program, const WorkLog &log)
    : program_(program), desk_(program.desk), form_(program.desk.frmVerlauf), log_(log) {
    desk_.frmModem.mnuVerlauf.clicked = [this] { open(); };
    form_.cbuVerlauf_speichern.clicked = [this] { ask_to_save(); };
    form_.cbuVerlauf_Nachweis.clicked = [this] {
        if (const HistoryLine *line = form_.chosen())
            make_record(*line);
    };
}

void HistoryPane::open() {
    try {
        std::vector<HistoryLine> lines = log_.history().lines();
        form_.load();
        form_.show(std::move(lines));
    } catch (const UsageError &failure) {
        desk_.outbox.show_unrecorded(std::string("Der Verlauf lässt sich nicht zeigen.\r") + failure.what());
    }
}

void HistoryPane::ask_to_save() {
    desk_.files.ask({.title = "Verlauf speichern",
                     .filter = "Tabellen (*.csv)",
                     .saves = true,
                     .suggested = "Verlauf.csv"},
                    [this](const FileAnswer &answer) {
                        if (answer.path.empty())
                            return;
                        const int error = replace_file(path_of(answer.path), history_table(form_.shown()));
                        if (error != 0)
                            desk_.outbox.show_unrecorded("Der Verlauf konnte nicht gespeichert werden.\r" +
                                                         german_reason(error));
                    });
}

} // namespace telvox::operation
