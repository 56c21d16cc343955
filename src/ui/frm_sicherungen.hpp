#pragma once

#include "ui/form.hpp"

#include <functional>
#include <string>
#include <vector>

namespace telvox {

/// Chooses one of the copies of what devices had before they were written.
class FrmSicherungen : public Form {
  public:
    struct Line {
        std::string imei, time, what;
    };

    FrmSicherungen();
    /// Opens with these, the first one chosen.
    void show(std::vector<Line> lines);
    /// The user wants this one, by its place; the window has closed.
    std::function<void(std::size_t line)> wanted = [](std::size_t) {};

    Label lblSicherungen{
        *this, "lblSicherungen",
        "So waren die Geräte eingestellt, bevor sie beschrieben wurden. Die gewählte Sicherung wird "
        "als Profil geöffnet; das Gerät bekommt sie erst, wenn sie geschrieben wird."};
    RowTable tblSicherungen{*this, "tblSicherungen"};
    Button cbuSicherung_oeffnen{*this, "cbuSicherung_oeffnen", "Ö&ffnen"};
    Button cbuSicherung_schliessen{*this, "cbuSicherung_schliessen", "&Schließen"};

  private:
    std::vector<Line> lines_;
};

} // namespace telvox
