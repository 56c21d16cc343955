#pragma once

#include "operation/order.hpp"

#include <string>

namespace telvox::operation {

/// What is done for an order beside its job.
struct Course {
    bool identifies = false; ///< the device is asked for its IMEI first
    bool merges = false;     ///< what the order does not name stays as the device has it, so it is read first
    bool verifies = false;   ///< when the device is back from its restart it is read and compared
    std::string imei;        ///< the device that it must be; empty: any
};

/// What an order asks for on a form that is filled in with it; `listed`: as a list's row. Throws UsageError
/// for what cannot be asked there.
[[nodiscard]] Course course_of(const Order &order, Desk &desk, bool listed);

/// The job that is pressed first and takes the port: a read where what is written depends on it.
[[nodiscard]] const JobCommand &first_job(const JobCommand &job, const Course &course);

} // namespace telvox::operation
