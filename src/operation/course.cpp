#include "operation/course.hpp"

#include "core/text.hpp"
#include "core/usage_error.hpp"
#include "dialogues/mobile.hpp"

#include <algorithm>

namespace telvox::operation {

namespace {

/// An option that is "ein" or "aus".
bool is_on(const Order &order, const char *name, bool otherwise) {
    const Given *given = order.find(name);
    if (!given)
        return otherwise;
    if (const std::string word = in_small_letters(given->value); word == "ein" || word == "aus")
        return word == "ein";
    throw UsageError(given->from, ": \"" + given->value + "\" gibt es nicht (ein, aus)");
}

std::string expected_imei(const Order &order, bool can_be_asked) {
    const Given *given = order.find("imei");
    if (!given)
        return {};
    std::string imei = given->value;
    std::erase(imei, ' ');
    if (imei.size() != dialogues::imei_digits || imei.find_first_not_of("0123456789") != std::string::npos)
        throw UsageError(given->from, ": eine IMEI hat 15 Ziffern");
    if (!can_be_asked)
        throw UsageError(given->from, ": die IMEI sagen nur gsm und gprs, und nur am Kabel");
    return imei;
}

/// Whether a job that writes all settings of its dialog is to leave those that the order does not name.
bool keeps_the_rest(const Order &order, bool over_cable, bool listed) {
    if (!order.job->reads)
        return false;
    const std::span<const Option> options = order.job->options;
    const bool is_part = std::any_of(options.begin(), options.end(),
                                     [&](const Option &option) { return !order.find(option.name); });
    const Given *rest = order.find("rest");
    if (rest && in_small_letters(rest->value) != "leeren")
        throw UsageError(rest->from, ": \"" + rest->value + "\" gibt es nicht (leeren)");
    if (!is_on(order, "nur-aenderungen", listed && is_part && !rest))
        return false;
    if (rest)
        throw UsageError(rest->from, ": das schließt nur-aenderungen aus");
    if (!over_cable)
        throw UsageError(
            "was nicht angegeben ist, würde geleert, denn in einem Anruf lässt es sich nicht lesen "
            "(rest auf leeren setzen, oder den Rest angeben)");
    return true;
}

} // namespace

Course course_of(const Order &order, Desk &desk, bool listed) {
    const ModemType type = desk.frmModem.modem_type();
    const bool over_cable = !desk.frmModem.optFernverbindung.value;
    const bool tells_imei = over_cable && (type == ModemType::GSM || type == ModemType::GPRS);
    Course course{.imei = expected_imei(order, tells_imei)};
    const bool asked = is_on(order, "geraet-pruefen", listed) && !order.job->result;
    course.identifies = tells_imei && order.job != find_job("imei") && find_option(*order.job, "imei") &&
                        (asked || !course.imei.empty());
    course.merges = keeps_the_rest(order, over_cable, listed);
    const Given *verify = order.find("nach-neustart-pruefen");
    course.verifies = is_on(order, "nach-neustart-pruefen", false);
    if (course.verifies && !over_cable)
        throw UsageError(verify->from, ": das geht nur am Kabel");
    const std::span<const Option> options = order.job->options;
    if (order.job->compares && std::none_of(options.begin(), options.end(),
                                            [&](const Option &option) { return order.find(option.name); }))
        throw UsageError(std::string(order.job->name) +
                         ": es ist nichts angegeben, womit zu vergleichen ist");
    return course;
}

const JobCommand &first_job(const JobCommand &job, const Course &course) {
    return course.merges ? *find_job(job.reads) : job;
}

} // namespace telvox::operation
