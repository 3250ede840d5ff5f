// The factory contents of the settings files: short tables, row by row in CSV column order. The channel
// plans, which follow a rule, stand in channel_plans.cpp.
#include "setfile/default_tables.h"

#include "libvx63.h"

namespace vx63 {
namespace {

// The columns of the measurement management that are not 0 in every record.
constexpr std::string_view kPmeasMngGiven[] = {
    "SINGLE1_ISMES",        //
    "SINGLE1_MESDATA",      //
    "SINGLE1_TMNOSIGNAL",   //
    "SINGLE1_TMLOCK",       //
    "SINGLE1_JUDGEMESDATA", //
    "MULTI1_ISMES",         //
    "MULTI1_MESDATA",       //
    "MULTI1_TMNOSIGNAL",    //
    "MULTI1_TMLOCK",        //
    "MULTI1_JUDGEMESDATA",  //
};

// The index of a column of the measurement management. A name that is none does not compile: the search runs
// past the table.
consteval size_t pmeasMngColumn(std::string_view name)
{
    size_t i = 0;
    while (settings::kPmeasMngColumns[i].name != name) {
        ++i;
    }
    return i;
}

template <size_t kRows>
consteval Records<VX63_SET_FILE_PMEAS_MNG, kRows>
pmeasMng(const Cell (&rows)[kRows][std::size(kPmeasMngGiven)])
{
    Records<VX63_SET_FILE_PMEAS_MNG, kRows> file = {};
    for (size_t i = 0; i < kRows; ++i) {
        Cell cells[std::size(settings::kPmeasMngColumns)];
        for (size_t given = 0; given < std::size(kPmeasMngGiven); ++given) {
            cells[pmeasMngColumn(kPmeasMngGiven[given])] = rows[i][given];
        }
        file[i] = record<VX63_SET_FILE_PMEAS_MNG>(cells);
    }
    return file;
}

} // namespace

// Power-off time choices.
constexpr Records<VX63_SET_FILE_POWOFF> kPowOff = records<VX63_SET_FILE_POWOFF>({
    {0, 5, 10, 15, 30, 60, 10}, //
});

// Volume.
constexpr Records<VX63_SET_FILE_VOLUME> kVolume = records<VX63_SET_FILE_VOLUME>({
    {0, 1, 2, 3, 0}, //
});

// Brightness.
constexpr Records<VX63_SET_FILE_BRIGHTNESS> kBrightness = records<VX63_SET_FILE_BRIGHTNESS>({
    {3, 2, 1, 2}, //
});

// Local-oscillator frequencies in kHz; 4294967295 (-1 as unsigned) marks an empty slot.
constexpr Records<VX63_SET_FILE_LOCAL_FREQ> kLocalFreq = records<VX63_SET_FILE_LOCAL_FREQ>({
    {2, 0, 10678000, 4294967295, 4294967295, 4294967295, 4294967295, 4294967295}, //
    {2, 1, 9505000, 4294967295, 4294967295, 4294967295, 4294967295, 4294967295},  //
    {3, 0, 10678000, 4294967295, 4294967295, 4294967295, 4294967295, 4294967295}, //
    {3, 1, 9505000, 4294967295, 4294967295, 4294967295, 4294967295, 4294967295},  //
    {4, 2, 10678000, 4294967295, 4294967295, 11200000, 11300000, 0},              //
    {4, 3, 10678000, 4294967295, 4294967295, 11200000, 11300000, 0},              //
    {5, 2, 10678000, 4294967295, 4294967295, 11200000, 11300000, 0},              //
    {5, 3, 10678000, 4294967295, 4294967295, 11200000, 11300000, 0},              //
    {6, 2, 10678000, 4294967295, 4294967295, 11200000, 11300000, 0},              //
    {6, 3, 10678000, 4294967295, 4294967295, 11200000, 11300000, 0},              //
    {7, 2, 10678000, 4294967295, 4294967295, 11200000, 11300000, 0},              //
    {7, 3, 10678000, 4294967295, 4294967295, 11200000, 11300000, 0},              //
});

// Judgement thresholds. Levels and ratios are in tenths; a BER threshold is MAN / 100 x 10 to the
// power of EXP.
constexpr Records<VX63_SET_FILE_THRD> kThrd = records<VX63_SET_FILE_THRD>({
    {1,   0,  1,   200, 470, 900, 1200, 50,  200, 250, 350,        //
     100, -4, 200, -6,  100, -9,  100,  -10, 50,  200, 250, 350},  //
    {2,   1,  26,  200, 500, 810, 1200, 50,  90, 170, 350,         //
     100, -4, 200, -6,  100, -9,  100,  -10, 50, 90,  170, 350},   //
    {2,   2,  248, 200, 500, 810, 1200, 50,  110, 180, 350,        //
     100, -4, 200, -6,  100, -9,  100,  -10, 50,  110, 180, 350},  //
    {3,   1,  26,  200, 500, 810, 1200, 50,  60, 120, 350,         //
     100, -4, 200, -6,  100, -9,  100,  -10, 50, 60,  120, 350},   //
    {3,   2,  248, 200, 500, 810, 1200, 50,  70, 140, 350,         //
     100, -4, 200, -6,  100, -9,  100,  -10, 50, 70,  140, 350},   //
    {4,   4,  8,   200, 500, 810, 1200, 50,  70, 100, 250,         //
     100, -4, 200, -6,  100, -9,  100,  -10, 50, 70,  100, 250},   //
    {4,   5,  232, 200, 500, 810, 1200, 50,  80, 100, 250,         //
     100, -4, 200, -6,  100, -9,  100,  -10, 50, 80,  100, 250},   //
    {5,   4,  8,   200, 500, 810, 1200, 50,  70, 100, 250,         //
     100, -4, 200, -6,  100, -9,  100,  -10, 50, 70,  100, 250},   //
    {5,   5,  232, 200, 500, 810, 1200, 50,  80, 100, 250,         //
     100, -4, 200, -6,  100, -9,  100,  -10, 50, 80,  100, 250},   //
    {6,   4,  8,   200, 500, 810, 1200, 50,  70, 100, 250,         //
     100, -4, 200, -6,  100, -9,  100,  -10, 50, 70,  100, 250},   //
    {6,   5,  232, 200, 500, 810, 1200, 50,  80, 100, 250,         //
     100, -4, 200, -6,  100, -9,  100,  -10, 50, 80,  100, 250},   //
    {7,   4,  8,   200, 500, 810, 1200, 50,  70, 100, 250,         //
     100, -4, 200, -6,  100, -9,  100,  -10, 50, 70,  100, 250},   //
    {7,   5,  232, 200, 500, 810, 1200, 50,  80, 100, 250,         //
     100, -4, 200, -6,  100, -9,  100,  -10, 50, 80,  100, 250},   //
    {8,   0,  1,   200, 470, 900, 1200, 50,  200, 250, 350,        //
     100, -4, 200, -6,  100, -9,  100,  -10, 50,  200, 250, 350},  //
    {8,   3,  1024, 200, 490, 810, 1200, 200, 260, 300, 400,       //
     100, -4, 200,  -6,  100, -9,  100,  -10, 200, 260, 300, 400}, //
    {8,   3,  4096, 200, 570, 810, 1200, 200, 310, 340, 400,       //
     100, -4, 200,  -6,  100, -9,  100,  -10, 200, 310, 340, 400}, //
    {8,   9,  1024, 200, 490, 810, 1200, 200, 260, 300, 400,       //
     100, -4, 200,  -6,  100, -9,  100,  -10, 200, 260, 300, 400}, //
    {8,   9,  4096, 200, 570, 810, 1200, 200, 310, 340, 400,       //
     100, -4, 200,  -6,  100, -9,  100,  -10, 200, 310, 340, 400}, //
    {11, 10, 8192, 200, 500, 900, 1200, 0, 0, 0, 0,                //
     0,  0,  0,    0,   0,   0,   0,    0, 0, 0, 0, 0},            //
    {12,  0,  1,   200, 250, 450, 1200, 50,  200, 250, 350,        //
     100, -4, 200, -6,  100, -9,  100,  -10, 50,  200, 250, 350},  //
    {12,  6,  4096, 200, 570, 810, 1200, 200, 300, 340, 400,       //
     100, -4, 200,  -6,  100, -9,  100,  -10, 50,  300, 340, 350}, //
    {13, 10, 0, 200, 200, 1200, 1200, 0, 0, 0, 0,                  //
     0,  0,  0, 0,   0,   0,    0,    0, 0, 0, 0, 0},              //
    {14, 10, 0, 200, 200, 1200, 1200, 0, 0, 0, 0,                  //
     0,  0,  0, 0,   0,   0,    0,    0, 0, 0, 0, 0},              //
    {15, 10, 8192, 200, 600, 900, 1200, 0, 0, 0, 0,                //
     0,  0,  0,    0,   0,   0,   0,    0, 0, 0, 0, 0},            //
});

// Selection of CNR or MER; the last four are not used.
constexpr Records<VX63_SET_FILE_CNRMER> kCnrMer = records<VX63_SET_FILE_CNRMER>({
    {0, 1, 1},       //
    {0, 1, 0},       //
    {0, 1, 0},       //
    {0, 1, 1},       //
    {0, 1, 1},       //
    {0, 1, 1},       //
    {0, 1, 1},       //
    {0, 1, 0},       //
    {0, 1, 0},       //
    {0, 1, 0},       //
    {0, 1, 0},       //
    {255, 255, 255}, //
    {255, 255, 255}, //
    {255, 255, 255}, //
    {255, 255, 255}, //
});

// CATV frequency sets, in kHz.
constexpr Records<VX63_SET_FILE_CATV_FREQ> kCatvFreq = records<VX63_SET_FILE_CATV_FREQ>({
    {1, 5120, 231000, 237000, 243000, 249000, 1, 1}, //
    {1, 1, 231143, 237143, 243143, 249143, 0, 1},    //
    {2, 5120, 233000, 239000, 245000, 251000, 1, 0}, //
    {2, 1, 233143, 239143, 245143, 251143, 0, 0},    //
});

// Cable-loss correction points, in kHz.
constexpr Records<VX63_SET_FILE_CABLE_LOSS> kCableLoss = records<VX63_SET_FILE_CABLE_LOSS>({
    {10000, 0},   //
    {770000, 0},  //
    {950000, 0},  //
    {3224000, 0}, //
});

// Cable-loss correction enable.
constexpr Records<VX63_SET_FILE_CABLE_LOSS_ENB> kCableLossEnb = records<VX63_SET_FILE_CABLE_LOSS_ENB>({
    {1}, //
});

// Input selection.
constexpr Records<VX63_SET_FILE_INPUT> kInput = records<VX63_SET_FILE_INPUT>({
    {0, 1, 0}, //
});

// CATV modulation choices.
constexpr Records<VX63_SET_FILE_CATV_MOD> kCatvMod = records<VX63_SET_FILE_CATV_MOD>({
    {1, 1024, 4096}, //
});

// DC output per satellite and polarisation.
constexpr Records<VX63_SET_FILE_DC_OUT> kDcOut = records<VX63_SET_FILE_DC_OUT>({
    {0, 2, 1, 4, 3, 2, 1, 2, 1, 0}, //
    {1, 2, 2, 2, 2, 2, 2, 2, 2, 2}, //
    {2, 0, 0, 0, 0, 0, 0, 0, 0, 0}, //
});

// Optical measurement wavelengths, in nm.
constexpr Records<VX63_SET_FILE_OPT_MEAS> kOptMeas = records<VX63_SET_FILE_OPT_MEAS>({
    {1300, 1310, 1490}, //
});

// Constellation point counts.
constexpr Records<VX63_SET_FILE_CONSTA_NUM> kConstaNum = records<VX63_SET_FILE_CONSTA_NUM>({
    {1000, 2000, 4000, 2000}, //
});

// Pilot channels, in kHz.
constexpr Records<VX63_SET_FILE_PILOT> kPilot = records<VX63_SET_FILE_PILOT>({
    {"PL 1", 70000},   //
    {"PL 2", 73000},   //
    {"PL 3", 75500},   //
    {"PL 4", 91250},   //
    {"PL 5", 109250},  //
    {"PL 6", 148000},  //
    {"PL 7", 246000},  //
    {"PL 8", 288000},  //
    {"PL 9", 298000},  //
    {"PL 10", 300000}, //
    {"PL 11", 301250}, //
    {"PL 12", 349250}, //
    {"PL 13", 450000}, //
    {"PL 14", 451250}, //
    {"PL 15", 495250}, //
    {"PL 16", 747250}, //
    {"PL 17", 750000}, //
    {"PL 18", 753250}, //
    {"PL 19", 765250}, //
    {"PL 20", 771250}, //
});

// LTE channels, in kHz.
constexpr Records<VX63_SET_FILE_LTE> kLte = records<VX63_SET_FILE_LTE>({
    {"UL-L", 723000, 10000}, //
    {"UL-M", 733000, 10000}, //
    {"UL-H", 743000, 10000}, //
    {"DL-L", 778000, 10000}, //
    {"DL-M", 788000, 10000}, //
    {"DL-H", 798000, 10000}, //
});

// Broadcast-system conversion.
constexpr Records<VX63_SET_FILE_BDSYS_CONV> kBdsysConv = records<VX63_SET_FILE_BDSYS_CONV>({
    {1, 0, 0},    //
    {2, 1, 1},    //
    {2, 2, 17},   //
    {3, 1, 1},    //
    {3, 2, 17},   //
    {4, 4, 4},    //
    {4, 5, 5},    //
    {5, 4, 4},    //
    {5, 5, 5},    //
    {6, 4, 4},    //
    {6, 5, 5},    //
    {7, 4, 4},    //
    {7, 5, 5},    //
    {8, 0, 35},   //
    {8, 3, 35},   //
    {8, 9, 35},   //
    {9, 0, 35},   //
    {9, 3, 35},   //
    {9, 9, 35},   //
    {10, 0, 35},  //
    {10, 3, 35},  //
    {10, 9, 35},  //
    {11, 10, 37}, //
    {12, 0, 0},   //
    {12, 6, 40},  //
    {13, 10, 38}, //
    {14, 10, 36}, //
    {15, 10, 37}, //
});

// CATV broadcast-system conversion.
constexpr Records<VX63_SET_FILE_CATV_BDSYS_CONV> kCatvBdsysConv = records<VX63_SET_FILE_CATV_BDSYS_CONV>({
    {0, 1, 0},     //
    {3, 1024, 12}, //
    {3, 4096, 13}, //
    {9, 1024, 10}, //
    {9, 4096, 11}, //
});

// FM preset channels, in kHz; 0 is empty.
constexpr Records<VX63_SET_FILE_FM_DEF> kFmDef = records<VX63_SET_FILE_FM_DEF>({
    {"FM 1", 76500}, //
    {"FM 2", 78100}, //
    {"FM 3", 80200}, //
    {"FM 4", 85100}, //
    {"FM 5", 88100}, //
    {"FM 6", 90900}, //
    {"FM 7", 91900}, //
    {"FM 8", 93300}, //
    {"FM 9", 0},     //
    {"FM 10", 0},    //
    {"FM 11", 0},    //
    {"FM 12", 0},    //
});

// Up-stream preset channels, in kHz; 0 is empty.
constexpr Records<VX63_SET_FILE_CATV_UP_STREAM_DEF> kUpStreamDef = records<VX63_SET_FILE_CATV_UP_STREAM_DEF>({
    {"UL 1", 10000}, //
    {"UL 2", 15000}, //
    {"UL 3", 20000}, //
    {"UL 4", 30000}, //
    {"UL 5", 50000}, //
    {"UL 6", 55000}, //
    {"UL 7", 60000}, //
    {"UL 8", 0},     //
    {"UL 9", 0},     //
    {"UL 10", 0},    //
    {"UL 11", 0},    //
    {"UL 12", 0},    //
});

// Measurement management, the columns of kPmeasMngGiven, record by record.
constexpr Records<VX63_SET_FILE_PMEAS_MNG> kPmeasMng = pmeasMng({
    {1, 7, 0, 0, 0, 0, 0, 0, 0, 0},                // 0
    {1, 1, 0, 0, 0, 0, 0, 0, 0, 0},                // 1
    {1, 1, 0, 0, 0, 0, 0, 0, 0, 0},                // 2
    {1, 39, 0, 0, 0, 0, 0, 0, 0, 0},               // 3
    {1, 39, 0, 0, 0, 0, 0, 0, 0, 0},               // 4
    {1, 39, 0, 0, 0, 0, 0, 0, 0, 0},               // 5
    {1, 15, 0, 0, 0, 0, 0, 0, 0, 0},               // 6
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 7
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 8
    {1, 47, 0, 0, 0, 0, 0, 0, 0, 0},               // 9
    {1, 47, 0, 0, 0, 0, 0, 0, 0, 0},               // 10
    {1, 47, 0, 0, 0, 0, 0, 0, 0, 0},               // 11
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 12
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 13
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 14
    {1, 39, 0, 0, 0, 0, 0, 0, 0, 0},               // 15
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 16
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 17
    {2, 0, 2000, 2000, 1, 2, 7, 2000, 2000, 3},    // 18
    {3, 0, 1500, 0, 1, 3, 1, 1500, 0, 1},          // 19
    {3, 0, 2000, 0, 1, 3, 1, 2000, 0, 1},          // 20
    {2, 0, 2000, 2000, 1, 2, 39, 2000, 2000, 3},   // 21
    {2, 0, 2000, 2000, 1, 2, 39, 2000, 2000, 3},   // 22
    {2, 0, 2500, 2500, 1, 2, 39, 2500, 2500, 3},   // 23
    {2, 0, 4000, 4000, 7, 2, 7, 4000, 4000, 7},    // 24
    {3, 0, 0, 0, 0, 3, 1, 4000, 0, 1},             // 25
    {3, 0, 0, 0, 0, 3, 1, 4000, 0, 1},             // 26
    {2, 0, 4000, 4000, 39, 2, 39, 4000, 4000, 39}, // 27
    {2, 0, 4000, 4000, 39, 2, 39, 4000, 4000, 39}, // 28
    {2, 0, 4000, 4000, 39, 2, 39, 4000, 4000, 39}, // 29
    {2, 0, 4000, 4000, 7, 2, 7, 4000, 4000, 7},    // 30
    {3, 0, 4000, 0, 0, 3, 1, 3000, 0, 1},          // 31
    {3, 0, 4000, 0, 0, 3, 1, 3000, 0, 1},          // 32
    {2, 0, 4000, 4000, 39, 2, 39, 3000, 3000, 39}, // 33
    {2, 0, 4000, 4000, 39, 2, 39, 4000, 4000, 39}, // 34
    {2, 0, 4000, 4000, 39, 2, 39, 4000, 4000, 39}, // 35
    {0, 0, 0, 0, 0, 1, 7, 5000, 5000, 7},          // 36
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 37
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 38
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 39
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 40
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // 41
    {0, 0, 0, 0, 0, 1, 7, 2000, 2000, 2},          // 42
    {0, 0, 0, 0, 0, 1, 1, 2000, 0, 0},             // 43
    {0, 0, 0, 0, 0, 1, 1, 2000, 0, 0},             // 44
    {0, 0, 0, 0, 0, 1, 39, 2000, 2000, 34},        // 45
    {0, 0, 0, 0, 0, 1, 39, 2000, 2000, 34},        // 46
    {0, 0, 0, 0, 0, 1, 39, 2000, 2000, 34},        // 47
});

} // namespace vx63

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
