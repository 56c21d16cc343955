#pragma once

#include "core/messages.hpp"
#include "core/session.hpp"
#include "sequencer/progress.hpp"
#include "ui/form.hpp"

#include <array>

namespace telvox {

/// The main window: device variant, connection way, what is to be written, and the jobs' buttons.
class FrmModem : public Form {
  public:
    /// Starts with Analog, direct cable, SMS.
    explicit FrmModem(Outbox &outbox);

    [[nodiscard]] ModemType modem_type() const;
    /// The button that chooses a variant.
    [[nodiscard]] OptionButton &option_of(ModemType type);

    /// Lock the inputs while a job runs; "Beenden" and the menus stay usable.
    void prz_Eingaben_deaktivieren();
    /// Unlock them; it only enables, so a button that the variant does not offer is enabled by it too, but
    /// for Ethernet, which has nothing of the kind.
    void prz_Eingaben_aktivieren();

    /// Shows how far the running job is, and the button that ends it if there is something to end.
    void show_progress(const Progress &progress, bool can_be_ended);
    /// What the status bar shows; every dialog has one too.
    [[nodiscard]] std::array<Control *, 4> status_controls() {
        return {&StatusBar, &lblSchritt, &pzbSchritt, &cbuAbbrechen};
    }

    /// As at the start of the program, but the port lists as they are: those hold what this computer has.
    void reset() override;

    /// Updates what is computed from the fields: the characters left for the alarm text, and what is
    /// known of the chosen port.
    void compute() override;

    MenuEntry mnuDatei{*this, "mnuDatei", "&Datei"};
    MenuEntry mnuProfil_oeffnen{*this, "mnuProfil_oeffnen", "Profil ö&ffnen…", &mnuDatei};
    MenuEntry mnuProfil_speichern{*this, "mnuProfil_speichern", "Profil &speichern…", &mnuDatei};
    MenuEntry mnuZuletzt{*this, "mnuZuletzt", "&Zuletzt verwendet", &mnuDatei};
    MenuEntry mnuProfil1{*this, "mnuProfil1", {}, &mnuZuletzt};
    MenuEntry mnuProfil2{*this, "mnuProfil2", {}, &mnuZuletzt};
    MenuEntry mnuProfil3{*this, "mnuProfil3", {}, &mnuZuletzt};
    MenuEntry mnuProfil4{*this, "mnuProfil4", {}, &mnuZuletzt};
    MenuEntry mnuProfil5{*this, "mnuProfil5", {}, &mnuZuletzt};
    MenuEntry mnuSicherung{*this, "mnuSicherung", "Sicherung zurück&holen…", &mnuDatei};
    MenuEntry mnuListe_oeffnen{*this, "mnuListe_oeffnen", "&Liste öffnen…", &mnuDatei};
    MenuEntry mnuListe_alle{*this, "mnuListe_alle", "&Alle starten", &mnuDatei};
    MenuEntry mnuNachweis{*this, "mnuNachweis", "&Nachweis…", &mnuDatei};
    MenuEntry mnuVerlauf{*this, "mnuVerlauf", "&Verlauf…", &mnuDatei};
    TickEntry mnuProtokoll{*this, "mnuProtokoll", "&Protokoll", &mnuDatei};
    MenuEntry mnuBeenden{*this, "mnuBeenden", "&Beenden", &mnuDatei};
    MenuEntry mnuISDN{*this, "mnuISDN", "I&SDN"};
    MenuEntry mnuMSN_festlegen{*this, "mnuMSN_festlegen", "&MSN festlegen", &mnuISDN};
    MenuEntry mnuISDN_Anschluss{*this, "mnuISDN_Anschluss", "&Anschlussart einstellen", &mnuISDN};
    MenuEntry mnuGSM{*this, "mnuGSM", "&GSM/GPRS"};
    MenuEntry mnuPin_festlegen{*this, "mnuPin_festlegen", "&Pin eingeben", &mnuGSM};
    MenuEntry mnuStatus_abfragen{*this, "mnuStatus_abfragen", "&Status abfragen", &mnuGSM};
    MenuEntry mnuGPRS_konfig{*this, "mnuGPRS_konfig", "&GPRS konfigurieren", &mnuGSM};
    MenuEntry mnuIPT_konfig{*this, "mnuIPT_konfig", "&IP-Telemetrie konfigurieren", &mnuGSM};
    MenuEntry mnuEthernet{*this, "mnuEthernet", "&Ethernet"};
    MenuEntry mnuIPuPort{*this, "mnuIPuPort", "&IP und Port einstellen", &mnuEthernet};
    MenuEntry mnuGateway{*this, "mnuGateway", "&Gateway und Netzmaske einstellen", &mnuEthernet};
    MenuEntry mnuIP_over_Ethernet{*this, "mnuIP_over_Ethernet", "über das &Netzwerk einstellen",
                                  &mnuEthernet};
    MenuEntry mnuEinstellungen{*this, "mnuEinstellungen", "Einstell&ungen"};
    MenuEntry mnuInfo{*this, "mnuInfo", "Info"};
    MenuEntry mnuHilfe{*this, "mnuHilfe", "&Hilfe"};

