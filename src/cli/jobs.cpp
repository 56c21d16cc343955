#include "cli/jobs.hpp"

#include <algorithm>

namespace telvox::cli {

namespace {

constexpr JobCommand commands[] = {
    {"parametrieren", "Modem konfigurieren", [](Desk &d) -> Button & { return d.frmModem.cbuParametrieren; }},
    {"alarmtest", "Alarmmeldung senden (Test)", [](Desk &d) -> Button & { return d.frmModem.cbuTest; }},
    {"alarm-aus", "Alarmfunktion deaktivieren", [](Desk &d) -> Button & { return d.frmModem.cbuAlarm_aus; }},
    {"msn", "MSN einstellen (ISDN)", [](Desk &d) -> Button & { return d.frmMSN.cbuMSN_einstellen; },
     &FrmModem::mnuMSN_festlegen, "--msn"},
    {"anschlussart", "Anschlussart einstellen (ISDN)",
     [](Desk &d) -> Button & { return d.frmAnschlussart.cmdAnschlussart_einstellen; },
     &FrmModem::mnuISDN_Anschluss, "--anschlussart"},
    {"pin", "PIN einstellen (GSM)", [](Desk &d) -> Button & { return d.frmPin.cbuPin_Eingabe; },
     &FrmModem::mnuPin_festlegen, "--pin"},
    {"pin-status", "PIN-Status abfragen (GSM)",
     [](Desk &d) -> Button & { return d.frmGSM_Status.cbuPIN_Status; }, &FrmModem::mnuStatus_abfragen,
     nullptr,
     [](Desk &d) {
         return "Status: " + d.frmGSM_Status.tboStatus.text +
                "\nPIN hinterlegt: " + d.frmGSM_Status.tboPIN_hinterlegt.text;
     }},
    {"registrierung", "Registrierungszustand abfragen (GSM)",
     [](Desk &d) -> Button & { return d.frmGSM_Status.cbuReg_zustand; }, &FrmModem::mnuStatus_abfragen,
     nullptr, [](Desk &d) { return d.frmGSM_Status.tboReg_zustand.text; }},
    {"signal", "Signalstärke abfragen (GSM), 0 bis 31",
     [](Desk &d) -> Button & { return d.frmGSM_Status.cbuSignalstaerke; }, &FrmModem::mnuStatus_abfragen,
     nullptr, [](Desk &d) { return std::to_string(d.frmGSM_Status.pzbSignalstaerke.value); }},
    {"imei", "Geräte-IMEI auslesen (GSM)", [](Desk &d) -> Button & { return d.frmGSM_Status.cbuIMEI; },
     &FrmModem::mnuStatus_abfragen, nullptr, [](Desk &d) { return d.frmGSM_Status.tboIMEI.text; }},
};

} // namespace

std::span<const JobCommand> job_commands() { return commands; }

const JobCommand *find_job(std::string_view name) {
    const auto found = std::find_if(std::begin(commands), std::end(commands),
                                    [&](const auto &job) { return job.name == name; });
    return found == std::end(commands) ? nullptr : found;
}

} // namespace telvox::cli
