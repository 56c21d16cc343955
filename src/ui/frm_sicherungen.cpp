#include "ui/frm_sicherungen.hpp"

#include <utility>

namespace telvox {

FrmSicherungen::FrmSicherungen() : Form("frmSicherungen", "Sicherung zurückholen") {
    tblSicherungen.columns = {"IMEI", "Zeit", "Dialog"};
    tblSicherungen.spoken_name = "Sicherungen";
    tblSicherungen.enter = &cbuSicherung_oeffnen;
    tblSicherungen.cell = [this](std::size_t row, std::size_t column) {
        const Line &line = lines_.at(row);
        return column == 0 ? line.imei : column == 1 ? line.time : line.what;
    };
    tblSicherungen.chosen = [this](std::size_t row) { tblSicherungen.selected = row; };
    cancel = &cbuSicherung_schliessen;
    cbuSicherung_schliessen.clicked = [this] { unload(); };
    cbuSicherung_oeffnen.clicked = [this] {
        unload();
        wanted(tblSicherungen.selected);
    };
    cbuSicherung_oeffnen.recorded = cbuSicherung_schliessen.recorded = false; // what the profile does is
}

void FrmSicherungen::show(std::vector<Line> lines) {
    lines_ = std::move(lines);
    tblSicherungen.rows = lines_.size();
    tblSicherungen.selected = lines_.empty() ? RowTable::none : 0;
    ++tblSicherungen.revision;
    cbuSicherung_oeffnen.enabled = !lines_.empty();
    load();
    wants_focus = &tblSicherungen;
}

} // namespace telvox
