#include "sequencer/measures.hpp"

#include <algorithm>
#include <map>

namespace telvox {

milliseconds prescribed_time(const Job &job, const JobContext &context) {
    constexpr milliseconds left_by_a_reply{1200};
    milliseconds sum{0}, standing = left_by_a_reply;
    for (const Step &step : job.steps) {
        if (step.wait.count() > 0)
            standing = std::max(left_by_a_reply, step.wait);
        sum += standing * static_cast<long>(step.times ? step.times(context) : 1);
    }
    return sum;
}

int steps_of(const Job &job, const JobContext &context) {
    std::map<Counter, std::size_t> comes;
    for (const Step &step : job.steps)
        comes[step.number] = std::max(
            {std::size_t{1}, comes[step.number], step.times && !step.again ? step.times(context) : 1});
    std::size_t sum = 0;
    for (const auto &[number, times] : comes)
        sum += times;
    return static_cast<int>(sum);
}

} // namespace telvox
