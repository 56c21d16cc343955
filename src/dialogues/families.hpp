#pragma once

#include "sequencer/step.hpp"

namespace telvox {

/// The step tables and reply rows of a device variant. A variant without tables has no jobs.
[[nodiscard]] const Family &family_of(ModemType type);

extern const Family analog_family;
extern const Family isdn_family;
extern const Family gsm_family;
extern const Family gprs_family;

} // namespace telvox
