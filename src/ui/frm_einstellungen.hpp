#pragma once

#include "core/files/settings_file.hpp"
#include "core/session.hpp"
#include "ui/form.hpp"

#include <string>
#include <string_view>

namespace telvox {

/// The four combo boxes of one serial line.
struct SerialCombos {
    ComboBox &baud;
    ComboBox &bits;
    ComboBox &parity;
    ComboBox &stop;

    [[nodiscard]] SerialTexts texts() const { return {baud.text, bits.text, parity.text, stop.text}; }
    /// As a settings text, "9600,n,8,1".
    [[nodiscard]] std::string settings() const;
    /// Selects the entries that a settings text names. What it names no entry for stays what it was.
    void show(std::string_view settings);
};

/// The serial settings of the cabled device and of the local modem, and the change of the device's own.
class FrmEinstellungen : public Form {
  public:
    /// The device can be changed while `cable_port` has one chosen.
    FrmEinstellungen(Session &session, const ComboBox &cable_port);

    /// The combos as the session's settings texts are.
    void show_session();
    void prz_Parameter_direkt() { direkt.show(session_.strCOMparameter_direkt); }
    void prz_Parameter_Modem();

    /// The device has taken a new format, which is now the session's.
    void device_changed();
    /// That format is not in the settings file yet.
    [[nodiscard]] bool unsaved() const { return unsaved_; }

    /// All inputs are off while the change runs, which "Abbrechen" ends.
    void lock() { enable_inputs(false); }
    void unlock() override { enable_inputs(true); }

    Frame tabOptions{*this, "tabOptions"};

    Frame fraSchnittstellen_Einstellung{*this, "fraSchnittstellen_Einstellung",
                                        "Momentane Schnittstelleneinstellung des Telvox-A", &tabOptions};
    Label lblSchnittstelle_Baud{*this, "lblSchnittstelle_Baud", "Baudrate:", &fraSchnittstellen_Einstellung};
    ComboBox cobSchnittstelle_Baud{*this, "cobSchnittstelle_Baud", {}, &fraSchnittstellen_Einstellung};
    Label lblSchnittstelle_Bitzahl{*this, "lblSchnittstelle_Bitzahl",
                                   "Bitzahl:", &fraSchnittstellen_Einstellung};
    ComboBox cobSchnittstelle_Bitzahl{*this, "cobSchnittstelle_Bitzahl", {}, &fraSchnittstellen_Einstellung};
    Label lblSchnittstelle_Parity{*this, "lblSchnittstelle_Parity",
                                  "Parity:", &fraSchnittstellen_Einstellung};
    ComboBox cobSchnittstelle_Parity{*this, "cobSchnittstelle_Parity", {}, &fraSchnittstellen_Einstellung};
    Label lblSchnittstelle_Stoppbits{*this, "lblSchnittstelle_Stoppbits",
                                     "Stoppbits:", &fraSchnittstellen_Einstellung};
    ComboBox cobSchnittstelle_Stoppbits{
        *this, "cobSchnittstelle_Stoppbits", {}, &fraSchnittstellen_Einstellung};
    Button cbuDirekt_Standard{*this, "cbuDirekt_Standard", "&Standardeinstellung",
                              &fraSchnittstellen_Einstellung};

    Frame fraModem_Einstellung{*this, "fraModem_Einstellung",
                               "Modem Einstellungen für die Fernparametrierung", &tabOptions};
    Label lblModem_Baudrate{*this, "lblModem_Baudrate", "Baudrate:", &fraModem_Einstellung};
    ComboBox cobModem_Baudrate{*this, "cobModem_Baudrate", {}, &fraModem_Einstellung};
    Label lblModem_Bitzahl{*this, "lblModem_Bitzahl", "Bitzahl:", &fraModem_Einstellung};
    ComboBox cobModem_Bitzahl{*this, "cobModem_Bitzahl", {}, &fraModem_Einstellung};
    Label lblModem_Parity{*this, "lblModem_Parity", "Parity:", &fraModem_Einstellung};
    ComboBox cobModem_Parity{*this, "cobModem_Parity", {}, &fraModem_Einstellung};
    Label lblModem_Stoppbits{*this, "lblModem_Stoppbits", "Stoppbits:", &fraModem_Einstellung};
    ComboBox cobModem_Stoppbits{*this, "cobModem_Stoppbits", {}, &fraModem_Einstellung};
    Button cbuModem_Standard{*this, "cbuModem_Standard", "S&tandardeinstellung", &fraModem_Einstellung};

