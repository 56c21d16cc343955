#include "core/port_choice.hpp"

#include <charconv>

namespace telvox {

std::string port_entry(int number) { return "COM " + std::to_string(number); }

int func_Port_Auswahl(std::string_view entry, Outbox &outbox) {
    constexpr std::size_t digits_at = 4; // behind "COM "
    int number = 0;
    if (entry.size() >= digits_at)
        std::from_chars(entry.data() + digits_at, entry.data() + entry.size(), number);
    if (number >= 1 && number <= last_port)
        return number;
    outbox.show("Fehler! Sind eventuell keine COM-Ports vorhanden?");
    return 0;
}

} // namespace telvox
