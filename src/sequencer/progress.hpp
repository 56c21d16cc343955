#pragma once

#include "core/timer.hpp"

namespace telvox {

/// How far the running job is.
struct Progress {
    int step = 0;           ///< of the table that runs; 0: nothing runs
    int steps = 0;          ///< that the table has
    milliseconds wait{0};   ///< that the step may take
    milliseconds passed{0}; ///< of that
    bool hangs_up = false;  ///< the job has ended, and the local modem is being hung up
};

} // namespace telvox
