#include "core/text.hpp"
#include "operation/list_pane.hpp"

#include <array>

namespace telvox::operation {

namespace {

/// The pane's columns that are not the list's.
constexpr std::array own_columns = {"Zeile", "Name", "Ergebnis", "Meldung", "Auftrag", "Zeit", "Anschluss"};

const char *told_of_cable(CableWatch::Seen seen) {
    switch (seen) {
    case CableWatch::Seen::there:
        return " – Gerät wechseln";
    case CableWatch::Seen::gone:
        return " – Gerät abgesteckt";
    case CableWatch::Seen::back:
        return " – wieder ein Gerät am Kabel";
    default:
        return "";
    }
}

} // namespace

void ListPane::show_columns() {
    main_.tblListe.columns.assign(own_columns.begin(), own_columns.end());
    for (const std::string &column : work_->list.columns)
        main_.tblListe.columns.push_back(column);
}

std::string ListPane::cell(std::size_t row, std::size_t column) const {
    const DeviceList::Row &device = work_->list.rows[row];
    if (column >= own_columns.size()) {
        column -= own_columns.size();
        const Option *option = find_option(work_->list.columns[column]);
        const std::string &value = device.cells[column];
        return option && option->secret && !value.empty() ? Mask::hidden : value;
    }
    const Attempt last = work_->results.last(row).value_or(Attempt{});
    const std::string outcome = runs(row)                  ? "läuft"
                                : work_->results.last(row) ? word_of(last.outcome)
                                                           : "offen";
    const std::string own[] = {std::to_string(device.line),
                               device.name,
                               outcome,
                               all_ && all_->running(row) ? all_->step(row) : last.message,
                               device.job,
                               last.time,
                               last.port};
    static_assert(std::size(own) == own_columns.size());
    return own[column];
}

void ListPane::show() {
    const std::vector<DeviceList::Row> &rows = work_->list.rows;
    std::size_t well = 0, tried = 0;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        well += work_->results.done(row) ? 1 : 0;
        tried += work_->results.last(row) && !runs(row) ? 1 : 0;
    }
    main_.lblListe.caption = work_->list.source + ": " + std::to_string(well) + " von " +
                             std::to_string(rows.size()) + " erledigt" +
                             (tried > well ? ", " + std::to_string(tried - well) + " ohne Erfolg" : "");
    const bool idle = !busy();
    main_.cbuListe_starten.enabled = main_.cbuListe_ueberspringen.enabled = idle && current_ != none;
    main_.cbuListe_schliessen.enabled = idle;
    main_.chkListe_pruefen.enabled = main_.chkListe_nochmal.enabled = idle; // they count at a start
    const bool all = all_ && all_->running();
    main_.cbuListe_alle.enabled = main_.mnuListe_alle.enabled = all || (idle && all_);
    main_.cbuListe_alle.caption = !all ? "&Alle starten" : all_->held() ? "&Weiter" : "P&ause";
    main_.mnuListe_alle.caption = main_.cbuListe_alle.caption;
    if (all)
        main_.StatusBar.text = all_->summary();
    main_.tblListe.enabled = idle || all; // it may be longer than the pane
    main_.tblListe.selected = current_;
    ++main_.tblListe.revision;
    if (current_ == none || !idle)
        return;
    main_.cbuListe_starten.caption = work_->results.last(current_) ? "Wiede&rholen" : "Sta&rten";
    program_.tell("Gerät " + std::to_string(current_ + 1) + " von " + std::to_string(rows.size()) +
                  (rows[current_].name.empty() ? "" : ": " + rows[current_].name) +
                  (told_.empty() ? "" : " (" + told_ + ")") + (watch_ ? told_of_cable(watch_->seen()) : "") +
                  (hint_.empty() ? "" : " – " + hint_));
}

} // namespace telvox::operation
