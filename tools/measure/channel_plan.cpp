#include "measure/channel_plan.h"

#include "common/failure.h"
#include "common/text.h"
#include "libvx63.h"
#include "measure/channel_options.h"
#include "settings/file.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <unistd.h>

namespace tool {

namespace {

// Bands, as the tables of thresholds and local oscillators name them.
constexpr uint16_t kBandBs = 2;
constexpr uint16_t kBandCs = 3;
constexpr uint16_t kBandJsat3a = 4;
constexpr uint16_t kBandSccc = 7;

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

constexpr Plan kPlans[] = {
    {"uhf", "UHF television", VX63_SET_FILE_UHF, PlanForm::named, 1, VX63_BDSYS_TERRESTRIAL},
    {"bs", "BS satellite", VX63_SET_FILE_BS, PlanForm::satellite, kBandBs, VX63_BDSYS_SATELLITE},
    {"cs", "CS satellite", VX63_SET_FILE_CS, PlanForm::satellite, kBandCs, VX63_BDSYS_SATELLITE},
    {"bs-cs", "BS and CS satellites", VX63_SET_FILE_BS_CS, PlanForm::satellite, kBandBs,
     VX63_BDSYS_SATELLITE},
    {"catv", "cable television", VX63_SET_FILE_CATV_ALL, PlanForm::catv, 8, VX63_BDSYS_CATV},
    {"catv-low", "cable: 90 to 470 MHz", VX63_SET_FILE_CATV_90_470MHZ, PlanForm::catv, 8, VX63_BDSYS_CATV},
    {"catv-high", "cable: 470 to 1002 MHz", VX63_SET_FILE_CATV_470_1002MHZ, PlanForm::catv, 8,
     VX63_BDSYS_CATV},
    {"skyp", "Skyp cable", VX63_SET_FILE_SKYP, PlanForm::named, 12, VX63_BDSYS_SKYP},
    {"jsat3a", "JSAT 3A satellite", VX63_SET_FILE_JSAT3A, PlanForm::satellite, kBandJsat3a,
     VX63_BDSYS_JSAT_2},
    {"jsat4b", "JSAT 4B satellite", VX63_SET_FILE_JSAT4B, PlanForm::satellite, 5, VX63_BDSYS_JSAT_2},
    {"sccb", "SCC-B satellite", VX63_SET_FILE_SCCB, PlanForm::satellite, 6, VX63_BDSYS_JSAT_2},
    {"sccc", "SCC-C satellite", VX63_SET_FILE_SCCC, PlanForm::satellite, kBandSccc, VX63_BDSYS_JSAT_2},
    {"fm", "FM radio", VX63_SET_FILE_FM, PlanForm::named, 14, VX63_BDSYS_LEVEL},
    {"lte", "LTE mobile radio", VX63_SET_FILE_LTE, PlanForm::wide, 13, VX63_BDSYS_LEVEL},
    {"pilot", "pilot carriers of cable", VX63_SET_FILE_PILOT, PlanForm::named, 11, VX63_BDSYS_LEVEL},
    {"up-stream", "up-stream of cable", VX63_SET_FILE_CATV_UP_STREAM, PlanForm::named, 15, VX63_BDSYS_LEVEL},
};

// Polarisations, by the groups of the satellite plans.
constexpr std::string_view kPolarisations = "RLHV";

template <class Record>
std::vector<Record> recordsOf(uint32_t fileId, Missing missing)
{
    const FileRef file{fileId, ""};
    if (missing == Missing::told || access(pathOf(file).c_str(), F_OK) == 0)
        return recordsOrFactory<Record>(fileId);
    return recordsIn<Record>(factoryContents(fileId));
}

class Satellites {
public:
    explicit Satellites(Missing missing)
        : m_oscillators(recordsOf<LocalFreqRecord>(VX63_SET_FILE_LOCAL_FREQ, missing)),
          m_outputs(recordsOf<DcOutRecord>(VX63_SET_FILE_DC_OUT, missing))
    {}

    // 0 where there is none.
    uint32_t localOscillator(uint16_t band, uint8_t wave) const
    {
        for (const LocalFreqRecord& record : m_oscillators)
            if (record.BAND == band && record.WAVE == wave)
                return record.LOCAL_FREQ[0] == kNoLocalOscillator ? 0 : record.LOCAL_FREQ[0];
        return 0;
    }

    // Group 2 is horizontal, group 3 vertical; the LNB for BS and CS has 15 V for both of its groups.
    int32_t supply(uint16_t band, uint8_t wave) const
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
    std::vector<LocalFreqRecord> m_oscillators;
    std::vector<DcOutRecord> m_outputs;
};

class PlanReader {
public:
    PlanReader(const Plan& plan, const PlanChanges& changes, Missing missing)
        : m_plan(plan), m_changes(changes), m_missing(missing)
    {}

