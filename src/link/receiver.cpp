#include "link/receiver.hpp"

namespace telvox {

void Receiver::begin() {
    clear();
    recognised_ = false;
}

void Receiver::clear() {
    link_.strCOM_Eingang.clear();
    acted_ = 0;
}

void Receiver::handle(CommEvent event, std::span<const Reply> rows) {
    if (event == CommEvent::data)
        link_.strCOM_Eingang.append(link_.comSeriell.Input());
    const bool data = event == CommEvent::data;
    if (jobs_ == JobState{} || jobs_.byteAuflege_Counter != 0 || (data && jobs_.line_dropped))
        return;
    std::uint64_t bit = 1;
    for (const Reply &row : rows) {
        if ((!data || (acted_ & bit) == 0) && holds(row, event)) {
            apply(row);
            acted_ |= bit;
        }
        bit <<= 1;
    }
}

bool Receiver::holds(const Reply &row, CommEvent event) {
    if (row.event != event || (row.awaited && !(jobs_.*row.awaited)) ||
        (row.during && !(jobs_.*row.during)) || (row.at.counter && jobs_.*row.at.counter != row.at.value) ||
        link_.last_command.find(row.after) == std::string::npos || (row.when && !row.when(desk_)))
        return false;
    ReceiveBuffer &buffer = link_.strCOM_Eingang;
    const std::size_t start = buffer.find(row.contains);
    if (start == ReceiveBuffer::npos || !buffer.contains(row.also))
        return false;
    return !row.take || row.take(desk_, {buffer.text().substr(start), start, buffer.text()});
}

void Receiver::apply(const Reply &row) {
    recognised_ |= row.event == CommEvent::data;
    if (row.awaited)
        jobs_.*row.awaited = false;
    if (row.clears)
        jobs_.*row.clears = false;
    if (row.sets)
        jobs_.*row.sets = true;
    if (row.counter)
        jobs_.*row.counter = row.becomes;
    for (const Move &move : row.moves)
        if (!move.when || jobs_.*move.when)
            jobs_.*move.counter = move.becomes;
    if (row.restart.count() > 0)
        timer_.restart(row.restart);
}

} // namespace telvox
