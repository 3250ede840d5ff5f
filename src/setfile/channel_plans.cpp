// The channel plans among the factory contents, made at compile time from the rule of each. Frequencies are
// in kHz.
#include "setfile/default_tables.h"

#include <algorithm>
#include <initializer_list>

namespace vx63 {
namespace {

// A file that is part of a plan: its records lie there from that one on.
template <uint32_t kFileId>
consteval Records<kFileId> part(const auto& plan, size_t first)
{
    Records<kFileId> records = {};
    std::copy_n(plan.begin() + first, records.size(), records.begin());
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

template <uint32_t kFileId>
consteval Records<kFileId> satellitePlan(std::initializer_list<Transponders> groups)
{
    Records<kFileId> plan = {};
    size_t used = 0;
    for (const Transponders& group : groups) {
        for (uint32_t i = 0; i < group.count; ++i) {
            plan.at(used++) =
                record<kFileId>({group.wave, numbered(group.prefix, group.firstNumber + group.numberStep * i),
                                 group.firstFreq + group.freqStep * i});
        }
    }
    if (used != plan.size()) {
        recordsAreMissing();
    }
    return plan;
}

} // namespace

// BS 34.5 MHz. BS-n is at 11727480 + 19180 x (n - 1).
constexpr Records<VX63_SET_FILE_BS> kBs = satellitePlan<VX63_SET_FILE_BS>({
    {0, "BS-", 1, 2, 12, 11727480, 2 * 19180},         //
    {1, "BS-", 2, 2, 12, 11727480 + 19180, 2 * 19180}, //
});

// CS 34.5 MHz.
constexpr Records<VX63_SET_FILE_CS> kCs = satellitePlan<VX63_SET_FILE_CS>({
    {0, "ND", 2, 2, 12, 12291000, 40000}, //
    {0, "ND", 26, 0, 1, 12228000, 0},     //
    {1, "ND", 1, 2, 12, 12271000, 40000}, //
    {1, "ND", 25, 0, 1, 12231000, 0},     //
});

// SCC-B 27 MHz.
constexpr Records<VX63_SET_FILE_SCCB> kSccb = satellitePlan<VX63_SET_FILE_SCCB>({
    {3, "", 1, 1, 12, 12290000, 40000},  //
    {2, "", 13, 1, 11, 12310000, 40000}, //
});

// SCC-C 27 MHz. Only D1, D5, D12, D17 and D24 are confirmed; the others follow the steps of the
// satellite's neighbours (docs/factory-tables.md).
constexpr Records<VX63_SET_FILE_SCCC> kSccc = satellitePlan<VX63_SET_FILE_SCCC>({
    {2, "D", 1, 1, 4, 12320000, 40000},  //
    {2, "D", 5, 1, 8, 12523000, 30000},  //
    {3, "D", 13, 1, 4, 12340000, 40000}, //
    {3, "D", 17, 1, 8, 12508000, 30000}, //
});

// JSAT 3A 27 MHz. K-n is at 12268250 + 20000 x (n - 1) up to K-13, then at
// 12508250 + 15000 x (n - 13).
constexpr Records<VX63_SET_FILE_JSAT3A> kJsat3a = satellitePlan<VX63_SET_FILE_JSAT3A>({
    {3, "K-", 1, 2, 7, 12268250, 40000},              // to K-13
    {3, "K-", 15, 2, 7, 12508250 + 2 * 15000, 30000}, //
    {2, "K-", 2, 2, 6, 12268250 + 20000, 40000},      // to K-12
    {2, "K-", 14, 2, 8, 12508250 + 15000, 30000},     //
});

// JSAT 4B 27 MHz.
constexpr Records<VX63_SET_FILE_JSAT4B> kJsat4b = satellitePlan<VX63_SET_FILE_JSAT4B>({
    {3, "K-", 1, 2, 16, 12268000, 30000}, //
    {2, "K-", 2, 2, 16, 12283000, 30000}, //
});

// JSAT 3A antenna.
constexpr Records<VX63_SET_FILE_JSAT3A_ANTENNA> kJsat3aAnt = satellitePlan<VX63_SET_FILE_JSAT3A_ANTENNA>({
    {3, "JD", 1, 2, 8, 12508250, 30000}, //
    {2, "JD", 2, 2, 8, 12523250, 30000}, //
});

// JSAT 4B antenna, each 250 kHz lower.
constexpr Records<VX63_SET_FILE_JSAT4B_ANTENNA> kJsat4bAnt = satellitePlan<VX63_SET_FILE_JSAT4B_ANTENNA>({
    {3, "JD", 1, 2, 8, 12508250 - 250, 30000}, //
    {2, "JD", 2, 2, 8, 12523250 - 250, 30000}, //
});

static consteval Records<VX63_SET_FILE_BS_CS> bsCsPlan()
{
    Records<VX63_SET_FILE_BS_CS> plan = {};
    auto next = std::copy_n(kBs.begin(), 12, plan.begin());
    next = std::copy_n(kCs.begin(), 13, next);
    next = std::copy_n(kBs.begin() + 12, 12, next);
    std::copy_n(kCs.begin() + 13, 13, next);
    return plan;
}

// BS and CS together, one polarisation after the other.
constexpr Records<VX63_SET_FILE_BS_CS> kBsCs = bsCsPlan();

// ---- CATV plans: the public plan of 6 MHz channels (ARIB STD-B21, tables 10-2 to 10-4) ----

namespace {

// Channels in a row, 6 MHz apart.
struct CableChannels {
    std::string_view prefix;
    uint32_t firstNumber;
    uint32_t count;
    uint32_t firstCentre; // of a QAM signal
};

consteval Records<VX63_SET_FILE_CATV_ALL> cablePlan(std::initializer_list<CableChannels> groups)
{
    constexpr uint32_t kChannelWidth = 6000;
    constexpr uint32_t kOfdmShift = 143;

    Records<VX63_SET_FILE_CATV_ALL> plan = {};
    size_t used = 0;
    for (const CableChannels& group : groups) {
        for (uint32_t i = 0; i < group.count; ++i) {
            const uint32_t centre = group.firstCentre + kChannelWidth * i;
            plan.at(used++) = record<VX63_SET_FILE_CATV_ALL>(
                {numbered(group.prefix, group.firstNumber + i), centre, centre + kOfdmShift});
        }
    }
    if (used != plan.size()) {
        recordsAreMissing();
    }
    return plan;
}

} // namespace

// All channels in the order of their frequencies. There is no channel 7.
constexpr Records<VX63_SET_FILE_CATV_ALL> kCatvAll = cablePlan({
    {"", 1, 3, 93000},     //
    {"C", 13, 9, 111000},  //
    {"C", 22, 1, 167000},  // not where the steps would put it
    {"", 4, 3, 173000},    //
    {"", 8, 5, 195000},    //
    {"C", 23, 41, 225000}, //
    {"", 13, 50, 473000},  //
    {"C", 64, 38, 773000}, //
});

// 90 to 470 MHz.
constexpr Records<VX63_SET_FILE_CATV_90_470MHZ> kCatvLow = part<VX63_SET_FILE_CATV_90_470MHZ>(kCatvAll, 0);

// 470 to 1002 MHz.
constexpr Records<VX63_SET_FILE_CATV_470_1002MHZ> kCatvHigh =
    part<VX63_SET_FILE_CATV_470_1002MHZ>(kCatvAll, 62);

// ---- The other plans ----

static consteval Records<VX63_SET_FILE_UHF> uhfPlan()
{
    Records<VX63_SET_FILE_UHF> plan = {};
    for (uint32_t i = 0; i < plan.size(); ++i) {
        plan[i] = record<VX63_SET_FILE_UHF>({numbered("", 13 + i), 473143 + 6000 * i});
    }
    return plan;
}

// UHF 6 MHz.
constexpr Records<VX63_SET_FILE_UHF> kUhf = uhfPlan();

static consteval Records<VX63_SET_FILE_SKYP> skypPlan()
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
    Records<VX63_SET_FILE_SKYP> plan = {};
    size_t used = 0;
    for (uint32_t n = 1; n <= 106; ++n) {
        plan.at(used++) = record<VX63_SET_FILE_SKYP>({numbered("H", n, 3), 93250 + 6500 * (n - 1)});
        for (const Namesake& namesake : kNamesakes) {
            if (namesake.number == n) {
                plan.at(used++) = record<VX63_SET_FILE_SKYP>({numbered("H-", n), namesake.freq});
            }
        }
    }
    if (used != plan.size()) {
        recordsAreMissing();
    }
    return plan;
}

// Skyp 6 MHz, "H001" to "H106" at 93250 + 6500 x (n - 1). Seven of them have a namesake at another
// frequency right behind: "H-11" after "H011".
constexpr Records<VX63_SET_FILE_SKYP> kSkyp = skypPlan();

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

static consteval Records<VX63_SET_FILE_FM> fmPlan()
{
    Records<VX63_SET_FILE_FM> plan = {};
    for (uint32_t i = 0; i < plan.size(); ++i) {
        const uint32_t freq = 70000 + 100 * i;
        plan[i] = record<VX63_SET_FILE_FM>({megahertz(freq, 1), freq});
    }
    return plan;
}

// FM, every 100 kHz; a channel's name is its frequency.
constexpr Records<VX63_SET_FILE_FM> kFm = fmPlan();

static consteval Records<VX63_SET_FILE_CATV_UP_STREAM> upStreamPlan()
{
    Records<VX63_SET_FILE_CATV_UP_STREAM> plan = {};
    for (uint32_t i = 0; i < plan.size(); ++i) {
        const uint32_t freq = 10000 + 50 * i;
        plan[i] = record<VX63_SET_FILE_CATV_UP_STREAM>({megahertz(freq, 2), freq});
    }
    return plan;
}

// CATV up-stream, every 50 kHz; a channel's name is its frequency.
constexpr Records<VX63_SET_FILE_CATV_UP_STREAM> kUpStream = upStreamPlan();

} // namespace vx63
