#include "ui/frm_verlauf.hpp"

#include "core/text.hpp"

#include <algorithm>
#include <sstream>

namespace telvox {

namespace {

/// Small letters, those with dots too.
std::string searchable(std::string_view text) {
    std::string small = in_small_letters(text);
    constexpr std::string_view capitals[] = {"Ä", "Ö", "Ü"}, letters[] = {"ä", "ö", "ü"};
    for (std::size_t i = 0; i < std::size(capitals); ++i)
        for (auto at = small.find(capitals[i]); at != std::string::npos; at = small.find(capitals[i], at))
            small.replace(at, capitals[i].size(), letters[i]);
    return small;
}

} // namespace

RowTable::Mark mark_of(RowOutcome outcome) {
    return outcome == RowOutcome::succeeded ? RowTable::Mark::good
           : is_done(outcome)               ? RowTable::Mark::none // skipped, or with refusals
                                            : RowTable::Mark::bad;
}

FrmVerlauf::FrmVerlauf() : Form("frmVerlauf", "Verlauf") {
    cancel = &cbuVerlauf_schliessen;
    cbuVerlauf_schliessen.clicked = [this] { unload(); };
    tblVerlauf.columns = {"Zeit", "Typ", "IMEI", "Anschluss", "Auftrag", "Ergebnis", "Meldung"};
    tblVerlauf.marked = 5;
    tblVerlauf.enter = &cbuVerlauf_Nachweis;
    tblVerlauf.spoken_name = "Vorgänge, der neueste zuerst";
    tblVerlauf.cell = [this](std::size_t row, std::size_t column) { return cells_of(at(row))[column]; };
    tblVerlauf.mark = [this](std::size_t row) { return mark_of(at(row).outcome); };
    tblVerlauf.chosen = [this](std::size_t row) { tblVerlauf.selected = row; };
    tboFilter.tool_tip = "Zeigt nur Vorgänge, in denen jedes dieser Wörter vorkommt.";
    cbuVerlauf_Nachweis.tool_tip = "Ein Nachweis für den Kunden über den gewählten Vorgang (Enter).";
    cbuVerlauf_speichern.tool_tip = "Speichert, was der Filter zeigt.";
    for (Control *control : controls())
        control->recorded = false;
}

void FrmVerlauf::show(std::vector<HistoryLine> lines) {
    lines_ = std::move(lines);
    searched_.clear();
    choose_rows();
}

std::vector<HistoryLine> FrmVerlauf::shown() const {
    std::vector<HistoryLine> lines;
    for (auto row = rows_.rbegin(); row != rows_.rend(); ++row)
        lines.push_back(lines_[*row]);
    return lines;
}

const HistoryLine *FrmVerlauf::chosen() const {
    return tblVerlauf.selected < rows_.size() ? &at(tblVerlauf.selected) : nullptr;
}

void FrmVerlauf::unload() {
    show({});
    Form::unload();
}

void FrmVerlauf::compute() {
    if (open && filter_ != tboFilter.text)
        choose_rows();
    cbuVerlauf_Nachweis.enabled = chosen() != nullptr;
}

void FrmVerlauf::choose_rows() {
    filter_ = tboFilter.text;
    if (searched_.empty() && !filter_.empty())
        for (const HistoryLine &line : lines_) {
            searched_.emplace_back();
            for (const std::string &cell : cells_of(line))
                searched_.back() += searchable(cell) + "\n";
        }
    rows_.clear();
    for (std::size_t i = lines_.size(); i-- > 0;) {
        std::istringstream words(searchable(filter_));
        bool all = true;
        for (std::string word; all && words >> word;)
            all = searched_[i].find(word) != std::string::npos;
        if (all)
            rows_.push_back(i);
    }
    tblVerlauf.rows = rows_.size();
    tblVerlauf.selected = rows_.empty() ? RowTable::none : 0;
    ++tblVerlauf.revision;
    lblAnzahl.caption = (rows_.size() == lines_.size() ? "" : std::to_string(rows_.size()) + " von ") +
                        std::to_string(lines_.size()) + (lines_.size() == 1 ? " Vorgang" : " Vorgänge");
    cbuVerlauf_speichern.enabled = !rows_.empty();
}

} // namespace telvox
