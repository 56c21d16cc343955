#pragma once

#include "rig/transcript.hpp"

#include <string>

namespace telvox::test {

/// The ways to play a transcript. The last three hold beyond what is written in it.
enum class Playing {
    whole,
    recorded,  ///< as a protocol from the field: its clock was a real one, so only the order is compared
    bytewise,  ///< replies byte by byte, with the same result
    silent,    ///< once for each "silent": the device says nothing from the line before it on
    lost,      ///< once for each output: the adapter is unplugged after it; one box, everything in order
    cancelled, ///< once for each output: the user ends the job after it, twice; one box, everything in order
    halved     ///< once for each reply: only its first half comes, and does all that the whole one does, or
               ///< nothing
};

/// Plays a transcript. Returns what did not hold, in words; empty: all of it held.
std::string play(const Transcript &written, Playing how);

} // namespace telvox::test
