#pragma once

#include "core/files/settings_file.hpp"
#include "core/service_numbers.hpp"
#include "core/session.hpp"
#include "ui/form.hpp"

#include <vector>

namespace telvox {

/// Chooses the SMS centre of a mobile network.
class FrmService_Center : public Form {
  public:
    /// The number goes into this box; the folders hold the list.
    FrmService_Center(TextBox &number, const DataFolders &folders);

    Label lblErklaerung{*this, "lblErklaerung"};
    ListBox lstSCNummer{*this, "lstSCNummer"};
    Button cbuOK{*this, "cbuOK", "&OK"};

    void reset() override { prz_ServiceCenterNummern_laden(); }

  private:
    void prz_ServiceCenterNummern_laden();
    void lstSCNummer_Click(int before);
    void cbuOK_Click();

    TextBox &number_;
    const DataFolders &folders_;
    std::vector<ServiceNumber> entries_;
};

/// Chooses an SMS gateway of the fixed network, with the protocol codes that go with it.
class FrmServicenummer : public Form {
  public:
    /// The number goes into this box, the codes into the session; the folders hold the list.
    FrmServicenummer(Session &session, TextBox &number, const DataFolders &folders);

    Label lblErklaerung{*this, "lblErklaerung"};
    ListBox lstServicenummer{*this, "lstServicenummer"};
    Button cbuOK{*this, "cbuOK", "&OK"};

    void reset() override { prz_Servicenummern_laden(); }

  private:
    void prz_Servicenummern_laden();
    void cbuOK_Click();

    Session &session_;
    TextBox &number_;
    const DataFolders &folders_;
    std::vector<ServiceNumber> entries_;
};

} // namespace telvox
