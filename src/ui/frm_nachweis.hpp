#pragma once

#include "ui/form.hpp"

namespace telvox {

/// Asks what a record for the customer is to tell of, and who signs it.
class FrmNachweis : public Form {
  public:
    FrmNachweis() : Form("frmNachweis", "Nachweis") {
        cancel = &cbuNachweis_schliessen;
        tboVon.max_length = tboOrt.max_length = 200;
        tboVon.tool_tip = tboOrt.tool_tip = "Steht auf jedem Blatt und wird für das nächste Mal gemerkt.";
        cobUmfang.tool_tip = "Was auf den Blättern steht: je Gerät eines, bei einer Liste mit Deckblatt.";
        cbuNachweis_speichern.tool_tip = "Als PDF zum Drucken und Verschicken, oder als HTML-Seite.";
        prbNachweis.spoken_name = "Fortschritt";
        for (Control *control : controls())
            control->recorded = false;
    }

    Label lblUmfang{*this, "lblUmfang", "&Umfang:"};
    ComboBox cobUmfang{*this, "cobUmfang"};
    Label lblVon{*this, "lblVon", "&Ausgeführt von:"};
    TextBox tboVon{*this, "tboVon"};
    Label lblOrt{*this, "lblOrt", "&Ort:"};
    TextBox tboOrt{*this, "tboOrt"};
    Label lblNachweis{*this, "lblNachweis"}; ///< what is on the pages; how far they are; where they lie
    ProgressBar prbNachweis{*this, "prbNachweis"};
    Button cbuNachweis_speichern{*this, "cbuNachweis_speichern", "Nachweis &speichern…"};
    Button cbuNachweis_schliessen{*this, "cbuNachweis_schliessen", "S&chließen"};
};

} // namespace telvox
