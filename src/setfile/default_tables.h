// The factory contents of the settings files, as records.
#pragma once

#include "setfile/factory.h"

namespace vx63 {

// Short tables: default_tables.cpp. (That of the manual broadcast systems is exported: libvx63.h.)
extern const Records<1, 7> kPowOff;
extern const Records<1, 5> kVolume;
extern const Records<1, 4> kBrightness;
extern const Records<12, 28> kLocalFreq;
extern const Records<24, 88> kThrd;
extern const Records<15, 3> kCnrMer;
extern const Records<4, 28> kCatvFreq;
extern const Records<4, 8> kCableLoss;
extern const Records<1, 1> kCableLossEnb;
extern const Records<1, 3> kInput;
extern const Records<1, 12> kCatvMod;
extern const Records<3, 10> kDcOut;
extern const Records<1, 12> kOptMeas;
extern const Records<1, 16> kConstaNum;
extern const Records<20, 12> kPilot;
extern const Records<6, 16> kLte;
extern const Records<28, 6> kBdsysConv;
extern const Records<5, 8> kCatvBdsysConv;
extern const Records<48, 68> kPmeasMng;
extern const Records<12, 12> kFmDef;
extern const Records<12, 12> kUpStreamDef;
// Channel plans: channel_plans.cpp.
extern const Records<40, 12> kUhf;
extern const Records<24, 16> kBs;
extern const Records<26, 16> kCs;
extern const Records<23, 16> kSccb;
extern const Records<24, 16> kSccc;
extern const Records<28, 16> kJsat3a;
extern const Records<32, 16> kJsat4b;
extern const Records<150, 16> kCatvAll;
extern const Records<62, 16> kCatvLow;
extern const Records<88, 16> kCatvHigh;
extern const Records<113, 12> kSkyp;
extern const Records<251, 12> kFm;
extern const Records<1001, 12> kUpStream;
extern const Records<16, 16> kJsat3aAnt;
extern const Records<16, 16> kJsat4bAnt;
extern const Records<50, 16> kBsCs;

} // namespace vx63
