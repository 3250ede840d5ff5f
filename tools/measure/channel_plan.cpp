#include "measure/channel_plan.h"

#include "libvx63.h"
#include "settings/file.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace tool {

namespace {

// Bands, as the tables of thresholds and local oscillators name them.
constexpr uint8_t kBandBs = 2;
constexpr uint8_t kBandCs = 3;
constexpr uint8_t kBandJsat3a = 4;
constexpr uint8_t kBandSccc = 7;

constexpr uint32_t kNoLocalOscillator = UINT32_MAX;

// The records of the plans, as the settings files have them.
struct NamedRecord {
    char CH_NO[8];
    uint32_t CENT_FREQ;
};
struct WideRecord {
    char CH_NO[8];
    uint32_t CENT_FREQ;
    uint32_t BAND_WIDE;
};
struct SatelliteRecord {
    uint8_t WAVE;
    uint8_t reserved[3];
    char CH_NO[8];
    uint32_t CENT_FREQ;
};
struct CatvRecord {
    char CH_NO[8];
    uint32_t QAM_CENT_FREQ;
    uint32_t OFDM_CENT_FREQ;
};
struct LocalFreqRecord {
    uint8_t BAND;
    uint8_t WAVE;
    uint32_t LOCAL_FREQ[6];
};
struct DcOutRecord {
    uint8_t DC_OUT_STAT;
    uint8_t supply[9]; // JCSAT3, JCSAT4, SCC-B, SCC-C, H and V of each; others
};
static_assert(sizeof(NamedRecord) == 12 && sizeof(WideRecord) == 16 && sizeof(CatvRecord) == 16);
static_assert(sizeof(SatelliteRecord) == 16 && offsetof(SatelliteRecord, CH_NO) == 4);
static_assert(sizeof(LocalFreqRecord) == 28 && offsetof(LocalFreqRecord, LOCAL_FREQ) == 4);
static_assert(sizeof(DcOutRecord) == 10);

enum class Form { named, wide, satellite, catv };

struct Plan {
    std::string_view name;
    uint32_t fileId;
    Form form;
    uint8_t band;
    uint16_t system;
};

constexpr Plan kPlans[] = {
    {"uhf", VX63_SET_FILE_UHF, Form::named, 1, VX63_BDSYS_TERRESTRIAL},
    {"bs", VX63_SET_FILE_BS, Form::satellite, kBandBs, VX63_BDSYS_SATELLITE},
    {"cs", VX63_SET_FILE_CS, Form::satellite, kBandCs, VX63_BDSYS_SATELLITE},
    {"bs-cs", VX63_SET_FILE_BS_CS, Form::satellite, kBandBs, VX63_BDSYS_SATELLITE},
    {"catv", VX63_SET_FILE_CATV_ALL, Form::catv, 8, VX63_BDSYS_CATV},
    {"catv-low", VX63_SET_FILE_CATV_90_470MHZ, Form::catv, 8, VX63_BDSYS_CATV},
    {"catv-high", VX63_SET_FILE_CATV_470_1002MHZ, Form::catv, 8, VX63_BDSYS_CATV},
    {"skyp", VX63_SET_FILE_SKYP, Form::named, 12, VX63_BDSYS_SKYP},
    {"jsat3a", VX63_SET_FILE_JSAT3A, Form::satellite, kBandJsat3a, VX63_BDSYS_JSAT_2},
    {"jsat4b", VX63_SET_FILE_JSAT4B, Form::satellite, 5, VX63_BDSYS_JSAT_2},
    {"sccb", VX63_SET_FILE_SCCB, Form::satellite, 6, VX63_BDSYS_JSAT_2},
    {"sccc", VX63_SET_FILE_SCCC, Form::satellite, kBandSccc, VX63_BDSYS_JSAT_2},
    {"fm", VX63_SET_FILE_FM, Form::named, 14, VX63_BDSYS_LEVEL},
    {"lte", VX63_SET_FILE_LTE, Form::wide, 13, VX63_BDSYS_LEVEL},
    {"pilot", VX63_SET_FILE_PILOT, Form::named, 11, VX63_BDSYS_LEVEL},
    {"up-stream", VX63_SET_FILE_CATV_UP_STREAM, Form::named, 15, VX63_BDSYS_LEVEL},
};

class Satellites {
public:
    // 0 where there is none.
    uint32_t localOscillator(uint8_t band, uint8_t wave) const
    {
        for (const LocalFreqRecord& record : m_oscillators)
            if (record.BAND == band && record.WAVE == wave)
                return record.LOCAL_FREQ[0] == kNoLocalOscillator ? 0 : record.LOCAL_FREQ[0];
        return 0;
    }