    CheckBox cboSchnittstelle_aendern{*this, "cboSchnittstelle_aendern",
                                      "Schnittstelleneinstellungen ä&ndern"};

    Frame fraSchnittstellen_Einstellung_soll{*this, "fraSchnittstellen_Einstellung_soll",
                                             "Neue Telvox-A Schnittstelleneinstellung", &tabOptions};
    Label lblSchnittstelle_Baud_soll{*this, "lblSchnittstelle_Baud_soll",
                                     "Baudrate:", &fraSchnittstellen_Einstellung_soll};
    ComboBox cobSchnittstelle_Baud_soll{
        *this, "cobSchnittstelle_Baud_soll", {}, &fraSchnittstellen_Einstellung_soll};
    Label lblSchnittstelle_Bitzahl_soll{*this, "lblSchnittstelle_Bitzahl_soll",
                                        "Bitzahl:", &fraSchnittstellen_Einstellung_soll};
    ComboBox cobSchnittstelle_Bitzahl_soll{
        *this, "cobSchnittstelle_Bitzahl_soll", {}, &fraSchnittstellen_Einstellung_soll};
    Label lblSchnittstelle_Parity_soll{*this, "lblSchnittstelle_Parity_soll",
                                       "Parity:", &fraSchnittstellen_Einstellung_soll};
    ComboBox cobSchnittstelle_Parity_soll{
        *this, "cobSchnittstelle_Parity_soll", {}, &fraSchnittstellen_Einstellung_soll};
    Label lblSchnittstelle_Stoppbits_soll{*this, "lblSchnittstelle_Stoppbits_soll",
                                          "Stoppbits:", &fraSchnittstellen_Einstellung_soll};
    ComboBox cobSchnittstelle_Stoppbits_soll{
        *this, "cobSchnittstelle_Stoppbits_soll", {}, &fraSchnittstellen_Einstellung_soll};
    Button cmdUART_Einstellung_aendern{*this, "cmdUART_Einstellung_aendern",
                                       "Schnittstelleneinstellungen ü&bernehmen",
                                       &fraSchnittstellen_Einstellung_soll};

    CheckBox chkVerlauf{*this, "chkVerlauf", "&Verlauf führen"};
    CheckBox chkWie_zuletzt{*this, "chkWie_zuletzt", "Beim Start &wie zuletzt"};

    Button cmdOK{*this, "cmdOK", "&OK"};
    Button cmdCancel{*this, "cmdCancel", "&Abbrechen"};

    SerialCombos direkt{cobSchnittstelle_Baud, cobSchnittstelle_Bitzahl, cobSchnittstelle_Parity,
                        cobSchnittstelle_Stoppbits};
    SerialCombos fern{cobModem_Baudrate, cobModem_Bitzahl, cobModem_Parity, cobModem_Stoppbits};
    SerialCombos soll{cobSchnittstelle_Baud_soll, cobSchnittstelle_Bitzahl_soll, cobSchnittstelle_Parity_soll,
                      cobSchnittstelle_Stoppbits_soll};

    void reset() override;

  private:
    void przSchnittstelle_aendern();
    void enable_inputs(bool on);

    Session &session_;
    const ComboBox &cable_port_;
    bool unsaved_ = false;
};

} // namespace telvox