    Frame fraModemart{*this, "fraModemart", "Telvox-A Typ"};
    OptionButton optAnalog{*this, "optAnalog", "Analog", &fraModemart};
    OptionButton optISDN{*this, "optISDN", "ISDN", &fraModemart};
    OptionButton optGSM{*this, "optGSM", "GSM", &fraModemart};
    OptionButton optGPRS{*this, "optGPRS", "GPRS", &fraModemart};
    OptionButton optEthernet{*this, "optEthernet", "Ethernet", &fraModemart};

    Button cbuErkennen{*this, "cbuErkennen", "Er&kennen", &fraModemart};

    Frame fraVerbindungsart{*this, "fraVerbindungsart", "Verbindungsart"};
    OptionButton optDirektverbindung{*this, "optDirektverbindung", "Direktverbindung mit Kabel",
                                     &fraVerbindungsart};
    Label lblSchnittstelle{*this, "lblSchnittstelle", "Schnittstelle:", &fraVerbindungsart};
    ComboBox cobSchnittstelle{*this, "cobSchnittstelle", {}, &fraVerbindungsart};
    OptionButton optFernverbindung{*this, "optFernverbindung", "Fernverbindung über Modem",
                                   &fraVerbindungsart};
    Label lblModemanschluss{*this, "lblModemanschluss", "Modemanschluss:", &fraVerbindungsart};
    ComboBox cobModem_Port{*this, "cobModem_Port", {}, &fraVerbindungsart};
    // What is known of the chosen port, below its list.
    Label lblPort_Beschreibung{*this, "lblPort_Beschreibung", {}, &fraVerbindungsart};
    Label lblModem_Beschreibung{*this, "lblModem_Beschreibung", {}, &fraVerbindungsart};
    Label lblRufnummer_Modem{*this, "lblRufnummer_Modem", "Rufnummer des Telvox-A:", &fraVerbindungsart};
    TextBox tboRufnummer_Modem{*this, "tboRufnummer_Modem", {}, &fraVerbindungsart};

    Frame fraEmpfaenger{*this, "fraEmpfaenger", "Empfänger"};
    Label lblRufnummer_Empfaenger{*this, "lblRufnummer_Empfaenger", "Nummer des Empfängers:", &fraEmpfaenger};
    TextBox tboRufnummer_Empfaenger{*this, "tboRufnummer_Empfaenger", {}, &fraEmpfaenger};
    CheckBox chkAmt{*this, "chkAmt", "&Zeichen zur Amtsholung:", &fraEmpfaenger};
    TextBox tboAmt{*this, "tboAmt", {}, &fraEmpfaenger};

