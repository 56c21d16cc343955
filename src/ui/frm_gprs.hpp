#pragma once

#include "core/files/settings_file.hpp"
#include "core/job_values.hpp"
#include "ui/form.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace telvox {

class FrmModem;

/// What the text of the access point's box says.
struct AccessPoint {
    std::string apn;
    bool from_list = false; ///< it has the shape of a list's entry, "Provider: apn (user:name pw:word)"
    std::optional<std::string> user; ///< of such an entry, where it names them
    std::optional<std::string> password;

    bool operator==(const AccessPoint &) const = default;
};

/// Takes an entry of the provider list apart. A text in which no ": " stands behind at least four characters
/// is an access point as a whole. Parts of an entry that do not end as they should go to the end of the text.
[[nodiscard]] AccessPoint parse_access_point(std::string_view text);

/// Edits a GPRS device's mobile-data settings: access point, connection targets, permanent connection, and
/// the callers that it answers or calls back.
class FrmGPRS : public Form {
  public:
    /// The session keeps the access point; the main window says whether the device is reached in a call,
    /// where it cannot be read; the folders hold the provider list.
    FrmGPRS(Session &session, const FrmModem &main, const DataFolders &folders);

    /// Fills the list of access points; without its file it is empty.
    void prz_GPRS_Zugangsdaten_laden();
    /// Takes over what the access point's box says: the access point itself, and what an entry of the list
    /// knows about user and password.
    void prz_GPRS_Benutzerdaten_selektieren();

    /// The values as the device gets them.
    [[nodiscard]] GprsSettings settings() const;
    /// Shows what a device said; a code that has no option leaves the options as they are.
    void show(const GprsSettings &read);
    /// The fields that hold something else than that.
    [[nodiscard]] std::vector<std::string> differences(const GprsSettings &read) const;
    /// A target is the IP address, or the domain.
    [[nodiscard]] bool uses_ip() const;
    [[nodiscard]] bool uses_domain() const;
    /// Above what the device takes it is the largest value.
    void limit_keep_alive();

    /// The inputs are off while a job of this window runs.
    void lock();
    void unlock() override;
    void compute() override;

    Frame fraZugang{*this, "fraZugang", "GPRS Zugangsdaten"};
    Label lblAPN{*this, "lblAPN", "AP&N (Access Point Name):", &fraZugang};
    ComboBox cobAPN{*this, "cobAPN", {}, &fraZugang};
    Frame fraPPP{*this, "fraPPP", "PPP-Authentifizierung", &fraZugang};
    OptionButton optPPP_kein{*this, "optPPP_kein", "&keine", &fraPPP};
    OptionButton optPPP_PAP{*this, "optPPP_PAP", "&PAP", &fraPPP};
    Label lblBenutzername{*this, "lblBenutzername", "&Benutzername:", &fraPPP};
    TextBox tboBenutzername{*this, "tboBenutzername", {}, &fraPPP};
    Label lblPasswort{*this, "lblPasswort", "Pass&wort:", &fraPPP};
    TextBox tboPasswort{*this, "tboPasswort", {}, &fraPPP};

    Frame fraAutodial{*this, "fraAutodial", "Autodial Ziele"};
    Label lblIP{*this, "lblIP", "&IP-Adresse:", &fraAutodial};
    TextBox tboIP{*this, "tboIP", {}, &fraAutodial};
    Label lblIP_Beispiel{*this, "lblIP_Beispiel", "Beispiel: 203.0.113.10", &fraAutodial};
    Label lblPort{*this, "lblPort", "P&ort:", &fraAutodial};
    TextBox tboIP_Port{*this, "tboIP_Port", {}, &fraAutodial};
    Label lblDomain{*this, "lblDomain", "&Domain-Name:", &fraAutodial};
    TextBox tboDomain{*this, "tboDomain", {}, &fraAutodial};
    TextBox tboDomain_Port{*this, "tboDomain_Port", {}, &fraAutodial};

    Frame fraStandleitung{*this, "fraStandleitung", "Standleitungsbetrieb"};
    OptionButton optStandleitung_aus{*this, "optStandleitung_aus", "a&us", &fraStandleitung};
    OptionButton optStandleitung_IP{*this, "optStandleitung_IP", "zu IP-Adr&esse", &fraStandleitung};
    OptionButton optStandleitung_Domain{*this, "optStandleitung_Domain", "zu Domain-Na&me", &fraStandleitung};
    Label lblKeep_Alive{*this, "lblKeep_Alive", "Keep Alive &Timer:", &fraStandleitung};
    TextBox tboKeepAlive{*this, "tboKeepAlive", {}, &fraStandleitung};
    Label lblMinuten{*this, "lblMinuten", "min", &fraStandleitung};
    Label lblWarnung{*this, "lblWarnung", "Achtung!   Hierdurch können laufende Kosten entstehen.",
                     &fraStandleitung};

    Frame fraSelektRuf{*this, "fraSelektRuf", "Selektive Rufannahme / Auslösung Callback"};
    Label lblNummer1{*this, "lblNummer1", "&1. Nummer:", &fraSelektRuf};
    TextBox tboNummer1{*this, "tboNummer1", {}, &fraSelektRuf};
    Frame fraCallback1{*this, "fraCallback1", "Callback", &fraSelektRuf};
    OptionButton optCallback1_kein{*this, "optCallback1_kein", "kein", &fraCallback1};
    OptionButton optCallback1_IP{*this, "optCallback1_IP", "IP-Adresse", &fraCallback1};
    OptionButton optCallback1_Domain{*this, "optCallback1_Domain", "Domain Name", &fraCallback1};
    Label lblNummer2{*this, "lblNummer2", "&2. Nummer:", &fraSelektRuf};
    TextBox tboNummer2{*this, "tboNummer2", {}, &fraSelektRuf};
    Frame fraCallback2{*this, "fraCallback2", "Callback", &fraSelektRuf};
    OptionButton optCallback2_kein{*this, "optCallback2_kein", "kein", &fraCallback2};
    OptionButton optCallback2_IP{*this, "optCallback2_IP", "IP-Adresse", &fraCallback2};
    OptionButton optCallback2_Domain{*this, "optCallback2_Domain", "Domain Name", &fraCallback2};

    Button cbuGPRS_schreiben{*this, "cbuGPRS_schreiben", "Einstellungen &schreiben"};
    Button cbuGPRS_vergleichen{*this, "cbuGPRS_vergleichen", "&Vergleichen…"};
    CheckBox chkGPRS_pruefen{*this, "chkGPRS_pruefen", "Nach dem Neustart p&rüfen"};
    Button cbuGPRS_lesen{*this, "cbuGPRS_lesen", "Einstellungen &lesen"};
    Button cbuGPRS_Abbrechen{*this, "cbuGPRS_Abbrechen", "&Abbrechen"};

    void reset() override;

  private:
    Session &session_;
    const FrmModem &main_;
    const DataFolders &folders_;
    bool locked_ = false;
};

} // namespace telvox
