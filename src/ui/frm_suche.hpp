#pragma once

#include "ui/form.hpp"

namespace telvox {

/// What was found at the free ports, while they are asked and afterwards.
class FrmSuche : public Form {
  public:
    FrmSuche() : Form("frmSuche", "Angeschlossene Geräte") {
        tblSuche.columns = {"Schnittstelle", "Ergebnis", "Format", "Beschreibung"};
        tblSuche.marked = 1; // what was found
        tblSuche.enter = &cbuUebernehmen;
        tblSuche.spoken_name = "Schnittstellen";
        tblSuche.tool_tip = "Enter übernimmt das gewählte Gerät in das Hauptfenster.";
        cbuUebernehmen.tool_tip =
            "Stellt im Hauptfenster Typ, Schnittstelle und Format auf das gewählte Gerät ein.";
        cancel = &cbuSuche_Schliessen;
        for (Control *control :
             {static_cast<Control *>(&cbuUebernehmen), static_cast<Control *>(&cbuSuche_Schliessen)})
            control->recorded = false; // what it fills in is
    }

    Label lblSuche{*this, "lblSuche"};
    RowTable tblSuche{*this, "tblSuche"};
    Button cbuUebernehmen{*this, "cbuUebernehmen", "Über&nehmen"};
    Button cbuSuche_Schliessen{*this, "cbuSuche_Schliessen", "&Schließen"};

    void reset() override { tblSuche.selected = RowTable::none; }
};

} // namespace telvox