    Frame fraService_Center{*this, "fraService_Center", "SMS Provider"};
    Label lblService_Center{*this, "lblService_Center", "Service-Center Nummer:", &fraService_Center};
    TextBox tboService_Center{*this, "tboService_Center", {}, &fraService_Center};
    Button cbuSC_Uebersicht{*this, "cbuSC_Uebersicht", {}, &fraService_Center};

    Frame fraAlarm_Ziel{*this, "fraAlarm_Ziel", "Nachrichten Typ:"};
    OptionButton optSMS{*this, "optSMS", "SMS", &fraAlarm_Ziel};
    OptionButton optFAX{*this, "optFAX", "Fa&x", &fraAlarm_Ziel};

    Frame fraPasswort{*this, "fraPasswort", "Sicherheit Konfiguration"};
    CheckBox chkPasswort{*this, "chkPasswort", "Kein Standard Passwort verwendet", &fraPasswort};
    Label lblPasswort{*this, "lblPasswort", "Passwort:", &fraPasswort};
    TextBox tboPasswort{*this, "tboPasswort", {}, &fraPasswort};

    Label lblMenue_Hinweis{*this, "lblMenue_Hinweis", "Einstellungen im Menü Ethernet"};

    Label lblAlarmmeldung{*this, "lblAlarmmeldung"};
    Label lblZeichen_frei{*this, "lblZeichen_frei"}; ///< characters left for the alarm text
    TextBox tboAlarmmeldung{*this, "tboAlarmmeldung"};

    Button cbuParametrieren{*this, "cbuParametrieren", "Modem kon&figurieren"};
    Button cbuTest{*this, "cbuTest", "Alarmmeldung senden (&Test)"};
    Button cbuAlarm_aus{*this, "cbuAlarm_aus", "Alarmfunktion deakti&vieren"};
    Button cbuBeenden{*this, "cbuBeenden", "&Beenden"};

    Frame fraProtokoll{*this, "fraProtokoll", "Protokoll"};
    Log tboProtokoll{*this, "tboProtokoll", {}, &fraProtokoll};
    Button cbuProtokoll_kopieren{*this, "cbuProtokoll_kopieren", "K&opieren", &fraProtokoll};
    Button cbuProtokoll_speichern{*this, "cbuProtokoll_speichern", "S&peichern…", &fraProtokoll};
    Button cbuProtokoll_leeren{*this, "cbuProtokoll_leeren", "&Leeren", &fraProtokoll};
    Frame fraListe{*this, "fraListe", "Geräteliste"};
    Label lblListe{*this, "lblListe", {}, &fraListe}; ///< "pumpen.csv: 12 von 30 erledigt"
    CheckBox chkListe_pruefen{*this, "chkListe_pruefen", "Gerät prüfen", &fraListe};
    RowTable tblListe{*this, "tblListe", {}, &fraListe};
    Button cbuListe_starten{*this, "cbuListe_starten", "Sta&rten", &fraListe};
    Button cbuListe_alle{*this, "cbuListe_alle", "&Alle starten", &fraListe}; ///< as the menu's, with its key
    CheckBox chkListe_nochmal{*this, "chkListe_nochmal", "am Ende noch einmal", &fraListe};
    Button cbuListe_ueberspringen{*this, "cbuListe_ueberspringen", "Überspri&ngen", &fraListe};
    Button cbuListe_schliessen{*this, "cbuListe_schliessen", "Schl&ießen", &fraListe};

    StatusPanel StatusBar{*this, "StatusBar"};
    Label lblSchritt{*this, "lblSchritt"}; ///< "Schritt 4 von 9, noch 12 s"
    ProgressBar pzbSchritt{*this, "pzbSchritt"};
    Button cbuAbbrechen{*this, "cbuAbbrechen", "Abbre&chen"};

  private:
    struct Variant;

    void choose_variant(const Variant &variant);
    void optDirektverbindung_Click();
    void optFernverbindung_Click();
    void chkPasswort_Click();
    void enable_modem_fields(bool on);
    void enable_cable_only_entries(bool on);
    void enable_service_fields(bool on);

    Outbox &outbox_;
};

} // namespace telvox