    // Group 2 is horizontal, group 3 vertical; the LNB for BS and CS has 15 V for both of its groups.
    int32_t supply(uint8_t band, uint8_t wave) const
    {
        constexpr int32_t k15V = 2;
        if (band < kBandJsat3a || band > kBandSccc)
            return k15V;
        for (const DcOutRecord& record : m_outputs)
            if (record.DC_OUT_STAT == 0)
                return record.supply[2 * (band - kBandJsat3a) + (wave == 3 ? 1 : 0)];
        return VX63_POWER_SUPPLY_OFF;
    }

private:
    std::vector<LocalFreqRecord> m_oscillators = recordsOrFactory<LocalFreqRecord>(VX63_SET_FILE_LOCAL_FREQ);
    std::vector<DcOutRecord> m_outputs = recordsOrFactory<DcOutRecord>(VX63_SET_FILE_DC_OUT);
};

class List {
public:
    List(const Plan& plan, const PlanChanges& changes) : m_plan(plan), m_changes(changes) {}

    void add(const char (&name)[8], uint32_t ulFreq, uint16_t system, uint8_t band, uint32_t ulLoFreq = 0,
             int32_t supply = VX63_POWER_SUPPLY_OFF, uint32_t widthKhz = 0)
    {
        if (ulFreq == 0) // an empty place
            return;
        ListChannel channel{std::string(name, strnlen(name, sizeof name)), {}, m_group, widthKhz};
        MeasCondition& condition = channel.condition;
        condition.ulFreq = ulFreq;
        condition.ulLoFreq = m_changes.ulLoFreq.value_or(ulLoFreq);
        condition.usBdSys = m_changes.usBdSys.value_or(system);
        condition.usBand = band;
        condition.usMod = m_changes.usMod;
        condition.powerSupply = m_changes.powerSupply.value_or(supply);
        std::memcpy(condition.ucStrChan, name, channel.name.size());
        m_channels.push_back(std::move(channel));
    }

    template <class Record>
    void addNamed()
    {
        for (const auto& record : recordsOrFactory<Record>(m_plan.fileId)) {
            uint32_t widthKhz = 0;
            if constexpr (requires { record.BAND_WIDE; })
                widthKhz = record.BAND_WIDE;
            add(record.CH_NO, record.CENT_FREQ, m_plan.system, m_plan.band, 0, VX63_POWER_SUPPLY_OFF,
                widthKhz);
            ++m_group;
        }
    }

    void addSatellite()
    {
        const Satellites satellites;
        for (const auto& record : recordsOrFactory<SatelliteRecord>(m_plan.fileId)) {
            const bool isCs = m_plan.band == kBandBs && std::string_view(record.CH_NO, 2) == "ND";
            const uint8_t band = isCs ? kBandCs : m_plan.band;
            // The second group of the BS and CS plans is that of the second generation.
            uint16_t system = m_plan.system;
            if (system == VX63_BDSYS_SATELLITE && record.WAVE == 1)
                system = VX63_BDSYS_SATELLITE_2;
            add(record.CH_NO, record.CENT_FREQ, system, band, satellites.localOscillator(band, record.WAVE),
                satellites.supply(band, record.WAVE));
            ++m_group;
        }
    }

    void addCatv()
    {
        for (const auto& record : recordsOrFactory<CatvRecord>(m_plan.fileId)) {
            if (m_changes.usBdSys != VX63_BDSYS_TERRESTRIAL)
                add(record.CH_NO, record.QAM_CENT_FREQ, VX63_BDSYS_CATV, m_plan.band);
            if (!m_changes.usBdSys || m_changes.usBdSys == VX63_BDSYS_TERRESTRIAL)
                add(record.CH_NO, record.OFDM_CENT_FREQ, VX63_BDSYS_TERRESTRIAL, m_plan.band);
            ++m_group;
        }
    }

    std::vector<ListChannel> take() { return std::move(m_channels); }

private:
    const Plan& m_plan;
    const PlanChanges& m_changes;
    size_t m_group = 0;
    std::vector<ListChannel> m_channels;
};

} // namespace

bool isPlan(std::string_view name)
{
    return std::ranges::find(kPlans, name, &Plan::name) != std::end(kPlans);
}

std::string planNames()
{
    std::string names;
    for (const Plan& plan : kPlans)
        names += (names.empty() ? "" : ", ") + std::string(plan.name);
    return names;
}

std::vector<ListChannel> planChannels(std::string_view name, const PlanChanges& changes)
{
    const Plan& plan = *std::ranges::find(kPlans, name, &Plan::name);
    List list(plan, changes);
    switch (plan.form) {
    case Form::named:
        list.addNamed<NamedRecord>();
        break;
    case Form::wide:
        list.addNamed<WideRecord>();
        break;
    case Form::satellite:
        list.addSatellite();
        break;
    case Form::catv:
        list.addCatv();
        break;
    }
    return list.take();
}

} // namespace tool
