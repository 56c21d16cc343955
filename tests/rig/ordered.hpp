#pragma once

#include "operation/plan.hpp"
#include "rig/rig.hpp"

#include <filesystem>
#include <random>

namespace telvox::test {

/// Does an order of several jobs, and notes how it came out.
struct Ordered {
    Ordered(Rig &rig, operation::Values values)
        : at_the_form(rig.program, rig.scan), plan(rig.program, at_the_form, [] { return 0; }) {
        rig.program.desk.folders.settings = folder;
        const operation::JobCommand &job = *operation::find_job(values.at("auftrag").value);
        plan.over = [&](const operation::WorkEnd &work) {
            const Attempt attempt = attempt_of(work, job, rig.program.desk);
            rig.note("ends " + std::string(word_of(attempt.outcome)) + ": " + attempt.message);
        };
        const operation::Order order{.job = &job, .values = std::move(values)};
        if (at_the_form.begin(order))
            plan.start(order, true);
    }
    Ordered(const Ordered &) = delete;
    ~Ordered() { std::filesystem::remove_all(folder); }

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("telvox_player" + std::to_string(std::random_device()()));
    operation::Operator at_the_form;
    operation::Plan plan;
};

} // namespace telvox::test
