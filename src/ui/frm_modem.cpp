#include "ui/frm_modem.hpp"

#include <algorithm>

namespace telvox {

/// What choosing a device variant sets.
struct FrmModem::Variant {
    OptionButton FrmModem::*option;
    MenuEntry FrmModem::*menu; ///< the one variant menu that is enabled
    bool gprs_entries = false;
    const char *remote_caption = "Fernverbindung über Modem";
    bool alarms = true; ///< sends alarms, so it has receiver, provider and text
    bool forces_cable = false;
    const char *service_number = "";
    const char *service_list = "";
    bool outside_line = false;
    bool message_type = false; ///< SMS or fax can be chosen at all
    bool fax = false;
    bool password = false;
    const char *default_password = "";
    std::size_t text_limit = 0;
    bool alarm_off_as_it_was = false;
};

namespace {
/// No telephone network takes longer ones.
constexpr std::size_t longest_number = 40;
constexpr std::size_t longest_prefix = 20;
constexpr const char *default_password = "BRUNEX";
constexpr const char *sms_gateway = "090032669000";
constexpr const char *other_service_number = "andere Servicenummer aus&wählen";
constexpr const char *choose_service_center = "Service-Center Nummer aus&wählen";
} // namespace

FrmModem::FrmModem(Outbox &outbox) : Form("frmModem", program_title), outbox_(outbox) {
    static const Variant variants[] = {
        {.option = &FrmModem::optAnalog,
         .menu = nullptr,
         .service_number = sms_gateway,
         .service_list = other_service_number,
         .outside_line = true,
         .message_type = true,
         .fax = true,
         .password = true,
         .default_password = default_password,
         .text_limit = 160},
        {.option = &FrmModem::optISDN,
         .menu = &FrmModem::mnuISDN,
         .service_number = sms_gateway,
         .service_list = other_service_number,
         .outside_line = true,
         .message_type = true,
         .password = true,
         .text_limit = 160},
        {.option = &FrmModem::optGSM,
         .menu = &FrmModem::mnuGSM,
         .forces_cable = true,
         .service_list = choose_service_center,
         .text_limit = 70},
        {.option = &FrmModem::optGPRS,
         .menu = &FrmModem::mnuGSM,
         .gprs_entries = true,
         .service_list = choose_service_center,
         .text_limit = 70,
         .alarm_off_as_it_was = true},
        {.option = &FrmModem::optEthernet,
         .menu = &FrmModem::mnuEthernet,
         .remote_caption = "Verbindung über das Netzwerk",
         .alarms = false},
    };
    for (const Variant &variant : variants)
        (this->*variant.option).clicked = [this, &variant] { choose_variant(variant); };

    optDirektverbindung.clicked = [this] { optDirektverbindung_Click(); };
    optFernverbindung.clicked = [this] { optFernverbindung_Click(); };
    optSMS.clicked = [this] { enable_service_fields(true); };
    optFAX.clicked = [this] { enable_service_fields(false); };
    chkAmt.clicked = [this] { tboAmt.enabled = chkAmt.value; };
    chkPasswort.clicked = [this] { chkPasswort_Click(); };

    mnuProfil_oeffnen.keys = "Ctrl+O";
    mnuProfil_speichern.keys = "Ctrl+S";
    mnuListe_oeffnen.keys = "Ctrl+L";
    mnuNachweis.keys = "Ctrl+N";
    mnuVerlauf.keys = "Ctrl+H";
    tblListe.enter = &cbuListe_starten;
    tblListe.spoken_name = "Geräte der Liste";
    tblListe.tool_tip = "Die gewählte Zeile füllt das Formular; Enter startet.";
    cbuListe_starten.tool_tip = "Führt die gewählte Zeile aus (Enter in der Liste).";
    mnuListe_alle.keys = "F9";
    mnuListe_alle.enabled = false;
    cbuListe_alle.tool_tip =
        "Führt alle offenen Zeilen aus, die niemanden am Kabel brauchen: über ein Modem, "
        "das Netzwerk oder eine Schnittstelle für sich. F9, ebenso für Pause und Weiter.";
    chkListe_nochmal.tool_tip =
        "Nach „Alle starten“ werden Zeilen, die fehlgeschlagen sind, ein zweites Mal versucht.";
    cbuListe_ueberspringen.tool_tip = "Vermerkt die gewählte Zeile als übersprungen und geht zur nächsten.";
    cbuListe_schliessen.tool_tip =
        "Schließt die Liste; später geöffnet geht sie weiter, wo sie aufgehört hat.";
    chkListe_pruefen.value = true;
    chkListe_pruefen.tool_tip = "Fragt vor jeder Zeile, welches Gerät am Kabel hängt, damit keine das "
                                "falsche oder dasselbe noch einmal "
                                "beschreibt.";
    fraListe.visible = false;
    mnuProtokoll.keys = "Ctrl+P";
    for (Control *control : std::initializer_list<Control *>{&mnuProfil_oeffnen,
                                                             &mnuProfil_speichern,
                                                             &mnuProfil1,
                                                             &mnuProfil2,
                                                             &mnuProfil3,
                                                             &mnuProfil4,
                                                             &mnuProfil5,
                                                             &mnuSicherung,
                                                             &mnuListe_oeffnen,
                                                             &cbuListe_starten,
                                                             &cbuListe_ueberspringen,
                                                             &cbuListe_schliessen,
                                                             &chkListe_pruefen,
                                                             &chkListe_nochmal,
                                                             &cbuListe_alle,
                                                             &mnuListe_alle,
                                                             &mnuNachweis,
                                                             &mnuVerlauf,
                                                             &mnuProtokoll,
                                                             &cbuProtokoll_kopieren,
                                                             &cbuProtokoll_speichern,
                                                             &cbuProtokoll_leeren})
        control->recorded = false; // what profiles and lists do is
    tboProtokoll.spoken_name = "Protokoll";
    cbuProtokoll_kopieren.tool_tip = "Kopiert, was markiert ist, oder alles.";
    cbuProtokoll_speichern.tool_tip =
        "Speichert alles seit dem Programmstart als Text, mit den Eingaben, auch was hier geleert wurde. "
        "PIN, Passwörter und Schlüssel stehen darin als ***.";
    cbuProtokoll_leeren.tool_tip = "Leert nur diese Anzeige; gespeichert wird weiterhin alles.";
    mnuBeenden.keys = "Ctrl+Q";

    for (TextBox *number : {&tboRufnummer_Modem, &tboRufnummer_Empfaenger, &tboService_Center})
        number->max_length = longest_number;
    tboRufnummer_Modem.accepts = digits;
    tboRufnummer_Empfaenger.accepts = digits;
    tboRufnummer_Modem.phone_number = tboRufnummer_Empfaenger.phone_number = true;
    tboService_Center.accepts = digits_plus;
    tboAmt.accepts = dialling_characters;
    tboAmt.max_length = longest_prefix;
    tboAmt.spoken_name = "Zeichen zur Amtsholung";
    tboAlarmmeldung.counts_as_sent = true;
    tboAlarmmeldung.enter = &cbuParametrieren;
    tboPasswort.max_length = 254;
    tboPasswort.secret = true;
    tboPasswort.enabled = false;

    tboRufnummer_Modem.tool_tip =
        "Tragen sie in diesem Feld die Rufnummer des Telvox-A ein. Wenn das lokale Modem "
        "über eine Telefonanlage angeschlossen ist, muss evtl. eine Ziffer (meist: 0) "
        "zusätzlich eingetragen werden.";
    tboRufnummer_Empfaenger.tool_tip =
        "Geben Sie in diesem Feld die Nummer der im Fehlerfall zu alamierenden Stelle ein.";
    cbuErkennen.tool_tip =
        "Fragt das Gerät am Kabel, welches Telvox-A es ist. Am Gerät wird nichts verändert.";
    cbuTest.tool_tip = "Zum testen der Alarmmeldung auf dieses Button klicken";

    show_progress({}, false);
    pzbSchritt.spoken_name = "Fortschritt";
    cbuAbbrechen.tool_tip = "Beendet den laufenden Vorgang (Esc); eine Verbindung wird getrennt.";
    reset();
    StatusBar.text = "Bereit";
}

void FrmModem::reset() {
    for (TextBox *box : {&tboRufnummer_Modem, &tboRufnummer_Empfaenger, &tboAmt, &tboAlarmmeldung})
        box->text.clear();
    optDirektverbindung.choose();
    optSMS.choose();
    optAnalog.choose();
}

namespace {

/// In the order of `ModemType`.
constexpr OptionButton FrmModem::*type_options[] = {
    &FrmModem::optAnalog, &FrmModem::optISDN, &FrmModem::optGSM, &FrmModem::optGPRS, &FrmModem::optEthernet};

} // namespace

ModemType FrmModem::modem_type() const {
    const auto set = std::find_if(std::begin(type_options), std::end(type_options) - 1,
                                  [this](auto option) { return (this->*option).value; });
    return static_cast<ModemType>(set - std::begin(type_options));
}

OptionButton &FrmModem::option_of(ModemType type) {
    return this->*type_options[static_cast<std::size_t>(type)];
}

void FrmModem::choose_variant(const Variant &variant) {
    const ModemType type = modem_type();
    mnuISDN.enabled = variant.menu == &FrmModem::mnuISDN;
    mnuGSM.enabled = variant.menu == &FrmModem::mnuGSM;
    mnuGPRS_konfig.visible = mnuIPT_konfig.visible = variant.gprs_entries;
    mnuEthernet.enabled = variant.menu == &FrmModem::mnuEthernet;
    optFernverbindung.caption = variant.remote_caption;
    if (variant.forces_cable)
        optDirektverbindung.choose();
    enable_modem_fields(variant.alarms && optFernverbindung.value);

    fraService_Center.enabled = variant.alarms;
    enable_service_fields(variant.alarms);
    if (variant.alarms) {
        tboService_Center.text = variant.service_number;
        cbuSC_Uebersicht.caption = variant.service_list;
    }
    fraEmpfaenger.enabled = variant.alarms;
    chkAmt.enabled = variant.outside_line;
    chkAmt.set(false);

    fraAlarm_Ziel.visible = variant.message_type;
    optFAX.enabled = variant.fax;
    if (variant.alarms && !variant.fax && optFAX.value)
        optSMS.choose();
    fraPasswort.visible = variant.password;
    if (variant.password)
        tboPasswort.text = variant.default_password;
    if (type == ModemType::Analog)
        chkPasswort.value = tboPasswort.enabled = false;

    tboAlarmmeldung.enabled = variant.alarms;
    lblMenue_Hinweis.visible = !variant.alarms;
    if (variant.text_limit != 0) {
        lblAlarmmeldung.caption = "Alarm&meldung (max. " + std::to_string(variant.text_limit) + " Zeichen):";
        tboAlarmmeldung.max_length = variant.text_limit;
        tboAlarmmeldung.text = tboAlarmmeldung.filtered(tboAlarmmeldung.text);
    }

    cbuParametrieren.enabled = variant.alarms && !(type == ModemType::GPRS && optFernverbindung.value);
    const bool tests = type == ModemType::Analog || type == ModemType::GSM;
    if (type != ModemType::ISDN)
        cbuTest.enabled = tests;
    else if (optDirektverbindung.value)
        cbuTest.enabled = true;
    if (!variant.alarm_off_as_it_was)
        cbuAlarm_aus.enabled = variant.alarms;
}

void FrmModem::optDirektverbindung_Click() {
    enable_modem_fields(false);
    lblSchnittstelle.enabled = cobSchnittstelle.enabled = true;
    enable_cable_only_entries(true);
    if (optGPRS.value)
        cbuParametrieren.enabled = cbuAlarm_aus.enabled = true;
    if (optISDN.value)
        cbuTest.enabled = true;
}

void FrmModem::optFernverbindung_Click() {
    if (!optEthernet.value)
        enable_modem_fields(true);
    cbuTest.enabled = optAnalog.value || optGSM.value;
    if (optGPRS.value)
        cbuParametrieren.enabled = false;
    if (optGSM.value) {
        outbox_.show(
            "Die Fernparametrierung kann nur bei älteren (<2009) Telvox-A GSM vorgenommen werden.\r"
            "Modems die ab 2009 ausgeliefert wurden, können nur per Parametrierkabel konfiguriert werden.\r"
            "Im Zweifelsfall kann versucht werden eine Fernparametrierung durchzuführen.\r"
            "Sollte das Modem die Fernparametrierung nicht unterstützen, erscheint eine Fehlermeldung.");
        cbuParametrieren.enabled = true;
    }
    lblSchnittstelle.enabled = cobSchnittstelle.enabled = false;
    enable_cable_only_entries(false);
}

void FrmModem::chkPasswort_Click() {
    tboPasswort.enabled = chkPasswort.value;
    tboPasswort.text = !chkPasswort.value && optAnalog.value ? default_password : "";
}

void FrmModem::enable_modem_fields(bool on) {
    lblModemanschluss.enabled = cobModem_Port.enabled = on;
    lblRufnummer_Modem.enabled = tboRufnummer_Modem.enabled = on;
}

void FrmModem::enable_cable_only_entries(bool on) {
    mnuMSN_festlegen.enabled = mnuISDN_Anschluss.enabled = on;
    mnuPin_festlegen.enabled = mnuStatus_abfragen.enabled = on;
}

void FrmModem::enable_service_fields(bool on) {
    fraService_Center.enabled = lblService_Center.enabled = on;
    tboService_Center.enabled = cbuSC_Uebersicht.enabled = on;
}

void FrmModem::prz_Eingaben_deaktivieren() {
    fraVerbindungsart.enabled = fraModemart.enabled = fraService_Center.enabled = false;
    fraEmpfaenger.enabled = fraAlarm_Ziel.enabled = fraPasswort.enabled = false;
    tboAlarmmeldung.enabled = mnuProfil_oeffnen.enabled = mnuZuletzt.enabled = mnuListe_oeffnen.enabled =
        false;
    cbuAlarm_aus.enabled = cbuParametrieren.enabled = cbuTest.enabled = false;
}

void FrmModem::prz_Eingaben_aktivieren() {
    fraVerbindungsart.enabled = fraModemart.enabled = fraService_Center.enabled = true;
    fraEmpfaenger.enabled = fraAlarm_Ziel.enabled = fraPasswort.enabled = true;
    tboAlarmmeldung.enabled = cbuParametrieren.enabled = true;
    mnuProfil_oeffnen.enabled = mnuListe_oeffnen.enabled = true;
    mnuZuletzt.enabled = mnuProfil1.visible;
    if (optGPRS.value) {
        if (!optFernverbindung.value)
            cbuAlarm_aus.enabled = true;
    } else {
        cbuAlarm_aus.enabled = true;
        if (!optEthernet.value)
            cbuTest.enabled = true;
    }
    lblPasswort.enabled = lblService_Center.enabled = tboService_Center.enabled = true;
    if (optEthernet.value) { // it has none of all this
        enable_service_fields(false);
        fraEmpfaenger.enabled = tboAlarmmeldung.enabled = false;
        cbuParametrieren.enabled = cbuAlarm_aus.enabled = cbuTest.enabled = false;
    }
}

void FrmModem::show_progress(const Progress &progress, bool can_be_ended) {
    const bool runs = can_be_ended && progress.step != 0;
    cbuAbbrechen.visible = can_be_ended;
    lblSchritt.visible = pzbSchritt.visible = runs;
    pzbSchritt.maximum = progress.steps;
    pzbSchritt.value = progress.step;
    if (!runs)
        return;
    lblSchritt.caption =
        "Schritt " + std::to_string(progress.step) + " von " + std::to_string(progress.steps);
    constexpr milliseconds worth_telling{2000};
    if (const auto left = progress.wait - progress.passed; progress.wait > worth_telling && left.count() > 0)
        lblSchritt.caption += ", noch " + std::to_string((left.count() + 999) / 1000) + " s";
}

namespace {

/// What is known of the chosen entry, in one line; a blank keeps the line where there is nothing to say.
std::string description(const ComboBox &list) {
    std::string text = " ";
    for (std::size_t i = 0; list.enabled && i < std::min(list.items.size(), list.item_tool_tips.size()); ++i)
        if (list.items[i] == list.text)
            text = list.item_tool_tips[i];
    if (const auto line = text.find('\n'); line != std::string::npos)
        text.replace(line, 1, ", ");
    return text;
}

} // namespace

void FrmModem::compute() {
    const std::size_t used = tboAlarmmeldung.counted(tboAlarmmeldung.text);
    const std::size_t limit = tboAlarmmeldung.max_length;
    lblZeichen_frei.caption = "noch " + std::to_string(limit > used ? limit - used : 0);
    lblPort_Beschreibung.caption = description(cobSchnittstelle);
    lblModem_Beschreibung.caption = description(cobModem_Port);
}

} // namespace telvox
