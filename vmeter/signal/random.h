// Random numbers by counter: the same seed, moment and purpose always give the same number, in whatever
// order they are asked for, in whichever process, with whichever standard library.
#pragma once

#include <cstdint>

namespace vmeter {

// What a number is drawn for; numbers of different purposes are independent.
enum class Purpose : uint32_t {
    level = 1,
    cn = 2,
    bitErrors = 3,
    constellation = 4,
    delayProfile = 5,
    opticalPower = 6,
    acceleration = 7,
    magneticField = 8,
    centerPoint = 9
};

// SplitMix64 (Steele, Lea, Flood: Fast Splittable Pseudorandom Number Generators, 2014): from one number the
// next, spread over all 64 bits.
uint64_t splitMix64(uint64_t value);

// A number of 64 random bits as one from 0 inclusive to 1 exclusive.
double toUniform(uint64_t bits);

class Random {
public:
    // ulSimMs and ulWhat (a frequency, an index) tell apart the draws of one purpose.
    Random(uint64_t seed, uint64_t ulSimMs, Purpose purpose, uint64_t ulWhat);

    uint64_t bits();
    double uniform(); // 0 inclusive to 1 exclusive
    double normal();  // mean 0, variance 1; within -6 to 6

private:
    uint64_t state_;
};

// How many of n bits are wrong when each is with probability p, 0 to 0.5: the binomial distribution, by
// the Poisson distribution where few errors are expected and by the normal one otherwise.
uint32_t drawErrors(Random& random, uint32_t n, double p);

} // namespace vmeter
