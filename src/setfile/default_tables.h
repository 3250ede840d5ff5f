// The factory contents of the settings files, as records.
#pragma once

#include "setfile/factory.h"

namespace vx63 {

// Short tables: default_tables.cpp. (That of the manual broadcast systems is exported: libvx63.h.)
extern const Records<VX63_SET_FILE_POWOFF> kPowOff;
extern const Records<VX63_SET_FILE_VOLUME> kVolume;
extern const Records<VX63_SET_FILE_BRIGHTNESS> kBrightness;
extern const Records<VX63_SET_FILE_LOCAL_FREQ> kLocalFreq;
extern const Records<VX63_SET_FILE_THRD> kThrd;
extern const Records<VX63_SET_FILE_CNRMER> kCnrMer;
extern const Records<VX63_SET_FILE_CATV_FREQ> kCatvFreq;
extern const Records<VX63_SET_FILE_CABLE_LOSS> kCableLoss;
extern const Records<VX63_SET_FILE_CABLE_LOSS_ENB> kCableLossEnb;
extern const Records<VX63_SET_FILE_INPUT> kInput;
extern const Records<VX63_SET_FILE_CATV_MOD> kCatvMod;
extern const Records<VX63_SET_FILE_DC_OUT> kDcOut;
extern const Records<VX63_SET_FILE_OPT_MEAS> kOptMeas;
extern const Records<VX63_SET_FILE_CONSTA_NUM> kConstaNum;
extern const Records<VX63_SET_FILE_PILOT> kPilot;
extern const Records<VX63_SET_FILE_LTE> kLte;
extern const Records<VX63_SET_FILE_BDSYS_CONV> kBdsysConv;
extern const Records<VX63_SET_FILE_CATV_BDSYS_CONV> kCatvBdsysConv;
extern const Records<VX63_SET_FILE_PMEAS_MNG> kPmeasMng;
extern const Records<VX63_SET_FILE_FM_DEF> kFmDef;
extern const Records<VX63_SET_FILE_CATV_UP_STREAM_DEF> kUpStreamDef;
// Channel plans: channel_plans.cpp.
extern const Records<VX63_SET_FILE_UHF> kUhf;
extern const Records<VX63_SET_FILE_BS> kBs;
extern const Records<VX63_SET_FILE_CS> kCs;
extern const Records<VX63_SET_FILE_SCCB> kSccb;
extern const Records<VX63_SET_FILE_SCCC> kSccc;
extern const Records<VX63_SET_FILE_JSAT3A> kJsat3a;
extern const Records<VX63_SET_FILE_JSAT4B> kJsat4b;
extern const Records<VX63_SET_FILE_CATV_ALL> kCatvAll;
extern const Records<VX63_SET_FILE_CATV_90_470MHZ> kCatvLow;
extern const Records<VX63_SET_FILE_CATV_470_1002MHZ> kCatvHigh;
extern const Records<VX63_SET_FILE_SKYP> kSkyp;
extern const Records<VX63_SET_FILE_FM> kFm;
extern const Records<VX63_SET_FILE_CATV_UP_STREAM> kUpStream;
extern const Records<VX63_SET_FILE_JSAT3A_ANTENNA> kJsat3aAnt;
extern const Records<VX63_SET_FILE_JSAT4B_ANTENNA> kJsat4bAnt;
extern const Records<VX63_SET_FILE_BS_CS> kBsCs;

} // namespace vx63
