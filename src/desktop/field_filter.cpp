#include "desktop/field_filter.hpp"

#include <algorithm>

namespace telvox::desktop {

QValidator::State FieldFilter::validate(QString &input, int &cursor) const {
    constexpr std::size_t no_limit = std::string::npos;
    const std::string behind = field_.filtered(input.mid(cursor).toStdString(), no_limit);
    const std::size_t limit = field_.max_length == 0 ? no_limit : field_.max_length;
    const std::size_t room = limit - std::min(limit, field_.counted(behind));
    const std::string before = field_.filtered(input.left(cursor).toStdString(), room);
    const QString kept = QString::fromStdString(before + behind);
    if (kept == input)
        return Acceptable;
    // As if nothing had been typed: the change is taken back, and what could be undone before still can.
    if (kept == QString::fromStdString(field_.text))
        return Invalid;
    input = kept;
    cursor = static_cast<int>(QString::fromStdString(before).size());
    return Acceptable;
}

} // namespace telvox::desktop
