#include "operation/search_window.hpp"

#include "core/port_choice.hpp"
#include "core/serial_format.hpp"
#include "ui/port_lists.hpp"

namespace telvox::operation {

SearchWindow::SearchWindow(Telvox &program, PortScan &ports, MakePorts make)
    : program_(program),
      desk_(program.desk),
      form_(desk_.frmSuche),
      button_(desk_.frmModem.cbuErkennen),
      ports_(ports),
      operator_(program, ports),
      search_(std::move(make), desk_.folders),
      ask_chosen_(button_.clicked) {
    button_.clicked = [this] { ask(); };
    button_.recorded = false; // no port is chosen yet
    form_.cbuUebernehmen.clicked = [this] { take(); };
    form_.cbuSuche_Schliessen.clicked = [this] {
        search_.cancel();
        form_.unload();
    };
    form_.tblSuche.chosen = [this](std::size_t row) { form_.tblSuche.selected = row; };
    form_.tblSuche.cell = [this](std::size_t row, std::size_t column) { return cell(row, column); };
    form_.tblSuche.mark = [this](std::size_t row) {
        return search_.ports()[row].found.empty() ? RowTable::Mark::none : RowTable::Mark::good;
    };
    // The programs of a search have their own events; what they bring is drawn by one of this program's.
    search_.told = [this](const Search::At &at) { program_.together([&] { note(at); }); };
    program.add(*this);
    desk_.observers.add(*this);
}

void SearchWindow::ask() {
    FrmModem &main = desk_.frmModem;
    if (!main.cobSchnittstelle.text.empty())
        return ask_chosen_();
    if (program_.busy())
        return desk_.outbox.show_unrecorded(already_running);
    if (!main.optDirektverbindung.value)
        main.optDirektverbindung.choose(); // it is the cable that is searched
    prz_freie_Schnittstellen(desk_, ports_);
    for (auto &[message, answered] : desk_.outbox.waiting())
        message.recorded = false;
    if (main.cobSchnittstelle.text.empty())
        return begin();
    // The only one there is: that is the choice.
    program_.select(main.cobSchnittstelle, std::string(main.cobSchnittstelle.text));
    button_.recorded = true;
    program_.click(button_);
}

void SearchWindow::begin() {
    Values given;
    if (const std::string &format = desk_.session.strCOMparameter_direkt; parse_format(format))
        given["com-direkt"] = {format, {}};
    form_.load();
    desk_.focus(form_.tblSuche);
    search_.begin(desk_.ports, given);
    form_.tblSuche.rows = search_.ports().size();
    if (search_.ports().empty()) // which a box has said
        form_.unload();
    if (!search_.running())
        return;
    desk_.frmModem.StatusBar.text = "Suche an allen freien Schnittstellen";
    desk_.prz_Eingaben_deaktivieren();
}

void SearchWindow::note(const Search::At &at) {
    ++form_.tblSuche.revision;
    if (!at.found.empty() && form_.tblSuche.selected == RowTable::none)
        form_.tblSuche.selected = static_cast<std::size_t>(&at - search_.ports().data());
    if (search_.running())
        return;
    desk_.prz_Eingaben_aktivieren();
    desk_.frmModem.StatusBar.text = "Bereit";
}

void SearchWindow::take() {
    const Values found = search_.ports()[form_.tblSuche.selected].found;
    search_.cancel();
    form_.unload();
    operator_.fill_main_window(found);
}

std::string SearchWindow::cell(std::size_t row, std::size_t column) const {
    const Search::At &at = search_.ports()[row];
    switch (column) {
    case 0:
        return port_entry(at.port.number);
    case 1:
        return at.over ? at.said : "wird gefragt…";
    case 2:
        return !at.found.empty() ? at.found.at("com-direkt").value : "";
    default:
        return at.port.device + (at.port.device.empty() || at.port.description.empty() ? "" : ", ") +
               at.port.description;
    }
}

std::string SearchWindow::heading() const {
    const std::size_t all = search_.ports().size(), found = search_.found();
    const std::string ports = std::to_string(all) + (all == 1 ? " Schnittstelle" : " Schnittstellen");
    if (search_.running())
        return "Suche an " + ports + " gleichzeitig, gefunden: " + std::to_string(found);
    return (search_.cancelled() ? "Die Suche wurde abgebrochen. " : "") +
           (found != 0 ? std::to_string(found) + (found == 1 ? " Gerät" : " Geräte") + " an " + ports +
                             " gefunden. Enter übernimmt das gewählte."
                       : "An " + ports + " wurde kein Telvox-A gefunden. Leitung und Spannung prüfen.");
}

void SearchWindow::happened() {
    button_.recorded = !desk_.frmModem.cobSchnittstelle.text.empty();
    if (!form_.open)
        return;
    form_.lblSuche.caption = heading();
    const std::size_t row = form_.tblSuche.selected;
    form_.cbuUebernehmen.enabled = row < search_.ports().size() && !search_.ports()[row].found.empty();
}

} // namespace telvox::operation
