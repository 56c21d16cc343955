#pragma once

#include "core/session.hpp"

#include <optional>
#include <string>

namespace telvox {

/// The mobile-data settings of a device. The targets are the device's codes: 0 off, 2 by address, 3 by domain
/// name.
struct GprsSettings {
    std::string apn;
    std::string user;
    std::string password;
    std::string ip;
    std::string ip_port;
    std::string domain;
    std::string domain_port;
    std::string number1; ///< callers that are let in; empty: everybody
    std::string number2;
    std::string keep_alive; ///< minutes
    bool pap = false;
    int callback1 = 0;
    int callback2 = 0;
    int leased_line = 0;
};

/// The IP-telemetry settings, likewise.
struct IptSettings {
    std::string user;
    std::string password;
    std::string fixed_key;
    std::string challenge_key;
    int mode = 0; ///< 0 off, 2 unscrambled, 3 scrambled
};

/// All that a job takes with it when it starts, copied from the windows then: whatever becomes of them
/// meanwhile, a device gets one consistent set. Texts are as they were entered.
struct JobValues {
    ModemType type = ModemType::Analog;
    bool remote = false;    ///< through the local modem; a job that is the cable's own never is
    std::string cable_port; ///< entry of the port list
    std::string modem_port;
    std::string number;       ///< of the device, to be dialled
    std::string password;     ///< of its remote configuration
    std::string receiver;     ///< of its alarms
    std::string outside_line; ///< what gets one, where the installation needs it
    std::string service_number;
    bool by_sms = false; ///< else by fax
    std::string alarm_text;
    std::string strSMS_Protokoll;
    std::string strSMS_Protokoll_ISDN;
    std::string strSMS_Protokoll_ISDN_fern;
    std::string strCOMparameter_direkt;
    std::string strCOMparameter_fern;
    std::string strCOMparameter_momentan;   ///< what the serial settings dialog says that the device has now
    std::string strCOMparameter_gewuenscht; ///< format that the device's own interface is to be switched to
    std::string strPIN;
    std::string strMSN;
    Counter byteISDN_Anschlussart = 0; ///< 0 point to multipoint, 1 point to point
    std::string str_IP;
    std::string str_Port;
    std::string str_Gateway;
    std::string str_Netzmaske;
    GprsSettings gprs;
    IptSettings ipt;
};

/// What a SIM says of itself.
enum class SimState { ready, needs_pin, needs_puk, missing };

/// What a job has found out so far; what it does not ask for stays empty.
struct Findings {
    std::optional<bool> pin_stored;
    std::optional<SimState> sim;
    std::optional<char> registration; ///< digit of "+CREG"; '?' where the device refuses to say
    std::optional<int> signal;        ///< 0 to 31, 99: the device does not know it
    std::optional<std::string> imei;
    std::optional<GprsSettings> gprs; ///< as the dialog had them, with what the device has said so far
    std::optional<IptSettings> ipt;
    std::optional<ModemType> recognized;
    std::optional<std::string> format; ///< that the cabled device speaks from now on
    bool format_changed = false;       ///< because it was told to
};

/// All that the rows of a dialogue see of the program.
struct JobContext {
    JobState &jobs;
    Session &session;
    const JobValues &values;
    Findings &findings;
};

} // namespace telvox
