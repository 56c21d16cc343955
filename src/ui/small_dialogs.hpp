#pragma once

#include "core/job_values.hpp"
#include "ui/form.hpp"

namespace telvox {

/// Enters the SIM's PIN, which the device keeps.
class FrmPin : public Form {
  public:
    FrmPin() : Form("frmPin", "GSM PIN") {
        tboPin.accepts = digits;
        tboPin.max_length = 8; // no SIM has a longer one
        tboPin.secret = true;
        cancel = &cbuAbbruch;
        cbuAbbruch.clicked = [this] { unload(); };
    }

    Label lblPin{*this, "lblPin", "&PIN der Sim-Karte (wird im"};
    Label lblPin2{*this, "lblPin2", "Modemmodul gespeichert):"};
    TextBox tboPin{*this, "tboPin"};
    Button cbuPin_Eingabe{*this, "cbuPin_Eingabe", "PIN &einstellen"};
    Button cbuAbbruch{*this, "cbuAbbruch", "&Abbruch"};

    void reset() override { tboPin.text.clear(); }
};

/// Enters the ISDN device's multiple subscriber number.
class FrmMSN : public Form {
  public:
    FrmMSN() : Form("frmMSN", "MSN einstellen") {
        tboMSN.accepts = digits_star;
        tboMSN.max_length = 20; // no exchange has longer ones
        cancel = &cbuMSN_Abbruch;
        cbuMSN_Abbruch.clicked = [this] { unload(); };
    }

    Label lblMSN{*this, "lblMSN", "MSN (multiple subscriber &number) des"};
    Label lblMSN2{*this, "lblMSN2", "ISDN Modemmodul:"};
    TextBox tboMSN{*this, "tboMSN"};
    Label lblMSN_Hinweis{
        *this, "lblMSN_Hinweis",
        "Wenn ein Stern ' * ' eingetragen wird, werden alle ankommenden Anrufe entgegengenommen."};
    Button cbuMSN_einstellen{*this, "cbuMSN_einstellen", "MSN &einstellen"};
    Button cbuMSN_Abbruch{*this, "cbuMSN_Abbruch", "&Abbruch"};

    void reset() override { tboMSN.text.clear(); }
};

/// Chooses the ISDN device's line type.
class FrmAnschlussart : public Form {
  public:
    FrmAnschlussart() : Form("frmAnschlussart", "ISDN Anschlussart") {
        cancel = &cmdAnschlussart_Abbruch;
        cmdAnschlussart_Abbruch.clicked = [this] { unload(); };
        reset();
    }

    /// As the device's code: 0 point to multipoint, 1 point to point.
    [[nodiscard]] Counter line_type() const { return optMehrgeraeteanschluss.value ? 0 : 1; }

    Label lblAnschlussart{*this, "lblAnschlussart", "Anschlussart:"};
    OptionButton optAnlagenanschluss{*this, "optAnlagenanschluss", "&Punkt zu Punkt, Anlagenanschluss"};
    OptionButton optMehrgeraeteanschluss{*this, "optMehrgeraeteanschluss",
                                         "Punkt zu &Mehrpunkt, Mehrgeräteanschluss"};
    Button cmdAnschlussart_einstellen{*this, "cmdAnschlussart_einstellen", "Anschlussart &einstellen"};
    Button cmdAnschlussart_Abbruch{*this, "cmdAnschlussart_Abbruch", "&Abbruch"};

