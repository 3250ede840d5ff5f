#include "measure/point_collection.h"

#include "common/exchange.h"

#include <algorithm>

namespace tool {

namespace {

constexpr size_t kMaxRead = 624; // points that one message has room for

} // namespace

PointCollection::PointCollection(uint8_t ucDispType, uint16_t points)
    : m_running(
          "the collection of points", [&] { return vx63_startConstaMeas(ucDispType, points); },
          [ucDispType] { return vx63_stopConstaMeas(ucDispType); }),
      m_result(std::make_unique<SingleMeasResult>())
{}

std::span<const ConstaPoint> PointCollection::read(size_t most)
{
    const auto count = static_cast<uint16_t>(std::min(kMaxRead, most));
    require("cannot read the constellation", [&] { return vx63_getSingleMeasResult(count, m_result.get()); });
    return {m_result->points, std::min(m_result->CONS_NUM, count)};
}

} // namespace tool
