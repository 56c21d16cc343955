#include "link/link.hpp"

#include "core/text.hpp"

namespace telvox {

void Link::prz_Daten_senden(std::string_view strDaten) { comSeriell.Output(to_line(strDaten) + '\r'); }

void Link::send_raw(std::string_view text) { comSeriell.Output(to_line(text)); }

} // namespace telvox
