#pragma once

#include "net/telnet.hpp"
#include "sequencer/error_reports.hpp"
#include "sequencer/step.hpp"

#include <string>
#include <vector>

namespace telvox {

/// The step tables and reply rows of a device variant. A variant without tables has no jobs.
[[nodiscard]] const Family &family_of(ModemType type);
/// Those of the job that runs: the search for a device belongs to no variant.
[[nodiscard]] const Family &family_of_job(const JobContext &job);

/// Commands and labels of answers behind which a secret stands, of all variants.
[[nodiscard]] std::vector<std::string> secret_labels();

/// What is reported when a device does not answer.
extern const Reports device_reports;

extern const Family recognition_family;
extern const Family analog_family;
extern const Family isdn_family;
extern const Family gsm_family;
extern const Family gprs_family;
extern const Family ethernet_family;

/// The Ethernet module's Telnet dialogues.
extern const TelnetDialogues ethernet_dialogues;

} // namespace telvox
