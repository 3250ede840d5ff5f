// The channel plans among the factory contents, made at compile time from the rule of each. Frequencies are
// in kHz.
#include "setfile/default_tables.h"

#include <algorithm>
#include <initializer_list>

namespace vx63 {
namespace {

// Part of a plan: so many records from that one on.
template <size_t kCount, size_t kRows, size_t kRecordSize>
consteval Records<kCount, kRecordSize> part(const Records<kRows, kRecordSize>& plan, size_t first)
{
    Records<kCount, kRecordSize> records = {};
    std::copy_n(plan.begin() + first, kCount, records.begin());
    return records;
}

// ---- Satellite plans: a transponder a record ----

// Transponders whose numbers and frequencies rise evenly.
struct Transponders {
    uint32_t wave; // polarisation group
    std::string_view prefix;
    uint32_t firstNumber;
    uint32_t numberStep;
    uint32_t count;
    uint32_t firstFreq;
    uint32_t freqStep;
};

template <size_t kRows>
consteval Records<kRows, 16> satellitePlan(std::initializer_list<Transponders> groups)
{
    Records<kRows, 16> plan = {};
    size_t used = 0;
    for (const Transponders& group : groups) {
        for (uint32_t i = 0; i < group.count; ++i) {
            plan.at(used++) = record<kSatelliteColumns, 16>(
                {group.wave, numbered(group.prefix, group.firstNumber + group.numberStep * i),
                 group.firstFreq + group.freqStep * i});
        }
    }
    if (used != kRows) {
        recordsAreMissing();
    }
    return plan;
}

} // namespace

// File 17: BS 34.5 MHz. BS-n is at 11727480 + 19180 x (n - 1).
constexpr Records<24, 16> kBs = satellitePlan<24>({
    {0, "BS-", 1, 2, 12, 11727480, 2 * 19180},         //
    {1, "BS-", 2, 2, 12, 11727480 + 19180, 2 * 19180}, //
});

// File 18: CS 34.5 MHz.
constexpr Records<26, 16> kCs = satellitePlan<26>({
    {0, "ND", 2, 2, 12, 12291000, 40000}, //
    {0, "ND", 26, 0, 1, 12228000, 0},     //
    {1, "ND", 1, 2, 12, 12271000, 40000}, //
    {1, "ND", 25, 0, 1, 12231000, 0},     //
});

// File 19: SCC-B 27 MHz.
constexpr Records<23, 16> kSccb = satellitePlan<23>({
    {3, "", 1, 1, 12, 12290000, 40000},  //
    {2, "", 13, 1, 11, 12310000, 40000}, //
});

// File 20: SCC-C 27 MHz. Only D1, D5, D12, D17 and D24 are confirmed; the others follow the steps of the
// satellite's neighbours (docs/factory-tables.md).
constexpr Records<24, 16> kSccc = satellitePlan<24>({
    {2, "D", 1, 1, 4, 12320000, 40000},  //
    {2, "D", 5, 1, 8, 12523000, 30000},  //
    {3, "D", 13, 1, 4, 12340000, 40000}, //
    {3, "D", 17, 1, 8, 12508000, 30000}, //
});

// File 21: JSAT 3A 27 MHz. K-n is at 12268250 + 20000 x (n - 1) up to K-13, then at
// 12508250 + 15000 x (n - 13).
constexpr Records<28, 16> kJsat3a = satellitePlan<28>({
    {3, "K-", 1, 2, 7, 12268250, 40000},              // to K-13
    {3, "K-", 15, 2, 7, 12508250 + 2 * 15000, 30000}, //
    {2, "K-", 2, 2, 6, 12268250 + 20000, 40000},      // to K-12
    {2, "K-", 14, 2, 8, 12508250 + 15000, 30000},     //
});

// File 22: JSAT 4B 27 MHz.
constexpr Records<32, 16> kJsat4b = satellitePlan<32>({
    {3, "K-", 1, 2, 16, 12268000, 30000}, //
    {2, "K-", 2, 2, 16, 12283000, 30000}, //
});

// File 37: JSAT 3A antenna.
constexpr Records<16, 16> kJsat3aAnt = satellitePlan<16>({
    {3, "JD", 1, 2, 8, 12508250, 30000}, //
    {2, "JD", 2, 2, 8, 12523250, 30000}, //
});

// File 38: JSAT 4B antenna, each 250 kHz lower.
constexpr Records<16, 16> kJsat4bAnt = satellitePlan<16>({
    {3, "JD", 1, 2, 8, 12508250 - 250, 30000}, //
    {2, "JD", 2, 2, 8, 12523250 - 250, 30000}, //
});

static consteval Records<50, 16> bsCsPlan()
{
    Records<50, 16> plan = {};
    auto next = std::copy_n(kBs.begin(), 12, plan.begin());
    next = std::copy_n(kCs.begin(), 13, next);
    next = std::copy_n(kBs.begin() + 12, 12, next);
    std::copy_n(kCs.begin() + 13, 13, next);
    return plan;
}

// File 41: BS and CS together, one polarisation after the other.
constexpr Records<50, 16> kBsCs = bsCsPlan();

// ---- CATV plans: the public plan of 6 MHz channels (ARIB STD-B21, tables 10-2 to 10-4) ----

namespace {

// Channels in a row, 6 MHz apart.
struct CableChannels {
    std::string_view prefix;
    uint32_t firstNumber;
    uint32_t count;
    uint32_t firstCentre; // of a QAM signal
};

consteval Records<150, 16> cablePlan(std::initializer_list<CableChannels> groups)
{
    constexpr uint32_t kChannelWidth = 6000;
    constexpr uint32_t kOfdmShift = 143;

    Records<150, 16> plan = {};
    size_t used = 0;
    for (const CableChannels& group : groups) {
        for (uint32_t i = 0; i < group.count; ++i) {
            const uint32_t centre = group.firstCentre + kChannelWidth * i;
            plan.at(used++) = record<kCatvColumns, 16>(
                {numbered(group.prefix, group.firstNumber + i), centre, centre + kOfdmShift});
        }
    }
    if (used != plan.size()) {
        recordsAreMissing();
    }
    return plan;
}

} // namespace

// File 23: all channels in the order of their frequencies. There is no channel 7.
constexpr Records<150, 16> kCatvAll = cablePlan({
    {"", 1, 3, 93000},     //
    {"C", 13, 9, 111000},  //
    {"C", 22, 1, 167000},  // not where the steps would put it
    {"", 4, 3, 173000},    //
    {"", 8, 5, 195000},    //
    {"C", 23, 41, 225000}, //
    {"", 13, 50, 473000},  //
    {"C", 64, 38, 773000}, //
});

// File 24: 90 to 470 MHz.
constexpr Records<62, 16> kCatvLow = part<62>(kCatvAll, 0);

// File 25: 470 to 1002 MHz.
constexpr Records<88, 16> kCatvHigh = part<88>(kCatvAll, 62);

// ---- The other plans ----

static consteval Records<40, 12> uhfPlan()
{
    Records<40, 12> plan = {};
    for (uint32_t i = 0; i < plan.size(); ++i) {
        plan[i] = record<kUhfColumns, 12>({numbered("", 13 + i), 473143 + 6000 * i});
    }
    return plan;
}

// File 16: UHF 6 MHz.
constexpr Records<40, 12> kUhf = uhfPlan();

static consteval Records<113, 12> skypPlan()
{
    struct Namesake {
        uint32_t number;
        uint32_t freq;
    };
    constexpr Namesake kNamesakes[] = {
        {11, 159250}, //
        {12, 165750}, //
        {26, 259750}, //
        {27, 266250}, //
        {28, 272750}, //
        {61, 484750}, //
        {63, 497250}, //
    };
    Records<113, 12> plan = {};
    size_t used = 0;
    for (uint32_t n = 1; n <= 106; ++n) {
        plan.at(used++) = record<kSkypColumns, 12>({numbered("H", n, 3), 93250 + 6500 * (n - 1)});
        for (const Namesake& namesake : kNamesakes) {
            if (namesake.number == n) {
                plan.at(used++) = record<kSkypColumns, 12>({numbered("H-", n), namesake.freq});
            }
        }
    }
    if (used != plan.size()) {
        recordsAreMissing();
    }
    return plan;
}

// File 26: skyp 6 MHz, "H001" to "H106" at 93250 + 6500 x (n - 1). Seven of them have a namesake at another
// frequency right behind: "H-11" after "H011".
constexpr Records<113, 12> kSkyp = skypPlan();

// A frequency in MHz with so many decimals.
static consteval Text megahertz(uint32_t freq, uint32_t decimals)
{
    uint32_t unit = 1000; // kHz that the last digit counts
    for (uint32_t i = 0; i < decimals; ++i) {
        unit /= 10;
    }
    Text text = numbered("", freq / 1000);
    text += ".";
    text += numbered("", freq % 1000 / unit, decimals).view();
    return text;
}

static consteval Records<251, 12> fmPlan()
{
    Records<251, 12> plan = {};
    for (uint32_t i = 0; i < plan.size(); ++i) {
        const uint32_t freq = 70000 + 100 * i;
        plan[i] = record<kFmColumns, 12>({megahertz(freq, 1), freq});
    }
    return plan;
}

// File 29: FM, every 100 kHz; a channel's name is its frequency.
constexpr Records<251, 12> kFm = fmPlan();

static consteval Records<1001, 12> upStreamPlan()
{
    Records<1001, 12> plan = {};
    for (uint32_t i = 0; i < plan.size(); ++i) {
        const uint32_t freq = 10000 + 50 * i;
        plan[i] = record<kUpStreamColumns, 12>({megahertz(freq, 2), freq});
    }
    return plan;
}

// File 33: CATV up-stream, every 50 kHz; a channel's name is its frequency.
constexpr Records<1001, 12> kUpStream = upStreamPlan();

} // namespace vx63