    void reset() override { optMehrgeraeteanschluss.choose(); }
};

/// Shown in a field of the status dialog while its value is not known.
inline constexpr const char *unknown = "-";

/// Queries a GSM device: PIN and SIM state, registration, field strength, IMEI.
class FrmGSM_Status : public Form {
  public:
    FrmGSM_Status() : Form("frmGSM_Status", "GSM Status") {
        for (TextBox *box : {&tboStatus, &tboPIN_hinterlegt, &tboReg_zustand, &tboIMEI})
            box->read_only = true;
        tboStatus.spoken_name = "PIN Status";
        tboPIN_hinterlegt.spoken_name = "PIN hinterlegt";
        tboReg_zustand.spoken_name = "Registrierungszustand";
        pzbSignalstaerke.spoken_name = "Signalstärke";
        tboIMEI.spoken_name = "IMEI";
        pzbSignalstaerke.maximum = 31; // the scale of "+CSQ"
        pzbAntenne.maximum = pzbSignalstaerke.maximum;
        pzbAntenne.spoken_name = "Signalstärke beim Ausrichten der Antenne";
        chkLaufend.tool_tip = "Fragt die Signalstärke alle drei Sekunden ab, bis es ausgeschaltet oder "
                              "abgebrochen wird: zum Ausrichten der Antenne.";
        cbuAlles.tool_tip = "Fragt PIN Status, Registrierung, Signalstärke und IMEI nacheinander ab.";
        pzbSignalstaerke.tool_tip = "Je länger der Balken, desto besser der Empfang.";
        cancel = &cbuSchließen;
        cbuSchließen.clicked = [this] { unload(); };
        reset();
    }

    /// The buttons are off while a query runs.
    void enable_buttons(bool on) {
        for (Button *button :
             {&cbuPIN_Status, &cbuReg_zustand, &cbuSignalstaerke, &cbuIMEI, &cbuAlles, &cbuSchließen})
            button->enabled = on;
    }

    /// Shows what a query has found out.
    void show(const Findings &found);
    void forget_signal() {
        signal_known = false;
        pzbSignalstaerke.value = 0;
        lblSignalwert.caption = unknown;
    }
    bool signal_known = false;
    /// Shows the signal that was measured last so that it can be read from afar, and the best so far.
    void show_antenna();
    void forget_antenna();

    void unlock() override { enable_buttons(true); }

    Button cbuPIN_Status{*this, "cbuPIN_Status", "&Pin Status abfragen"};
    Label lblStatus{*this, "lblStatus", "Status:"};
    TextBox tboStatus{*this, "tboStatus"};
    Label lblPIN_hinterlegt{*this, "lblPIN_hinterlegt", "PIN hinterlegt:"};
    TextBox tboPIN_hinterlegt{*this, "tboPIN_hinterlegt"};
    Button cbuReg_zustand{*this, "cbuReg_zustand", "&Registrierungszustand abfragen"};
    TextBox tboReg_zustand{*this, "tboReg_zustand"};
    Button cbuSignalstaerke{*this, "cbuSignalstaerke", "&Signalstärke abfragen"};
    ProgressBar pzbSignalstaerke{*this, "pzbSignalstaerke"};
    Label lblSignalstaerke{*this, "lblSignalstaerke", "< schwach"};
    Label lblSignalwert{*this, "lblSignalwert"};
    Label lblSignalstaerke_gut{*this, "lblSignalstaerke_gut", "gut >"};
    Button cbuIMEI{*this, "cbuIMEI", "Geräte &IMEI auslesen"};
    TextBox tboIMEI{*this, "tboIMEI"};
    CheckBox chkLaufend{*this, "chkLaufend", "&laufend"};
    Frame fraAntenne{*this, "fraAntenne", "Antenne ausrichten"};
    Label lblAntenne{*this, "lblAntenne", {}, &fraAntenne};
    ProgressBar pzbAntenne{*this, "pzbAntenne", {}, &fraAntenne};
    Label lblAntenne_Bester{*this, "lblAntenne_Bester", {}, &fraAntenne};
    Button cbuAlles{*this, "cbuAlles", "&Alles abfragen"};
    Button cbuSchließen{*this, "cbuSchließen", "&Fenster schließen"};

    void reset() override {
        tboStatus.text = tboPIN_hinterlegt.text = tboReg_zustand.text = tboIMEI.text = unknown;
        forget_signal();
        forget_antenna();
        fraAntenne.visible = chkLaufend.value = false;
    }

  private:
    int best_ = 0;

    /// By the bar, and in words: "17 von 31, −79 dBm".
    void show_signal(int value);
};

} // namespace telvox
