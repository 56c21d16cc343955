#pragma once

#include "sequencer/step.hpp"

namespace telvox {

/// What the waits of a table add up to. A row without one keeps the interval that stands: that of a row
/// above, or what a reply left.
[[nodiscard]] milliseconds prescribed_time(const Job &job, const JobContext &context);

/// How many steps a table shows. What repeats itself until something happens is one.
[[nodiscard]] int steps_of(const Job &job, const JobContext &context);

} // namespace telvox
