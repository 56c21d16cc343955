#include "operation/main_window_state.hpp"

#include "core/port_choice.hpp"

#include <utility>

namespace telvox::operation {

MainWindowState::MainWindowState(Telvox &program, std::string name)
    : name_(std::move(name)),
      inputs_(program.desk.frmModem.inputs()),
      session_(program.desk.session),
      cable_(program.desk.frmModem.cobSchnittstelle.text),
      modem_(program.desk.frmModem.cobModem_Port.text) {
    program.record().input("keep", name_, {});
}

void MainWindowState::restore(Telvox &program, bool ports_too) const {
    program.record().input("restore", name_, ports_too ? with_ports : "");
    FrmModem &main = program.desk.frmModem;
    inputs_.restore();
    // Unlocks the port list that goes with the way, and locks the other.
    const bool remote = main.optFernverbindung.value;
    main.cobSchnittstelle.enabled = !remote;
    main.cobModem_Port.enabled = main.tboRufnummer_Modem.enabled;
    const auto restore_text = [&](std::string Session::*text) {
        program.desk.session.*text = session_.*text;
    };
    for (const auto code :
         {&Session::strSMS_Protokoll, &Session::strSMS_Protokoll_ISDN, &Session::strSMS_Protokoll_ISDN_fern})
        restore_text(code);
    if (!ports_too)
        return;
    restore_text(&Session::strCOMparameter_direkt);
    restore_text(&Session::strCOMparameter_fern);
    for (const auto &[list, text] :
         {std::pair{&main.cobSchnittstelle, &cable_}, {&main.cobModem_Port, &modem_}}) {
        if (const auto number = parse_port_number(*text))
            program.offer_port(*number);
        list->text = *text;
    }
}

} // namespace telvox::operation