    template <class Record>
    void addNamed()
    {
        for (const auto& record : recordsOf<Record>(m_plan.fileId, m_missing)) {
            add(record.CH_NO, record.CENT_FREQ, m_plan.system, m_plan.band);
            if constexpr (requires { record.BAND_WIDE; })
                if (record.CENT_FREQ != 0)
                    m_channels.back().widthKhz = record.BAND_WIDE;
            ++m_group;
        }
    }

    void addSatellite()
    {
        const Satellites satellites(m_missing);
        for (const auto& record : recordsOf<SatelliteRecord>(m_plan.fileId, m_missing)) {
            const bool isCs = m_plan.band == kBandBs && std::string_view(record.CH_NO, 2) == "ND";
            const uint16_t band = isCs ? kBandCs : m_plan.band;
            // The second group of the BS and CS plans is that of the second generation.
            uint16_t system = m_plan.system;
            if (system == VX63_BDSYS_SATELLITE && record.WAVE == 1)
                system = VX63_BDSYS_SATELLITE_2;
            add(record.CH_NO, record.CENT_FREQ, system, band, satellites.localOscillator(band, record.WAVE),
                satellites.supply(band, record.WAVE),
                record.WAVE < kPolarisations.size() ? kPolarisations[record.WAVE] : '\0');
            ++m_group;
        }
    }

    void addCatv()
    {
        for (const auto& record : recordsOf<CatvRecord>(m_plan.fileId, m_missing)) {
            if (isQamWanted())
                add(record.CH_NO, record.QAM_CENT_FREQ, VX63_BDSYS_CATV, m_plan.band);
            if (isOfdmWanted())
                add(record.CH_NO, record.OFDM_CENT_FREQ, VX63_BDSYS_TERRESTRIAL, m_plan.band);
            ++m_group;
        }
    }

    std::vector<ListChannel> take() { return std::move(m_channels); }

private:
    uint16_t modulation(uint16_t system) const
    {
        return m_changes.modulation.empty() ? uint16_t{VX63_MOD_ANY}
                                            : modulationIn("--mod", m_changes.modulation, system);
    }

    bool isOfdmWanted() const
    {
        const unsigned bits = modulation(VX63_BDSYS_TERRESTRIAL);
        return m_changes.usBdSys ? m_changes.usBdSys == VX63_BDSYS_TERRESTRIAL
                                 : bits == VX63_MOD_ANY || (bits & VX63_MOD_OFDM) != 0;
    }

    bool isQamWanted() const
    {
        return m_changes.usBdSys ? m_changes.usBdSys != VX63_BDSYS_TERRESTRIAL
                                 : modulation(VX63_BDSYS_CATV) != VX63_MOD_OFDM;
    }

    void add(const char (&name)[8], uint32_t ulFreq, uint16_t system, uint16_t band, uint32_t ulLoFreq = 0,
             int32_t supply = VX63_POWER_SUPPLY_OFF, char polarisation = '\0')
    {
        if (ulFreq == 0) // an empty place
            return;
        ListChannel channel{std::string(name, strnlen(name, sizeof name)), {}, m_group, polarisation, 0};
        MeasCondition& condition = channel.condition;
        condition.ulFreq = ulFreq;
        condition.ulLoFreq = m_changes.ulLoFreq.value_or(ulLoFreq);
        condition.usBdSys = m_changes.usBdSys.value_or(system);
        condition.usBand = band;
        condition.usMod = modulation(condition.usBdSys);
        condition.powerSupply = m_changes.powerSupply.value_or(supply);
        std::memcpy(condition.ucStrChan, name, channel.name.size());
        m_channels.push_back(std::move(channel));
    }

    const Plan& m_plan;
    const PlanChanges& m_changes;
    Missing m_missing;
    size_t m_group = 0;
    std::vector<ListChannel> m_channels;
};

} // namespace

std::span<const Plan> plans()
{
    return kPlans;
}

std::string planNames()
{
    std::string names;
    for (const Plan& plan : kPlans)
        names += (names.empty() ? "" : ", ") + std::string(plan.name);
    return names;
}

const Plan* planIn(const std::string& option, const std::string& name)
{
    const auto* found =
        std::ranges::find_if(kPlans, [&](const Plan& plan) { return sameWord(plan.name, name); });
    if (found == std::end(kPlans))
        throw WrongUsage(option, format("'%s' is none of %s", name.c_str(), planNames().c_str()));
    return found;
}

std::vector<ListChannel> planChannels(const Plan& plan, const PlanChanges& changes, Missing missing)
{
    PlanReader list(plan, changes, missing);
    switch (plan.form) {
    case PlanForm::named:
        list.addNamed<NamedRecord>();
        break;
    case PlanForm::wide:
        list.addNamed<WideRecord>();
        break;
    case PlanForm::satellite:
        list.addSatellite();
        break;
    case PlanForm::catv:
        list.addCatv();
        break;
    }
    return list.take();
}

} // namespace tool
