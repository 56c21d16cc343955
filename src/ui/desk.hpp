#pragma once

#include "core/file_dialogs.hpp"
#include "core/files/remembered.hpp"
#include "core/files/settings_file.hpp"
#include "core/job_values.hpp"
#include "core/messages.hpp"
#include "core/observer.hpp"
#include "core/port_scan.hpp"
#include "sequencer/panel.hpp"
#include "ui/frm_about.hpp"
#include "ui/frm_einstellungen.hpp"
#include "ui/frm_ethernet.hpp"
#include "ui/frm_gateway.hpp"
#include "ui/frm_gprs.hpp"
#include "ui/frm_ip_over_ethernet.hpp"
#include "ui/frm_ipt.hpp"
#include "ui/frm_modem.hpp"
#include "ui/frm_nachweis.hpp"
#include "ui/frm_sicherungen.hpp"
#include "ui/frm_suche.hpp"
#include "ui/frm_vergleich.hpp"
#include "ui/frm_verlauf.hpp"
#include "ui/number_lists.hpp"
#include "ui/small_dialogs.hpp"

#include <functional>
#include <vector>

namespace telvox {

/// The running job, the session, and the windows' fields.
struct Desk final : Panel {
    JobState jobs;
    JobValues job_values; ///< of the last job that was started
    Findings findings;    ///< its
    Session session;
    Outbox outbox;
    FileQuestions files;
    DataFolders folders;
    Remembered remembered;
    FrmModem frmModem{outbox};
    FrmPin frmPin;
    FrmMSN frmMSN;
    FrmAnschlussart frmAnschlussart;
    FrmGSM_Status frmGSM_Status;
    FrmEthernet frmEthernet;
    FrmGateway frmGateway;
    FrmIPoEthernet frmIPoEthernet;
    FrmGPRS frmGPRS{session, frmModem, folders};
    FrmIPT frmIPT{frmModem};
    FrmEinstellungen frmEinstellungen{session, frmModem.cobSchnittstelle};
    FrmService_Center frmService_Center{frmModem.tboService_Center, folders};
    FrmServicenummer frmServicenummer{session, frmModem.tboService_Center, folders};
    FrmVergleich frmVergleich;
    FrmSicherungen frmSicherungen;
    FrmNachweis frmNachweis;
    FrmVerlauf frmVerlauf;
    FrmAbout frmAbout;
    FrmSuche frmSuche;

    /// All windows, the main window first.
    // clang-format off
    std::vector<Form *> forms{
        &frmModem,
        &frmPin,
        &frmMSN,
        &frmAnschlussart,
        &frmGSM_Status,
        &frmEthernet,
        &frmGateway,
        &frmIPoEthernet,
        &frmGPRS,
        &frmIPT,
        &frmEinstellungen,
        &frmService_Center,
        &frmServicenummer,
        &frmVergleich,
        &frmSicherungen,
        &frmVerlauf,
        &frmNachweis,
        &frmAbout,
        &frmSuche,
    };
    // clang-format on

    bool asking = false; ///< a chain of questions is open

    /// What the last look at the serial ports found.
    std::vector<PortInfo> ports;

    Observers observers;

    /// What no record may show: PIN, passwords and keys, as entered and as a job sends them.
    [[nodiscard]] std::vector<std::string> secrets() const;

    [[nodiscard]] JobValues values() const override;
    void show(const Findings &found) override;
    [[nodiscard]] std::vector<std::string> changed(const Findings &found) const override;
    void status(std::string_view text) override {
        if (frmModem.StatusBar.text != text)
            observers.tell(&Observer::status, text);
        frmModem.StatusBar.text = text;
    }
    void focus(Control &field) override { field.form->wants_focus = &field; }
    void prz_Eingaben_deaktivieren() override { frmModem.prz_Eingaben_deaktivieren(); }
    void prz_Eingaben_aktivieren() override {
        frmModem.prz_Eingaben_aktivieren();
        for (Form *form : forms)
            form->unlock();
    }

  private:
    [[nodiscard]] std::vector<const TextBox *> find_secret_boxes() const {
        std::vector<const TextBox *> found;
        for (const Form *form : forms)
            for (const Control *control : form->controls())
                if (const auto *box = dynamic_cast<const TextBox *>(control); box && box->secret)
                    found.push_back(box);
        return found;
    }
    /// Found once: the record asks for the secrets with every byte that comes.
    const std::vector<const TextBox *> secret_boxes_ = find_secret_boxes();
};

} // namespace telvox
