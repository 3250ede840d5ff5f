#include "measure/verdict_check.h"

#include "common/failure.h"
#include "common/text.h"

namespace tool {

void VerdictCheck::add(const Reading& reading)
{
    ++m_count;
    const Verdict verdict = reading.judgement.whole;
    m_judged += verdict != Verdict::none;
    const bool first = verdict == Verdict::fail       ? m_failed++ == 0
                       : verdict == Verdict::marginal ? m_marginal++ == 0 && m_failed == 0
                                                      : false;
    if (first)
        m_worst = (reading.channel.empty() ? format("%u kHz", reading.condition.ulFreq) : reading.channel) +
                  ": " + verdictCell(reading).text;
}

void VerdictCheck::conclude() const
{
    if (m_judged == 0)
        throw Failure(kExitVerdictFail, "nothing can be judged",
                      "there is no signal, or no threshold for its system and modulation",
                      "see 'vx63 settings show meas_set/thrd'");
    if (m_failed > 0)
        throw Failure(kExitVerdictFail, format("%zu of %zu fail", m_failed, m_count), m_worst,
                      "look at level, cable and antenna");
    if (m_marginal > 0)
        throw Failure(kExitVerdictMarginal, format("%zu of %zu are marginal", m_marginal, m_count), m_worst,
                      "look at level, cable and antenna");
}

} // namespace tool
