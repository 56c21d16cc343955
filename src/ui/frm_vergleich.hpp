#pragma once

#include "ui/form.hpp"

#include <string>
#include <vector>

namespace telvox {

/// Shows a device's settings beside those that it should have.
class FrmVergleich : public Form {
  public:
    struct Line {
        std::string name, wanted, found;
        bool differs;
    };

    FrmVergleich();
    /// Opens with these; `result` says in a sentence what they come to.
    void show(std::string result, std::vector<Line> lines);

    Label lblErgebnis{*this, "lblErgebnis"};
    RowTable tblVergleich{*this, "tblVergleich"};
    Button cbuVergleich_schliessen{*this, "cbuVergleich_schliessen", "&Schließen"};

  private:
    std::vector<Line> lines_;
};

} // namespace telvox
