#include "ui/frm_vergleich.hpp"

#include <algorithm>
#include <utility>

namespace telvox {

FrmVergleich::FrmVergleich() : Form("frmVergleich", "Vergleich") {
    tblVergleich.columns = {"Angabe", "Soll", "Ist"};
    tblVergleich.spoken_name = "Einstellungen, Soll und Ist";
    tblVergleich.marked = 2;
    tblVergleich.cell = [this](std::size_t row, std::size_t column) {
        const Line &line = lines_.at(row);
        return column == 0 ? line.name : column == 1 ? line.wanted : line.found;
    };
    tblVergleich.mark = [this](std::size_t row) {
        return lines_.at(row).differs ? RowTable::Mark::bad : RowTable::Mark::good;
    };
    tblVergleich.chosen = [this](std::size_t row) { tblVergleich.selected = row; };
    cancel = &cbuVergleich_schliessen;
    cbuVergleich_schliessen.clicked = [this] { unload(); };
    cbuVergleich_schliessen.recorded = false; // it looks only
}

void FrmVergleich::show(std::string result, std::vector<Line> lines) {
    lblErgebnis.caption = std::move(result);
    lines_ = std::move(lines);
    std::stable_sort(lines_.begin(), lines_.end(),
                     [](const Line &one, const Line &other) { return one.differs && !other.differs; });
    tblVergleich.rows = lines_.size();
    tblVergleich.selected = RowTable::none;
    ++tblVergleich.revision;
    load();
    wants_focus = &cbuVergleich_schliessen;
}

} // namespace telvox
