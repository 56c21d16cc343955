// Plays the transcripts in all ways; `rig/player.hpp` says how they are written.

#include "rig/player.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace telvox::test {
namespace {

namespace fs = std::filesystem;

const Presets &presets() {
    static const Presets all = [] {
        std::ifstream file(fs::path(TRANSCRIPTS) / "presets");
        return Presets(file);
    }();
    return all;
}

class EveryTranscript : public testing::TestWithParam<fs::path> {};

TEST_P(EveryTranscript, HoldsHoweverItIsPlayed) {
    std::ifstream file(GetParam());
    const Transcript transcript = presets().read(file);
    for (const Playing how : {Playing::whole, Playing::bytewise, Playing::silent, Playing::lost,
                              Playing::cancelled, Playing::halved}) {
        const std::string wrong = play(transcript, how);
        EXPECT_TRUE(wrong.empty()) << wrong;
    }
}

std::vector<fs::path> transcript_files() {
    std::vector<fs::path> files;
    for (const auto &entry : fs::directory_iterator(TRANSCRIPTS))
        if (entry.path().extension() == ".transcript")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

INSTANTIATE_TEST_SUITE_P(All, EveryTranscript, testing::ValuesIn(transcript_files()),
                         [](const auto &played) { return played.param.stem().string(); });

/// A protocol that the window saved after a job with a device on a real clock.
TEST(Player, PlaysARecordingFromTheField) {
    std::ifstream file(fs::path(TRANSCRIPTS) / "recorded" / "gsm_configure.txt");
    std::string text{std::istreambuf_iterator<char>(file), {}};
    const auto played = [&] {
        std::istringstream recording(text);
        return play(presets().read(recording), Playing::recorded);
    };
    EXPECT_EQ(played(), "");
    text.replace(text.find("<- TIME"), 7, "<- LATE");
    EXPECT_THAT(played(), testing::HasSubstr("AT**TIME?"));
}

/// What a transcript could say without testing anything is a fault of the transcript.
TEST(Player, RefusesWhatIsWronglyWritten) {
    for (const char *form : {"0 cable 3\n", "", "100 end\n50 end\n", "0 use nothing\n1 end\n",
                             "click cbuTest\n", "0 cable 3\n0 silent x\n1 end\n"}) {
        std::istringstream text(form);
        EXPECT_THROW((void)presets().read(text), std::runtime_error) << form;
    }
    for (const char *wrong : {"0 click cbuNichts\n0 end\n", "0 cable 3\n0 click cbuTest\n0 end\n",
                              "0 shows tboRufnummer_Empfaenger 1\n0 end\n", "0 jump\n0 end\n",
                              "0 carrier\n0 end\n", "0 | -> ATI\\r\n0 end\n"}) {
        std::istringstream text(wrong);
        EXPECT_NE(play(presets().read(text), Playing::whole), "") << wrong;
    }
}

} // namespace
} // namespace telvox::test
