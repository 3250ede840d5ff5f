// The factory contents of the settings files.
#include "libvx63.h"

// Manual broadcast system and modulation.
extern constexpr MeasSetManuBdsysMod g_measSetManuBdsysModDef[23] = {
    {.BDSYS = 0, .MOD = 1},     //
    {.BDSYS = 1, .MOD = 0},     //
    {.BDSYS = 2, .MOD = 0},     //
    {.BDSYS = 1, .MOD = 0},     //
    {.BDSYS = 2, .MOD = 0},     //
    {.BDSYS = 0, .MOD = 1},     //
    {.BDSYS = 3, .MOD = 1024},  //
    {.BDSYS = 0, .MOD = 1},     //
    {.BDSYS = 6, .MOD = 4096},  //
    {.BDSYS = 10, .MOD = 8192}, //
    {.BDSYS = 5, .MOD = 0},     //
    {.BDSYS = 5, .MOD = 0},     //
    {.BDSYS = 5, .MOD = 0},     //
    {.BDSYS = 5, .MOD = 0},     //
    {.BDSYS = 5, .MOD = 0},     //
    {.BDSYS = 5, .MOD = 0},     //
    {.BDSYS = 5, .MOD = 0},     //
    {.BDSYS = 5, .MOD = 0},     //
    {.BDSYS = 5, .MOD = 0},     //
    {.BDSYS = 5, .MOD = 0},     //
    {.BDSYS = 10, .MOD = 0},    //
    {.BDSYS = 10, .MOD = 0},    //
    {.BDSYS = 10, .MOD = 8192}, //
};
