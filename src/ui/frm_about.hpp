#pragma once

#include "core/messages.hpp"
#include "core/version.hpp"
#include "ui/form.hpp"

#include <string>

namespace telvox {

/// What the program is, its version, and on which terms it is given.
class FrmAbout : public Form {
  public:
    FrmAbout() : Form("frmAbout", "Info") {
        cancel = &cmdOK;
        cmdOK.clicked = [this] { unload(); };
    }

    Picture imgTelvox{*this, "imgTelvox"};
    Picture imgKWT_Logo{*this, "imgKWT_Logo"};
    Label lblTitle{*this, "lblTitle", std::string(program_title) + " " + program_version};
    Label lblDescription{
        *this, "lblDescription",
        "Konfiguriert die Alarmmodems der Reihe Telvox-A: Analog, ISDN, GSM, GPRS und Ethernet. Über das "
        "serielle Kabel, über ein lokales Modem oder, bei der Ausführung Ethernet, über das Netzwerk.\n\n"
        "Für alle, die Telvox-A einbauen, in Betrieb nehmen und warten."};
    Label lblDisclaimer{
        *this, "lblDisclaimer",
        "Dieses Programm wird ohne jede Gewährleistung bereitgestellt. Prüfen Sie nach jeder Konfiguration "
        "mit einer Alarmmeldung, ob der Alarm beim Empfänger ankommt.\n\n"
        "Verwendet Qt 6 (Core, Gui, Widgets, Network, Serial Port) unter der GNU Lesser General Public "
        "License, Version 3. Qt kann durch eine eigene Fassung ersetzt werden: unter Debian als Bibliothek, "
        "unter Windows, indem das Programm neu gebunden wird (README.md der Quellen)."};
    Button cmdOK{*this, "cmdOK", "&OK"};
};

} // namespace telvox
