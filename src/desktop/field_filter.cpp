#include "desktop/field_filter.hpp"

#include "core/text.hpp"

namespace telvox::desktop {

namespace {

/// The accepted characters of a text, at most `limit` of them.
QString accepted(const TextField &box, const QString &text, std::size_t limit) {
    QString kept;
    std::size_t count = 0;
    for (const char32_t c : text.toStdU32String())
        if (count < limit && box.accepts(c)) {
            kept += QString::fromUcs4(&c, 1);
            ++count;
        }
    return kept;
}

std::size_t characters(const QString &text) { return length(text.toStdString()); }

} // namespace

QValidator::State FieldFilter::validate(QString &input, int &cursor) const {
    const std::size_t no_limit = input.size();
    const QString behind = accepted(box_, input.mid(cursor), no_limit);
    const std::size_t limit = box_.max_length == 0 ? no_limit : box_.max_length;
    const std::size_t room = limit - std::min(limit, characters(behind));
    const QString before = accepted(box_, input.left(cursor), room);
    if (before + behind == input)
        return Acceptable;
    // As if nothing had been typed: the change is taken back, and what could be undone before still can.
    if (before + behind == QString::fromStdString(box_.text))
        return Invalid;
    input = before + behind;
    cursor = static_cast<int>(before.size());
    return Acceptable;
}

} // namespace telvox::desktop
