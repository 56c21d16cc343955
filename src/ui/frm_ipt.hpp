#pragma once

#include "core/job_values.hpp"
#include "ui/form.hpp"

namespace telvox {

class FrmModem;

/// Edits a GPRS device's IP-telemetry settings: whether it logs in to a telemetry server, as whom, and the
/// keys of the scrambled transfer.
class FrmIPT : public Form {
  public:
    /// The main window says whether the device is reached in a call, where it cannot be read.
    explicit FrmIPT(const FrmModem &main);

    /// What a running job of this window locks; while it reads, the buttons that would start another too.
    enum class Lock { none, inputs, buttons };

    /// The values as the device gets them.
    [[nodiscard]] IptSettings settings() const;
    /// Shows what a device said; a mode that has no option leaves the options as they are.
    void show(const IptSettings &read);
    /// The fields that hold something else than that.
    [[nodiscard]] std::vector<std::string> differences(const IptSettings &read) const;

    void lock(Lock what);
    void unlock() override { lock(Lock::none); }
    void compute() override;

    CheckBox chkIPT_Betrieb{*this, "chkIPT_Betrieb", "IP-&Telemetrie Betrieb"};
    Frame fraIPT_Login{*this, "fraIPT_Login", "IP-Telemetrie Server Login"};
    Label lblBenutzer{*this, "lblBenutzer", "&Benutzer:", &fraIPT_Login};
    TextBox tboBenutzer{*this, "tboBenutzer", {}, &fraIPT_Login};
    Label lblPasswort{*this, "lblPasswort", "&Passwort:", &fraIPT_Login};
    TextBox tboPasswort{*this, "tboPasswort", {}, &fraIPT_Login};

    Frame fraScramble{*this, "fraScramble", "Verschleierung"};
    OptionButton optUnscrambled{*this, "optUnscrambled", "a&us (unscrambled)", &fraScramble};
    OptionButton optScrambled{*this, "optScrambled", "&ein (scrambled)", &fraScramble};
    Label lblFix_Scrambled_Key{*this, "lblFix_Scrambled_Key", "&Fixed Scramble Key (Login):", &fraScramble};
    TextBox tboFix_Scrambled_Key{*this, "tboFix_Scrambled_Key", {}, &fraScramble};
    Button cbuDefault_Fix{*this, "cbuDefault_Fix", "&Defaultkey", &fraScramble};
    Label lblClg_Scrambled_Key{*this, "lblClg_Scrambled_Key", "Challenge Scramble Ke&y:", &fraScramble};
    TextBox tboClg_Scrambled_Key{*this, "tboClg_Scrambled_Key", {}, &fraScramble};
    Button cbuDefault_Clg{*this, "cbuDefault_Clg", "Default&key", &fraScramble};

    Button cbuIPT_vergleichen{*this, "cbuIPT_vergleichen", "&Vergleichen…"};
    CheckBox chkIPT_pruefen{*this, "chkIPT_pruefen", "Nach dem Neustart p&rüfen"};
    Button cbuIPT_lesen{*this, "cbuIPT_lesen", "Einstellungen &lesen"};
    Button cbuIPT_schreiben{*this, "cbuIPT_schreiben", "Einstellungen &schreiben"};
    Button cbuIPT_Abbrechen{*this, "cbuIPT_Abbrechen", "&Abbrechen"};

    void reset() override;

  private:
    const FrmModem &main_;
    Lock locked_ = Lock::none;
};

} // namespace telvox
