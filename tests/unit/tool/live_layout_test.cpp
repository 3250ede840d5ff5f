// The screen of vx63 live, as it is drawn.
#include "live/layout.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace tool;

namespace {

using Lines = std::vector<std::string>;

constexpr int64_t kNow = 1795356202000; // 2026-11-22 14:03:22 UTC

Lines linesOf(const Grid& grid)
{
    Lines lines;
    for (size_t row = 0; row < grid.rows(); ++row)
        lines.push_back(grid.line(row));
    return lines;
}

std::string joined(const Lines& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

class LiveLayout : public testing::Test {
protected:
    LiveLayout()
    {
        setenv("TZ", "UTC0", 1);
        tzset();
        m_state.channel = "27";
        m_state.frequencyKhz = 557143;
        m_state.message = "channel 27";
    }

    // Locked, with a trace of 10 s that rises to 70 dBuV and falls to what it is now.
    void measure()
    {
        LiveReading live{};
        Reading& reading = live.reading;
        reading.timeMs = kNow;
        reading.condition.ulFreq = 557143;
        reading.result.lock = 1;
        reading.result.stat = VX63_STAT_SIGNAL | VX63_STAT_LOCKED;
        reading.result.LEVEL = 632;
        reading.result.CNR = 234;
        reading.result.BER_TOTAL = 1320634;
        reading.result.MOD = VX63_MOD_OFDM;
        reading.input = 0;
        reading.supply = VX63_POWER_SUPPLY_OFF;
        reading.judgement = {.level = Verdict::pass,
                             .cnr = Verdict::marginal,
                             .mer = Verdict::pass,
                             .ber = Verdict::pass,
                             .whole = Verdict::marginal};
        live.merDb = 33.14;
        live.threshold.emplace();
        live.threshold->LV_MIN = 200;
        live.threshold->LV_LOW = 470;
        live.threshold->LV_HIGH = 900;
        live.threshold->LV_MAX = 1200;
        live.threshold->CN_MIN = 50;
        live.threshold->CN_LOW = 200;
        live.threshold->CN_HIGH = 250;
        live.threshold->CN_MAX = 350;
        live.points = {{45, 45}, {-45, 45}, {45, -45}, {-45, -45}};
        for (int i = 0; i <= 50; ++i) {
            Reading before = reading;
            before.timeMs = kNow - 200 * (50 - i);
            const int rise = i <= 30 ? 4 * i : 120 - (i - 30) * 94 / 20;
            before.result.LEVEL = static_cast<uint32_t>(606 + rise);
            before.result.CNR = static_cast<uint32_t>(208 + rise);
            m_state.history.add(before);
        }
        m_state.last = live;
    }

    Lines shown(size_t columns, size_t rows, bool unicode = true) const
    {
        return linesOf(layout(m_state, {columns, rows, unicode, kNow}));
    }

    LiveState m_state;
};

#define EXPECT_SCREEN(lines, text) EXPECT_EQ("\n" + joined(lines), text)

TEST_F(LiveLayout, X80x24)
{
    measure();
    m_state.tone = true;
    m_state.recorded = 51;
    EXPECT_SCREEN(shown(80, 24), R"(
27  557.143 MHz   terrestrial OFDM   input 0, supply off                14:03:22
██████ ██████    ██████           Level, dBuV                          peak 72.6
██         ██        ██           ████████████│███████░░░░◆░░░░░░│░░░░░░░░░░░░░░
██████   ████    ██████           ████████████│███████░░░░◆░░░░░░│░░░░░░░░░░░░░░
██  ██     ██    ██               ████████████│███████░░░░◆░░░░░░│░░░░░░░░░░░░░░
██████ ██████ ██ ██████           20         47                 90           120

██████ ██████    ██  ██           C/N, dB                              peak 32.8
    ██     ██    ██  ██           ███████████████████████│█████░│░░░░░░░░░░░◆░░░
██████   ████    ██████           ███████████████████████│█████░│░░░░░░░░░░░◆░░░
██         ██        ██           ███████████████████████│█████░│░░░░░░░░░░░◆░░░
██████ ██████ ██     ██           5                     20     25             35

Lock yes  BER < 7.6e-07  MER 33.1 dB  Verdict marginal: C/N
   75                             35
                 ⢀⠤⠊⠢⡀                           ⢀⠔⠊⠢⢄            ⠐          ⠂
               ⡠⠒⠁   ⠈⠑⢄                      ⢀⠤⠊⠁    ⠑⢄
Level       ⡠⠔⠉         ⠑⠤⡀      C/N       ⢀⡠⠒⠁         ⠉⠢⡀
         ⣀⠔⠊              ⠈⠢⣀            ⡠⠔⠁              ⠈⠒⢄
      ⢀⠤⠊                    ⠑        ⣀⠔⠊                    ⠑
   60 ⠁                           20 ⠊                            ⠠          ⠄
      -9 s                 now       -9 s                  now
channel 27                                                     tone  recorded 51
n next  p previous  c channel  i input  r reset peaks  t tone  q quit
)");
}

TEST_F(LiveLayout, X60x16)
{
    measure();
    EXPECT_SCREEN(shown(60, 16), R"(
27  557.143 MHz                                     14:03:22
terrestrial OFDM  input 0, supply off
Level  63.2 dBuV                                   peak 72.6
████████████████│█████████░░░░░◆░░░░░░░░░│░░░░░░░░░░░░░░░░░░
20             47                       90               120
C/N    23.4 dB                                     peak 32.8
██████████████████████████████│██████░░│░░░░░░░░░░░░░░░◆░░░░
5                            20       25                  35
Lock yes  BER < 7.6e-07  MER 33.1 dB
Verdict marginal: C/N
   75            ⢀⡠⣀             35             ⣀⡠⣀
Level       ⢀⡠⠤⠒⠉⠁  ⠉⠒⠤⣀        C/N        ⣀⡠⠔⠒⠉   ⠉⠒⠢⢄⡀
       ⢀⡠⠤⠒⠉⠁           ⠉⠒⠢⢄⡀         ⣀⡠⠔⠒⠉            ⠈⠑⠢⢄⡀
   60 ⠉⠁                    ⠈    20 ⠒⠉                     ⠈
channel 27
n next  p prev  c channel  i input  r reset  t tone  q quit
)");
}

TEST_F(LiveLayout, X40x12)
{
    measure();
    EXPECT_SCREEN(shown(40, 12), R"(
27  557.143 MHz                 14:03:22
Level  63.2 dBuV               peak 72.6
███████████│██████░░░◆░░░░░│░░░░░░░░░░░░
C/N    23.4 dB                 peak 32.8
████████████████████│████░│░░░░░░░░░◆░░░
Lock yes  BER < 7.6e-07  MER 33.1 dB
Verdict marginal: C/N
   75 ⣀⡠⠤⠤⣀⡀           35 ⢀⣀⠤⠤⠤⣀⡀
Level      ⠈⠉⠒⠤⢄⣀     C/N ⠁     ⠈⠉⠒⠢⠤⣀⡀
   60            ⠉⠑    20             ⠈⠑
channel 27
n/p next c chan i inp r reset t tone q
)");
}

TEST_F(LiveLayout, InAscii)
{
    measure();
    EXPECT_SCREEN(shown(40, 12, false), R"(
27  557.143 MHz                 14:03:22
Level  63.2 dBuV               peak 72.6
###########|######...*.....|............
C/N    23.4 dB                 peak 32.8
####################|####.|.........*...
Lock yes  BER < 7.6e-07  MER 33.1 dB
Verdict marginal: C/N
   70 ...              30 .....
Level    ..........   C/N      .........
   60                  20
channel 27
n/p next c chan i inp r reset t tone q
)");
}

TEST_F(LiveLayout, LargerScreensGiveTheRoomToTheDrawings)
{
    measure();
    EXPECT_SCREEN(shown(100, 40), R"(
27  557.143 MHz   terrestrial OFDM   input 0, supply off                                    14:03:22
██████ ██████    ██████           Level, dBuV                                              peak 72.6
██         ██        ██           ██████████████████│██████████░░░░░◆░░░░░░░░░░░│░░░░░░░░░░░░░░░░░░░
██████   ████    ██████           ██████████████████│██████████░░░░░◆░░░░░░░░░░░│░░░░░░░░░░░░░░░░░░░
██  ██     ██    ██               ██████████████████│██████████░░░░░◆░░░░░░░░░░░│░░░░░░░░░░░░░░░░░░░
██████ ██████ ██ ██████           20               47                          90                120

██████ ██████    ██  ██           C/N, dB                                                  peak 32.8
    ██     ██    ██  ██           █████████████████████████████████│███████░░│░░░░░░░░░░░░░░░░◆░░░░░
██████   ████    ██████           █████████████████████████████████│███████░░│░░░░░░░░░░░░░░░░◆░░░░░
██         ██        ██           █████████████████████████████████│███████░░│░░░░░░░░░░░░░░░░◆░░░░░
██████ ██████ ██     ██           5                               20        25                    35

Lock yes  BER < 7.6e-07  MER 33.1 dB  Verdict marginal: C/N
   75
                                               ⢀
                                             ⢀⠔⠁⠑⡄
                                            ⡠⠊   ⠈⢢               ⠁                          ⠈
                                          ⡠⠊       ⠑⡄
Level                                   ⢀⠔⠁         ⠈⢆
                                       ⡔⠁             ⠱⡀
                                     ⡠⠊                ⠈⢆
                                   ⢠⠊                    ⠱
                                 ⢀⠔⠁
   60                           ⠐⠁
                                -10 s                  now
   35
                                               ⡠⡀
                                             ⢀⠔⠁⠘⢄
                                           ⢀⠔⠁    ⠣⡀
                                          ⡠⠊       ⠘⢄             ⡀                          ⢀
  C/N                                   ⢠⠊          ⠈⠢⡀
                                      ⢀⠔⠁             ⠑⢄
                                     ⡔⠁                ⠈⠢⡀
                                   ⡠⠊                    ⠑
                                 ⢠⠊
   20                           ⠐⠁
                                -10 s                  now
channel 27
n next  p previous  c channel  i input  r reset peaks  t tone  q quit
)");
}

TEST_F(LiveLayout, RightAfterTuning)
{
    EXPECT_SCREEN(shown(40, 12), R"(
27  557.143 MHz                 14:03:22
Level  - dBuV                     peak -
░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░
C/N    - dB                       peak -
░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░░
Lock -  BER -  MER -
Verdict -
    5                   5
Level                 C/N
    0                   0
channel 27
n/p next c chan i inp r reset t tone q
)");
}

TEST_F(LiveLayout, ALostMeterIsToldAndOldValuesAreFaint)
{
    measure();
    m_state.trouble = "the meter does not answer: the measurement service does not run";
    m_state.troubleSinceMs = kNow - 12000;
    EXPECT_SCREEN(shown(60, 16), R"(
27  557.143 MHz                                     14:03:22
terrestrial OFDM  input 0, supply off
Level  63.2 dBuV                                   peak 72.6
████████████████│█████████░░░░░◆░░░░░░░░░│░░░░░░░░░░░░░░░░░░
20             47                       90               120
C/N    23.4 dB                                     peak 32.8
██████████████████████████████│██████░░│░░░░░░░░░░░░░░░◆░░░░
5                            20       25                  35
Lock yes  BER < 7.6e-07  MER 33.1 dB
Verdict marginal: C/N
Since 14:03:10 the meter does not answer: the measurement
service does not run
   75       ⢀⣀⣀⠤⠤⠔⠒⠢⠤⠤⣀⣀         35        ⣀⣀⣀⠤⠤⠔⠒⠒⠤⠤⣀⣀⡀
   60 ⠤⠒⠒⠊⠉⠉⠁           ⠉⠉⠑⠒⠢    20 ⠤⠤⠒⠒⠊⠉⠉            ⠈⠉⠑⠒⠒
channel 27
n next  p prev  c channel  i input  r reset  t tone  q quit
)");
    const Grid grid = layout(m_state, {60, 16, true, kNow});
    EXPECT_EQ(grid.at(7, 2), (GridCell{U'6', Look::faint}));
    EXPECT_EQ(grid.at(0, 3), (GridCell{U'█', Look::faint}));
    EXPECT_EQ(grid.at(0, 10), (GridCell{U'S', Look::bad}));
}

TEST_F(LiveLayout, ATraceThatStandsStillDoesNotEndNow)
{
    measure();
    EXPECT_EQ(shown(80, 24)[21].substr(0, 31), "      -9 s                 now ");
    m_state.history.interrupt(kNow - 3000);
    m_state.trouble = "cannot read the measurement: the meter sleeps";
    m_state.troubleSinceMs = kNow - 3000;
    EXPECT_EQ(shown(80, 24)[21].substr(0, 31), "      -9 s                 -3 s");
    m_state.trouble.clear();
    m_state.askedMs = kNow - 4000;
    EXPECT_EQ(shown(80, 24)[21].substr(0, 31), "      -9 s                 -3 s");
}

TEST_F(LiveLayout, AnAnswerThatTakesLongIsMissed)
{
    measure();
    m_state.askedMs = kNow - 1999;
    EXPECT_EQ(layout(m_state, {40, 12, true, kNow}).at(7, 1).look, Look::good);
    m_state.askedMs = kNow - 4000;
    EXPECT_EQ(layout(m_state, {40, 12, true, kNow}).at(7, 1).look, Look::faint);
    EXPECT_EQ(shown(40, 12)[7], "The meter has not answered for 4 s");
}

TEST_F(LiveLayout, TheColoursAreThoseOfTheVerdicts)
{
    measure();
    const Grid grid = layout(m_state, {40, 12, true, kNow});
    EXPECT_EQ(grid.at(7, 1), (GridCell{U'6', Look::good}));
    EXPECT_EQ(grid.at(0, 2), (GridCell{U'█', Look::good}));
    EXPECT_EQ(grid.at(7, 3), (GridCell{U'2', Look::doubtful}));
    EXPECT_EQ(grid.at(0, 4), (GridCell{U'█', Look::doubtful}));
    EXPECT_EQ(grid.at(39, 4), (GridCell{U'░', Look::faint}));
    EXPECT_EQ(grid.at(8, 6), (GridCell{U'm', Look::doubtful}));
}

TEST_F(LiveLayout, WithoutThresholdsTheScaleIsFixed)
{
    measure();
    m_state.last->threshold.reset();
    const Lines lines = shown(60, 16);
    EXPECT_EQ(lines[4], "20                                                       120");
    EXPECT_EQ(lines[7], "0                                                         50");
    EXPECT_EQ(lines[3].find("│"), std::string::npos);
}

TEST_F(LiveLayout, WhatIsTyped)
{
    const Grid grid = layout(m_state, {40, 12, true, kNow, "bs1"});
    EXPECT_EQ(grid.line(10), "Channel or frequency: bs1_");
    EXPECT_EQ(grid.line(11), "Enter tunes  Esc leaves");
}

TEST_F(LiveLayout, SmallerThanItCanBe)
{
    measure();
    const Lines narrow = shown(39, 12);
    EXPECT_EQ(narrow[6], "           at least 40 x 12");
    EXPECT_EQ(joined(narrow).size(), 12 + 27u); // and nothing else
    EXPECT_EQ(shown(40, 11)[5], "            at least 40 x 12");
    EXPECT_EQ(shown(5, 1), Lines{"at le"});
    EXPECT_EQ(shown(1, 1), Lines{"a"});
}

TEST_F(LiveLayout, AnySizeCanBeDrawn)
{
    measure();
    m_state.trouble = "the meter does not answer: " + std::string(200, 'x');
    for (size_t columns = 1; columns < 200; ++columns)
        for (size_t rows = 1; rows < 70; rows += 3) {
            const Lines lines = shown(columns, rows, columns % 2 == 0);
            EXPECT_EQ(lines.size(), rows);
        }
}

TEST_F(LiveLayout, NamesAreSafeAndACharacterWideEach)
{
    m_state.channel = "A\x1B\xFF\u3042\u0301";
    EXPECT_EQ(shown(40, 12)[0], "A\\x1B\\xFF??  557.143 MHz        14:03:22");
}

TEST(LiveHistory, KeepsPeaksAndTheNewestReadings)
{
    History history;
    Reading reading{};
    for (uint32_t i = 1; i <= 2500; ++i) {
        reading.timeMs = i;
        reading.result.LEVEL = i == 7 ? 900 : 600;
        reading.result.CNR = i == 9 ? 300 : 200;
        history.add(reading);
    }
    EXPECT_EQ(history.trace.size(), 2000u);
    EXPECT_EQ(history.trace.front().timeMs, 501);
    EXPECT_EQ(history.levelPeak, 90.0);
    EXPECT_EQ(history.cnPeak, 30.0);
    history.interrupt(2600);
    EXPECT_EQ(history.trace.back().level, std::nullopt);
}

} // namespace
