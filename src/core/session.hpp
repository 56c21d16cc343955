#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace telvox {

/// The device variant that the user chose.
enum class ModemType { Analog, ISDN, GSM, GPRS, Ethernet };

using Counter = std::uint8_t;

/// All that a job is: its step counters, the flags of awaited replies and the flags of kinds of job. The
/// default value is the idle session; `prz_Initialisieren` assigns it, so no name can be missed in a reset.
/// A counter of 0 is not running (or waiting for a reply), 1 is the first step.
struct JobState {
    Counter byteGPRS_Counter = 0;
    Counter byteGPRS_lese_Counter = 0;
    Counter byteIPT_Counter = 0;
    Counter byteIPT_lese_Counter = 0;
    Counter byteGPRS_Leseschritt = 0; ///< number of the read command whose reply is outstanding
    Counter bytePin_Counter = 0;
    Counter bytePin_Status_Counter = 0;
    Counter byteGSM_Reg_Counter = 0;
    Counter byteGSM_Signal_Counter = 0;
    Counter byteIMEI_Counter = 0;
    Counter byteMSN_Counter = 0;
    Counter byteISDN_Anschluss_Counter = 0;
    Counter byteAnwahl_Counter = 0;
    Counter byteParametrier_Counter = 0;
    Counter byteISDN_Fern_Para_Counter = 0;
    Counter byteAlarmtest_Counter = 0;
    Counter byteISDN_Fern_Alarmtest_Counter = 0;
    Counter byteAlarm_aus_Counter = 0;
    Counter byteISDN_Fern_Alarm_aus_Counter = 0;
    Counter byteAuflege_Counter = 0; ///< hang-up of the local modem, 1 to 3
    Counter byteEthernet_IP_Counter = 0;
    Counter byteEthernet_Gateway_Counter = 0;
    Counter bytePasswort_Counter = 0;    ///< password characters typed so far
    Counter byteISDN_Anwahl_Counter = 0; ///< dial attempts so far
    Counter byteSchnittstellenaenderung_Counter = 0;
    Counter byteErkennen_Counter = 0; ///< asks what hangs on the cable
    Counter byteErkennen_Format = 0;  ///< serial formats tried without an answer

    bool running = false; ///< a job was started and has not ended, whatever else stands here

    bool boolAnwahl_Fehler = false;  ///< awaits the carrier of the dialled call
    bool boolAntwort_Fehler = false; ///< awaits the device's answer after the connection
    bool boolPasswort_Fehler = false;
    bool boolKommunikations_Fehler31 = false;
    bool boolKommunikations_Fehler32 = false;
    bool boolKommunikations_Fehler33 = false;
    bool boolKommunikations_Fehler34 = false;
    bool boolKommunikations_Fehler41 = false;
    bool boolKommunikations_Fehler42 = false;
    bool boolKommunikations_Fehler43 = false;
    bool boolKommunikations_Fehler44 = false;
    bool boolKommunikations_Fehler51 = false;
    bool boolKommunikations_Fehler52 = false;
    bool boolKommunikations_Fehler61 = false;
    bool boolKommunikations_Fehler62 = false;
    bool boolKommunikations_Fehler71 = false;
    bool boolKommunikations_Fehler72 = false;
    bool boolKommunikations_Fehler73 = false;
    bool boolKommunikations_Fehler74 = false;
    bool boolKommunikations_Fehler75 = false;
    bool boolKommunikations_Fehler76 = false;
    bool boolKommunikations_Fehler77 = false;

    bool boolGPRS_Online = false; ///< the answer to a GPRS opening is awaited
    bool boolParametrieren = false;
    bool boolAlarmtest = false;
    bool boolAlarm_deaktivieren = false;
    bool boolGPRS_parametrieren = false;
    bool boolGPRS_lesen = false;
    bool boolIPT_parametrieren = false;
    bool boolIPT_lesen = false;
    bool boolPIN_Status_lesen = false; ///< this and the next four say what runs, by the names that
    bool boolREG_lesen = false;        ///< the devices' people have for it; nothing depends on them
    bool boolFeld_lesen = false;
    bool boolIMEI_lesen = false;
    bool boolUART_umstellen = false;
    bool boolErkennen = false;

    /// Generation that a configuration began with, so that it does not change in the middle of one.
    bool newer_generation = false;
    bool carrier_up = false;   ///< the dialled call stands, as far as the carrier line shows calls at all
    bool line_dropped = false; ///< it has fallen: what answers now is the local modem itself
    bool text_asked = false;   ///< the device has asked for its alarm text; it does so once per configuration
    bool answered = false;     ///< a device has answered the search intelligibly

    std::optional<ModemType> recognized; ///< variant that has identified itself

    bool operator==(const JobState &) const = default;
};

using CounterOf = Counter JobState::*;
using FlagOf = bool JobState::*;

/// The counters that run a step table, in the order in which a tick visits them. The others
/// (`byteGPRS_Leseschritt`, `bytePasswort_Counter`, `byteISDN_Anwahl_Counter`, `byteAuflege_Counter`) only
/// count within one.
inline constexpr std::array job_counters = {
    &JobState::byteAnwahl_Counter,
    &JobState::byteParametrier_Counter,
    &JobState::byteISDN_Fern_Para_Counter,
    &JobState::byteAlarmtest_Counter,
    &JobState::byteISDN_Fern_Alarmtest_Counter,
    &JobState::byteAlarm_aus_Counter,
    &JobState::byteISDN_Fern_Alarm_aus_Counter,
    &JobState::byteSchnittstellenaenderung_Counter,
    &JobState::bytePin_Counter,
    &JobState::bytePin_Status_Counter,
    &JobState::byteGSM_Reg_Counter,
    &JobState::byteGSM_Signal_Counter,
    &JobState::byteIMEI_Counter,
    &JobState::byteMSN_Counter,
    &JobState::byteISDN_Anschluss_Counter,
    &JobState::byteEthernet_IP_Counter,
    &JobState::byteEthernet_Gateway_Counter,
    &JobState::byteGPRS_Counter,
    &JobState::byteGPRS_lese_Counter,
    &JobState::byteIPT_Counter,
    &JobState::byteIPT_lese_Counter,
    &JobState::byteErkennen_Counter,
};

/// How a start came out.
enum class Outcome {
    refused,   ///< a check said no, nothing was sent
    failed,    ///< ended with an error, or its port could not be opened
    cancelled, ///< ended by the user
    succeeded, ///< went to its end
    objected,  ///< went to its end, but the device rejected something on the way
    differs,   ///< went to its end, and the device has other settings than were wanted
};

[[nodiscard]] inline bool went_well(Outcome outcome) {
    return outcome == Outcome::succeeded || outcome == Outcome::objected;
}

/// What survives the end of a job.
struct Session {
    std::string strCOMparameter_direkt; ///< format toward the cabled device, e.g. "2400,e,8,1"
    std::string strCOMparameter_fern;   ///< format toward the local modem, e.g. "9600,n,8,1"
    std::string strGRPS_APN;            ///< access point chosen in the GPRS settings dialog
    /// Protocol codes of the chosen service number; they live only as long as the program.
    std::string strSMS_Protokoll;
    std::string strSMS_Protokoll_ISDN;
    std::string strSMS_Protokoll_ISDN_fern;
    /// Where the value began that a GPRS device was asked for last, from 1; of a read that failed its number.
    Counter byteISDN_Anschlussart = 0;
    bool boolWavecom_Modem = false; ///< newer device: its identification names "KWT Telvox-A"
};

} // namespace telvox
