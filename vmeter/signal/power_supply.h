// The antenna power supply: what the meter feeds into the selected input, and what it reads back.
#pragma once

#include "model/scene.h"

#include <cstdint>

namespace vmeter {

inline constexpr uint8_t kSupplyCodeMax = 4; // 0 off, 1 11 V, 2 15 V, 3 11 V with tone, 4 15 V with tone
inline constexpr uint32_t kSupplyLimitMa = 500;

// The code of a start's two bytes; beyond kSupplyCodeMax when they are none of the five pairs.
uint8_t supplyCode(uint8_t ucSupplyLevel, uint8_t ucSupplyKind);

struct SupplyState {
    uint8_t ucCode; // as asked for
    uint8_t ucVolt; // at the connector: 0, 11, 15
    bool tone;      // 22 kHz
    bool fault;     // short circuit or more current than kSupplyLimitMa: the supply limits, the voltage is 0
    uint32_t ulCurrentMa;
};

SupplyState supplyState(const Scene& scene, uint8_t ucInput, uint8_t ucCode);

// Reading of the 10-bit converter: full scale is 20 V.
uint16_t supplyAdVal(uint8_t ucVolt);

} // namespace vmeter
