/*
 * libvx63.h: the client library of the meter.
 *
 * An application talks to the meter's five service processes, and reads and writes its settings, by
 * calling the functions below. This header is valid C99 and C++17.
 *
 * CONVENTIONS
 *
 * Calls. Every function is one synchronous call on the caller's thread: check the arguments, send one
 * request to one service, wait for its response, return a result code. The library starts no threads,
 * allocates no memory and prints nothing; it takes no lock but that of a full log. It never throws.
 *
 * Results. Every function returns one of the VX63_* result codes: 0 for success, negative for failure.
 * VX63_ERR_ARG is found before anything is sent, unless the service itself refuses a parameter. The
 * functions that read, write and delete settings files differ: see there.
 *
 * Records. The caller owns every record and every pointer; the library keeps none after the call. An
 * output record is written on success only: after a failure it is as it was, unless the function says
 * otherwise. A null pointer is refused with VX63_ERR_ARG unless the function says that it is not tested.
 *
 * Threads. Each thread that talks to a service first calls vx63_init() with a process id of its own; it
 * names the queue on which that thread's responses arrive. Threads with different ids may call any
 * function at the same time. Two threads (or processes) that share an id take each other's responses. A
 * thread needs a stack of PTHREAD_STACK_MIN and 144 KiB for any of them, and what the application itself
 * takes. A thread may end at any time but in the middle of a call: pthread_cancel() there leaves descriptors
 * and temporary files behind, and an answer that nobody takes (pthread_setcancelstate() forbids it for so
 * long). A signal handler may call vx63_isFileId...() and nothing else. A child after fork() has the
 * process id of the thread that forked: before its first call it calls vx63_init() with another one.
 *
 * Time-outs. A function that says "10 s" waits up to 10 s to hand over its request and again up to 10 s
 * for the response.
 *
 * In step. Nothing ties a response to its request but the command. One that comes too late, or twice,
 * stays in the thread's queue, where the next call meets it: that call fails with VX63_ERR_COMM - or, if
 * it asks the same command, takes the old response for its own and returns VX63_OK - and its own response
 * is left for the call after it. So it goes on, a response behind, until the thread is brought back in
 * step. To notice it: let another operation of the same service follow a reading - after one of the
 * measurement service vx63_getMeasStatus() - and use the reading only if that one succeeds too. (Another
 * service may answer sooner than the old response comes.) To get in step, after any VX63_ERR_COMM: call
 * vx63_init() with another free process id, whose queue is empty; the platform's lmsg_trcvMq() empties
 * that of an id that was in use before. The example in_step.c does both.
 *
 * Log. Every call writes lines to /var/log/libvx63.cpp.txt: its start, its errors and its end (a function
 * that leaves some of them out says so). A log that cannot be written never changes a result. The file is
 * started anew once it exceeds 2 MiB, under a file lock that is waited for for 0.1 s at most.
 *
 * Units and codes. The library passes frequencies, levels and codes through as they are: what they mean is
 * decided by the service that answers. Records tell units and ranges where they are known; VX63_BDSYS_*,
 * VX63_MOD_* and the like name the codes. A code without a name here is not an error.
 */
#ifndef LIBVX63_H
#define LIBVX63_H

#include <stdint.h>

#if defined(__GNUC__)
#define VX63_API __attribute__((visibility("default")))
#else
#define VX63_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Result codes ---------------------------------------------------------------------------------- */

enum {
    VX63_OK = 0,           /* success */
    VX63_ERR_COMM = -1,    /* the exchange failed, or the service answered with an unknown result */
    VX63_ERR_ARG = -2,     /* an argument is out of range or null, or the service refused a parameter */
    VX63_ERR_REPEAT = -6,  /* the buzzer is sounding a repeating pattern */
    VX63_ERR_POWER = -7,   /* the measurement service reports a fault of the antenna power supply */
    VX63_ERR_PRIORITY = -8 /* the buzzer is busy with a sound of higher priority */
};

/* ---- Process ids ----------------------------------------------------------------------------------- */

/* The service processes. A client's own id is 0 to 17, as the firmware's process table gives it. */
enum {
    PROC_ID_PSYS = 0,  /* system service: product data, failures, power, update, settings notices */
    PROC_ID_PDEV = 6,  /* device service: device status, angle sensor, power-supply information */
    PROC_ID_PKEY = 8,  /* key service: key states */
    PROC_ID_PBUZ = 10, /* buzzer service */
    PROC_ID_PMEAS = 12 /* measurement service: all measurements, standby, calibration, battery notices */
};

/* ---- Codes ----------------------------------------------------------------------------------------- */

/* RF inputs. */
enum { VX63_INPUT_0 = 0, VX63_INPUT_1 = 1 };

/* Antenna power supplies: the voltage selects the polarisation of an LNB, the 22 kHz tone its band. */
enum {
    VX63_POWER_SUPPLY_OFF = 0,
    VX63_POWER_SUPPLY_11V = 1,
    VX63_POWER_SUPPLY_15V = 2,
    VX63_POWER_SUPPLY_11V_TONE = 3,
    VX63_POWER_SUPPLY_15V_TONE = 4
};

/* Broadcast systems: usBdSys, bdSys, BDSYS, SPEC. */
enum {
    VX63_BDSYS_TERRESTRIAL = 0, /* OFDM in 6 MHz, on cable too */
    VX63_BDSYS_SATELLITE = 1,   /* BS and CS, first generation */
    VX63_BDSYS_SATELLITE_2 = 2, /* BS and CS, second generation */
    VX63_BDSYS_CATV = 3,        /* cable: QAM in 6 MHz */
    VX63_BDSYS_JSAT = 4,        /* QPSK */
    VX63_BDSYS_JSAT_2 = 5,      /* QPSK to 32APSK */
    VX63_BDSYS_SKYP = 6,        /* cable: 256QAM */
    VX63_BDSYS_CATV_2 = 9,      /* cable: a variant of VX63_BDSYS_CATV */
    VX63_BDSYS_LEVEL = 10       /* any carrier: its level alone, without lock */
};

/* Modulations, a bit each: usMod takes one or several, or VX63_MOD_ANY; MOD gives one. */
enum {
    VX63_MOD_ANY = 0,
    VX63_MOD_OFDM = 0x0001,
    VX63_MOD_BPSK = 0x0002,
    VX63_MOD_QPSK = 0x0008,
    VX63_MOD_8PSK_SATELLITE = 0x0010, /* of VX63_BDSYS_SATELLITE */
    VX63_MOD_8PSK = 0x0020,           /* of all others */
    VX63_MOD_16APSK = 0x0040,
    VX63_MOD_32APSK = 0x0080,
    VX63_MOD_64QAM = 0x0400,
    VX63_MOD_256QAM = 0x1000,
    VX63_MOD_NONE = 0x2000 /* a carrier without modulation */
};

/* Guard intervals of an OFDM signal, as a part of its useful symbol: GI. */
enum { VX63_GI_1_32 = 0, VX63_GI_1_16 = 1, VX63_GI_1_8 = 2, VX63_GI_1_4 = 3 };

/* Bits of the stat of a measurement result. */
enum {
    VX63_STAT_SIGNAL = 0x0001,       /* the carrier-to-noise ratio is 0 dB or more */
    VX63_STAT_LOCKED = 0x0002,       /* as lock says */
    VX63_STAT_BITS = 0x0004,         /* bits were counted: BER_TOTAL is not 0 */
    VX63_STAT_POWER_SUPPLY = 0x0008, /* the antenna power supply is on */
    VX63_STAT_MEASURED = 0x0010      /* of a list of channels: this one has been measured */
};

/* Bits of the measurement service's ulMeasStat: what it is at. */
enum {
    VX63_MEAS_SINGLE = 0x01, /* a single measurement runs */
    VX63_MEAS_LOCKED = 0x02, /* it, or the delay profile, has locked */
    VX63_MEAS_MULTI = 0x04,  /* a multi-channel measurement runs */
    VX63_MEAS_SCAN = 0x08,   /* a scan runs and is not over */
    VX63_MEAS_DLYPRF = 0x10, /* a delay profile is measured */
    VX63_MEAS_CONSTA = 0x20, /* constellation points are collected */
    VX63_MEAS_OPT = 0x40,    /* the optical power is measured */
    VX63_MEAS_DC = 0x80      /* the DC voltage is measured */
};

/* Bits of the measurement service's usInputStat. */
enum {
    VX63_INPUT_STAT_1 = 0x01,            /* VX63_INPUT_1 is selected */
    VX63_INPUT_STAT_SUPPLY = 0x02,       /* the antenna power supply is on, */
    VX63_INPUT_STAT_15V = 0x04,          /* at 15 V, */
    VX63_INPUT_STAT_TONE = 0x08,         /* with the tone, */
    VX63_INPUT_STAT_SUPPLY_FAULT = 0x10, /* reports a fault */
    VX63_INPUT_STAT_MIXED_BANDS = 0x20   /* feeds lists of mixed bands */
};

/* State of a delay profile: its stat. */
enum {
    VX63_DLYPRF_NONE = 0,      /* there is nothing to lock to */
    VX63_DLYPRF_MEASURING = 1, /* read again later */
    VX63_DLYPRF_COMPLETE = 2
};

/*
 * The settings files, all under /usr/local/bin/: records x bytes of a record, then the file. The %s of a
 * setting set stands for the set's name. For sets and lists the records are the most that they hold.
 */
enum {
    VX63_SET_FILE_POWOFF = 0,            /* 1 x 7: sys_set/system_setting_file_powoff.csv */
    VX63_SET_FILE_VOLUME = 1,            /* 1 x 5: sys_set/system_setting_file_volume.csv */
    VX63_SET_FILE_BRIGHTNESS = 2,        /* 1 x 4: sys_set/system_setting_file_brightness.csv */
    VX63_SET_FILE_LOCAL_FREQ = 3,        /* 12 x 28: meas_set/measrement_setting_file_local_freq.csv */
    VX63_SET_FILE_THRD = 4,              /* 24 x 88: meas_set/measrement_setting_file_thrd.csv */
    VX63_SET_FILE_CNRMER = 5,            /* 15 x 3: meas_set/measrement_setting_file_cnrmer.csv */
    VX63_SET_FILE_CATV_FREQ = 6,         /* 4 x 28: meas_set/measrement_setting_file_catv_freq.csv */
    VX63_SET_FILE_CABLE_LOSS = 7,        /* 4 x 8: meas_set/measrement_setting_file_cable_loss.csv */
    VX63_SET_FILE_CABLE_LOSS_ENB = 8,    /* 1 x 1: meas_set/measrement_setting_file_cable_loss_enb.csv */
    VX63_SET_FILE_INPUT = 9,             /* 1 x 3: meas_set/measrement_setting_file_input.csv */
    VX63_SET_FILE_CATV_MOD = 10,         /* 1 x 12: meas_set/measrement_setting_file_catv_mod.csv */
    VX63_SET_FILE_DC_OUT = 11,           /* 3 x 10: meas_set/measrement_setting_file_dc_out.csv */
    VX63_SET_FILE_OPT_MEAS = 12,         /* 1 x 12: meas_set/measrement_setting_file_opt_meas.csv */
    VX63_SET_FILE_CONSTA_NUM = 13,       /* 1 x 16: meas_set/measrement_setting_file_consta_num.csv */
    VX63_SET_FILE_USER_SET = 14,         /* 324 x 28: user_set/%s.csv */
    VX63_SET_FILE_USER_LIST = 15,        /* 140 x 15: user_set/user_setting_file_list.csv */
    VX63_SET_FILE_UHF = 16,              /* 40 x 12: ch_set/channel_setting_file_uhf_6mhz.csv */
    VX63_SET_FILE_BS = 17,               /* 24 x 16: ch_set/channel_setting_file_bs_34.5mhz.csv */
    VX63_SET_FILE_CS = 18,               /* 26 x 16: ch_set/channel_setting_file_cs_34.5mhz.csv */
    VX63_SET_FILE_SCCB = 19,             /* 23 x 16: ch_set/channel_setting_file_sccb_27mhz.csv */
    VX63_SET_FILE_SCCC = 20,             /* 24 x 16: ch_set/channel_setting_file_sccc_27mhz.csv */
    VX63_SET_FILE_JSAT3A = 21,           /* 28 x 16: ch_set/channel_setting_file_jsat3a_27mhz.csv */
    VX63_SET_FILE_JSAT4B = 22,           /* 32 x 16: ch_set/channel_setting_file_jsat4b_27mhz.csv */
    VX63_SET_FILE_CATV_ALL = 23,         /* 150 x 16: ch_set/channel_setting_file_catv_all_6mhz.csv */
    VX63_SET_FILE_CATV_90_470MHZ = 24,   /* 62 x 16: ch_set/channel_setting_file_catv_90_470mhz_6mhz.csv */
    VX63_SET_FILE_CATV_470_1002MHZ = 25, /* 88 x 16: ch_set/channel_setting_file_catv_470_1002mhz_6mhz.csv */
    VX63_SET_FILE_SKYP = 26,             /* 113 x 12: ch_set/channel_setting_file_skyp_6mhz.csv */
    VX63_SET_FILE_PILOT = 27,            /* 20 x 12: ch_set/channel_setting_file_pilot.csv */
    VX63_SET_FILE_LTE = 28,              /* 6 x 16: ch_set/channel_setting_file_lte.csv */
    VX63_SET_FILE_FM = 29,               /* 251 x 12: ch_set/channel_setting_file_fm.csv */
    VX63_SET_FILE_MANU_BDSYS_MOD = 30,   /* 23 x 8: meas_set/measrement_setting_file_manu_bdsys_mod.csv */
    VX63_SET_FILE_BDSYS_CONV = 31,       /* 28 x 6: meas_set/measrement_setting_file_bdsys_conv.csv */
    VX63_SET_FILE_CATV_BDSYS_CONV = 32,  /* 5 x 8: meas_set/measrement_setting_file_catv_bdsys_conv.csv */
    VX63_SET_FILE_CATV_UP_STREAM = 33,   /* 1001 x 12: ch_set/channel_setting_file_catv_up_stream.csv */
    VX63_SET_FILE_PMEAS_MNG = 34,        /* 48 x 68: pmeas_set/pmeas_setting_file_pmeas_mng.csv */
    VX63_SET_FILE_LOGGER_SET = 35,       /* 324 x 28: logger_set/%s.csv */
    VX63_SET_FILE_LOGGER_LIST = 36,      /* 140 x 15: logger_set/logger_setting_file_list.csv */
    VX63_SET_FILE_JSAT3A_ANTENNA = 37,   /* 16 x 16: ch_set/channel_setting_file_jsat3a_antenna_27mhz.csv */
    VX63_SET_FILE_JSAT4B_ANTENNA = 38,   /* 16 x 16: ch_set/channel_setting_file_jsat4b_antenna_27mhz.csv */
    VX63_SET_FILE_FM_DEF = 39,           /* 12 x 12: ch_set/channel_setting_file_fm_def.csv */
    VX63_SET_FILE_CATV_UP_STREAM_DEF = 40, /* 12 x 12: ch_set/channel_setting_file_catv_up_stream_def.csv */
    VX63_SET_FILE_BS_CS = 41,              /* 50 x 16: ch_set/channel_setting_file_bs_cs_34.5mhz.csv */
    VX63_SET_FILE_USER_SET_USB1 = 42,      /* 324 x 28: user_set_usb1/%s.csv */
    VX63_SET_FILE_USER_LIST_USB1 = 43,     /* 140 x 15: user_set_usb1/user_setting_file_list.csv */
    VX63_SET_FILE_USER_SET_USB2 = 44,      /* 324 x 28: user_set_usb2/%s.csv */
    VX63_SET_FILE_USER_LIST_USB2 = 45,     /* 140 x 15: user_set_usb2/user_setting_file_list.csv */
    VX63_SET_FILE_LOGGER_SET_USB1 = 46,    /* 324 x 28: logger_set_usb1/%s.csv */
    VX63_SET_FILE_LOGGER_LIST_USB1 = 47,   /* 140 x 15: logger_set_usb1/logger_setting_file_list.csv */
    VX63_SET_FILE_LOGGER_SET_USB2 = 48,    /* 324 x 28: logger_set_usb2/%s.csv */
    VX63_SET_FILE_LOGGER_LIST_USB2 = 49,   /* 140 x 15: logger_set_usb2/logger_setting_file_list.csv */
    VX63_SET_FILE_COUNT = 50
};

/* ---- Records --------------------------------------------------------------------------------------- */

/* What to measure: passed to every measurement start. Only powerSupply is interpreted by the library. */
typedef struct MeasCondition {
    uint32_t ulFreq;   /* kHz: centre frequency of the channel, before a converter */
    uint32_t ulLoFreq; /* kHz: local-oscillator frequency of the converter; 0 or 4294967295: none. The tuner
                          receives ulFreq - ulLoFreq, 10000 to 3224000 kHz */
    uint16_t usBdSys;  /* VX63_BDSYS_*: broadcast system */
    uint16_t usBand;   /* band: 0 none, 1 UHF, 2 BS, 3 CS, 4 JSAT 3A, 5 JSAT 4B, 6 SCC-B, 7 SCC-C, 8 to 10
                          cable, 11 pilot, 12 skyp, 13 LTE, 14 FM, 15 up-stream. A list with more than
                          one feeds no LNB unless vx63_setPowerSupplyMultiMeasMixBand() was asked to */
    uint16_t usMod;    /* VX63_MOD_*, one or several: modulations to lock to */
    uint16_t usCondition; /* condition bits: come back as mesCond */
    char ucStrChan[8];    /* channel name: exactly 8 bytes, not necessarily NUL-terminated */
    uint8_t ucOutputEnb;  /* output enable */
    int32_t powerSupply;  /* VX63_POWER_SUPPLY_*; any other value is taken as VX63_POWER_SUPPLY_OFF */
} MeasCondition;

/* State of the measurement service. */
typedef struct MeasStatus {
    uint32_t ulMeasStat;  /* VX63_MEAS_*, bits */
    uint16_t usInputStat; /* VX63_INPUT_STAT_*, bits */
} MeasStatus;

/* Readings of the antenna power supply. */
typedef struct PowerSupplyInfo {
    uint8_t ucPowerSupply; /* VX63_POWER_SUPPLY_*: the one asked for */
    uint8_t ucVolt;        /* V at the connector: 0, 11 or 15; 0 in a fault as well */
    uint16_t usAdVal;      /* reading of the A/D converter, 0 to 1023: 20 V at full scale */
    uint32_t ulCurrentM;   /* mA */
    uint32_t ulElecPowerM; /* mW: ucVolt times ulCurrentM */
} PowerSupplyInfo;

/* One constellation point; the ideal points have a root mean square amplitude of 64. (A C program that also
 * includes <complex.h> must undefine its macro I.) */
struct ConstaPoint {
    int8_t I; /* in phase */
    int8_t Q; /* in quadrature */
};

enum {
    VX63_CONSTA_POINTS_MAX = 4000 /* constellation points that a result record holds */
};

/* Result of a single measurement. */
typedef struct SingleMeasResult {
    uint8_t lock;       /* 1: locked. Without lock the fields from BER_TOTAL to MOD are 0 */
    uint16_t stat;      /* VX63_STAT_*, bits */
    uint16_t mesCond;   /* usCondition of the start */
    uint16_t reserved;  /* never written by the library */
    uint16_t bdSys;     /* VX63_BDSYS_*: of the signal when locked, else the one asked for */
    uint32_t LEVEL;     /* 0.1 dBuV: level; 0 for 0 dBuV and less */
    uint32_t CNR;       /* 0.1 dB: carrier-to-noise ratio; 0 for 0 dB and less */
    uint32_t BER_TOTAL; /* bits counted since the last result, or since the lock */
    uint32_t BER_ERR;   /* erroneous bits among them, before error correction */
    uint16_t TSID;      /* transport-stream id */
    uint8_t GI;         /* VX63_GI_*: guard interval */
    uint8_t LAYER;      /* hierarchical layers, bits: 1 A, 2 B, 4 C */
    uint32_t MOD;       /* VX63_MOD_*: modulation */
    uint16_t CONS_NUM;  /* constellation points; left as it is by a plain result read */
    struct ConstaPoint points[VX63_CONSTA_POINTS_MAX]; /* left as they are by a plain result read */
} SingleMeasResult;

/* One channel of a setting set: a record of the files VX63_SET_FILE_USER_SET*, VX63_SET_FILE_LOGGER_SET*. */
typedef struct SetChannel {
    uint8_t NO;           /* number of the record */
    uint8_t ENBFLG;       /* 1: enabled, 0: not */
    uint8_t BAND;         /* band: as usBand of MeasCondition */
    uint8_t SPEC;         /* VX63_BDSYS_*: broadcast system */
    char CH[8];           /* channel name, NUL-terminated: at most 7 characters */
    uint32_t CENTER_FREQ; /* kHz: centre frequency as broadcast, 10000 to 22000000; 0: empty place */
    uint32_t MOD;         /* VX63_MOD_*, one or several */
    uint32_t LOCAL_FREQ;  /* kHz: local-oscillator frequency, 1 to 22000000; 0 or 4294967295: none */
    uint8_t GETDATA_FLG;  /* flag: get data */
    uint8_t DC_OUT;       /* DC output */
} SetChannel;

/* One entry of a list of setting sets: a record of the files VX63_SET_FILE_USER_LIST*, _LOGGER_LIST*. */
typedef struct SetListEntry {
    uint8_t NO;         /* number of the record, 1 to 140 */
    uint8_t ENBFLG;     /* 1: names an existing set, 0: free */
    char FILE_NAME[13]; /* the set's name, without folder and ".csv", NUL-terminated: at most 12 characters */
} SetListEntry;

enum {
    VX63_DLYPRF_SAMPLES = 2048 /* samples of a delay profile */
};

/* A delay profile. */
typedef struct DlyPrfResult {
    uint16_t stat;                            /* VX63_DLYPRF_COMPLETE, _MEASURING; any other: no data */
    int8_t ucDlyPrfData[VX63_DLYPRF_SAMPLES]; /* 0.5 dB against the main path, -128 for -64 dB and less;
                                                 sample n has a delay of (n - 512) * 0.1640625 us */
} DlyPrfResult;

/*
 * Channels to measure or to scan: one block of sizeof(MultiMeasReg) + sRegNum * sizeof(MeasCondition) bytes.
 * The array is C99's flexible one, which C++ compilers know as well.
 */
__extension__ typedef struct MultiMeasReg {
    int16_t sRegNum; /* number of channels that follow, 1 to 256; 0 is sent, and the service refuses it */
    MeasCondition single[]; /* the channels; the index of a channel here is its index in a result read */
} MultiMeasReg;

/* Result of one channel of a multi-channel measurement or a scan. */
typedef struct MultiMeasResult {
    uint8_t lock;       /* 1: locked. Without lock the fields from BER_TOTAL to MOD are 0 */
    uint16_t stat;      /* VX63_STAT_*, bits; 0 until the channel has been measured */
    uint16_t mesCond;   /* usCondition of the start */
    uint8_t readIdx;    /* index of the channel whose result this is */
    uint8_t currIdx;    /* index of the channel that is being measured now */
    uint16_t bdSys;     /* VX63_BDSYS_*: of the signal when locked, else the one asked for */
    uint32_t LEVEL;     /* 0.1 dBuV: level; 0 for 0 dBuV and less */
    uint32_t CNR;       /* 0.1 dB: carrier-to-noise ratio; 0 for 0 dB and less */
    uint32_t BER_TOTAL; /* bits counted since the last result, or since the lock */
    uint32_t BER_ERR;   /* erroneous bits among them, before error correction */
    uint16_t TSID;      /* transport-stream id */
    uint8_t GI;         /* VX63_GI_*: guard interval */
    uint8_t LAYER;      /* hierarchical layers, bits: 1 A, 2 B, 4 C */
    uint32_t MOD;       /* VX63_MOD_*: modulation */
} MultiMeasResult;

/* A point of the angle sensor's calibration: microtesla. */
typedef struct AnglePoint {
    float x; /* microtesla */
    float y;
    float z;
} AnglePoint;

/* Progress of the angle sensor's calibration. */
typedef struct AngleCalStat {
    int32_t lStatus;         /* 0 never calibrated; 1, 2, 3 in that turn; 4 finished */
    AnglePoint centerPoint1; /* of the first, the second and the third turn; 0 until that turn is over */
    AnglePoint centerPoint2;
    AnglePoint centerPoint3;
} AngleCalStat;

/* Live values of the angle sensor. Axes as in aeronautics: x forward, y to the right, z down. */
typedef struct AngleCalInfoDetail {
    float flRoll;  /* degrees, about x: -180 to 180, positive with the right side down */
    float flPitch; /* degrees, about y: -90 to 90, positive with the front up */
    float flAx;    /* g: acceleration, raw */
    float flAy;
    float flAz;
    float flMx; /* microtesla: magnetic field, raw */
    float flMy;
    float flMz;
    float flAxRot; /* g: acceleration, seen from level axes */
    float flAyRot;
    float flAzRot;
    float flMxRot; /* microtesla: magnetic field, seen from level axes; after a calibration less the mean of
                      its centre points: then atan2(-flMyRot, flMxRot) is the heading */
    float flMyRot;
    float flMzRot;
} AngleCalInfoDetail;

/* One row of the factory table of manual broadcast systems and modulations. */
typedef struct MeasSetManuBdsysMod {
    uint16_t BDSYS; /* VX63_BDSYS_* */
    uint32_t MOD;   /* VX63_MOD_*, one or several */
} MeasSetManuBdsysMod;

/* Product data. Texts are NUL-padded; one that fills its field has NO terminator. */
typedef struct ProductInfo {
    char cModelCode[8];   /* model code */
    char cOptInfo[5];     /* option information */
    char cSerialNo[12];   /* serial number */
    char cBootPrgVer[16]; /* boot program version */
    char cMainPrgVer[16]; /* main program version */
    char cSubPrgVer[16];  /* sub program version */
    char cQtVer[16];      /* Qt version */
    char cProductVer[16]; /* product version */
} ProductInfo;

/* The current failure. What the codes mean is decided by the system service. */
typedef struct FailInfo {
    uint16_t usCode;       /* failure code */
    uint8_t ucStat;        /* 1: the failure is present, 0: it is not */
    uint8_t ucCtl;         /* control */
    uint16_t usWait;       /* wait; the log shows it as a signed number */
    uint8_t ucReserved[2]; /* 0 */
    uint8_t ucAddInfo[32]; /* additional information */
} FailInfo;

enum {
    VX63_KEYS = 17 /* keys of the meter */
};

/* Key states. */
typedef struct KeyStatus {
    int32_t stat[VX63_KEYS]; /* of each key: 1 pressed, 0 not */
} KeyStatus;

/*
 * Device status. Each field is named by the place of its value in the service's report; they do not stand in
 * that order.
 */
typedef struct DeviceStatus {
    uint16_t usStat0; /* bits: 0x01 a memory is in USB slot 1, 0x02 in slot 2 */
    uint8_t ucStat2;  /* %: charge of the battery, 0 to 100 */
    uint8_t ucStat6;  /* degrees Celsius: temperature inside, 0 to 100 */
    uint32_t ulStat3; /* fed by: 0 the battery, 1 from outside */
    uint32_t ulStat4; /* charger: 0 off, 1 charging, 2 the battery is full */
    uint32_t ulStat5; /* battery: 0 good, 1 low */
    uint16_t usStat8; /* mV: voltage of the battery */
} DeviceStatus;

/* ---- Exported data --------------------------------------------------------------------------------- */

/* Path of the log file; rewritten, with the same text, by every log statement. */
extern VX63_API char g_cLibTestLogFilePath[256];

/* For the applications; the library neither reads nor writes it (logging is always on). */
extern VX63_API int32_t g_lLibLogLevel;

/* The calling thread's buffer in which hex dumps are composed. */
extern VX63_API __thread char gLibDumpLog[50000];

/* For the applications: a buffer of the calling thread's own. The library does not use it. */
extern VX63_API __thread char gLibDumpTestLog[50000];

/* Factory defaults of the manual broadcast system and modulation settings. */
extern VX63_API const MeasSetManuBdsysMod g_measSetManuBdsysModDef[23];

/* ---- Initialisation -------------------------------------------------------------------------------- */

/*
 * Tells the library which process id the calling thread speaks for. Sends nothing; may be called again
 * at any time. A thread that never succeeds in it sends with id 0xFF, and its calls end in time-outs.
 *   procId  0 to 17
 * Returns VX63_OK, or VX63_ERR_ARG (the thread's id stays as it was).
 */
VX63_API int32_t vx63_init(int32_t procId);

/* ---- Settings files -------------------------------------------------------------------------------- */

/*
 * These functions work on the files themselves: all but the two notices at the end need no vx63_init() and
 * ask no service, and report an argument error as -1 (not VX63_ERR_ARG), before any file is touched. A
 * failure of the platform's reader or writer is passed on as it came, negative. A file is named by its id,
 * VX63_SET_FILE_*; a set's name, 1 to 12 characters without a separator, is inserted into its path unchanged,
 * and refused where it is too long for any path. After a write the file has reached the flash. Any number of
 * threads may call; two that write one file at the same time are not serialised.
 */

/*
 * Reads a whole file.
 *   fileId          0 to 49
 *   pDat            receives the records; room for as many as the file can hold, see VX63_SET_FILE_*. After
 *                   a failed read it may be written in part
 *   pcMeasFileName  name of the set; for other files not used, may be null
 *   bDefault        not 0: the factory contents instead of the file. Has no effect on sets and lists
 * Returns the number of records read, or a negative value.
 */
VX63_API int32_t vx63_readSetFile(uint32_t fileId, void* pDat, const char* pcMeasFileName, uint32_t bDefault);

/*
 * Writes a whole file.
 *   fileId          0 to 49
 *   pDat            the records; read only
 *   pcMeasFileName  name of the set; for other files not used, may be null
 *   ulUserLine      records to write to a set or a list, 0 to as many as it can hold; any other file is
 *                   always written whole
 * Returns 0 or more, or a negative value.
 */
VX63_API int32_t vx63_writeSetFile(uint32_t fileId, const void* pDat, const char* pcMeasFileName,
                                   uint32_t ulUserLine);

/*
 * Reads one record of a file.
 *   fileId          0 to 49
 *   pDat            addressed as if it held the whole file: record ulIdx alone is written, at its place
 *   ulIdx           index of the record, from 0; less than the number of records in the file
 *   pcUserFileName  name of the set; for other files not used, may be null
 *   bDefault        not 0: the factory contents instead of the file. Has no effect on sets and lists
 * Returns the number of records in the file, or a negative value (pDat is as it was).
 */
VX63_API int32_t vx63_readSetFileIdx(uint32_t fileId, void* pDat, uint32_t ulIdx, const char* pcUserFileName,
                                     uint32_t bDefault);

/*
 * Replaces one record of a file; none can be added. The whole file is read and written back: of two writers
 * at the same time the last one wins for the whole file.
 *   fileId          0 to 49
 *   pDat            addressed as if it held the whole file: record ulIdx alone is read, at its place
 *   ulIdx           index of the record, from 0; less than the number of records in the file
 *   pcUserFileName  name of the set; for other files not used, may be null
 * Returns 0 or more, or a negative value.
 */
VX63_API int32_t vx63_writeSetFileIdx(uint32_t fileId, const void* pDat, uint32_t ulIdx,
                                      const char* pcUserFileName);

/*
 * Whether a file is a user set, a list of user sets, a logger set, a list of logger sets. Any value may be
 * asked for; nothing is logged.
 * Returns 1 or 0.
 */
VX63_API int32_t vx63_isFileIdUserSet(int32_t fileId);
VX63_API int32_t vx63_isFileIdUserSetFlist(int32_t fileId);
VX63_API int32_t vx63_isFileIdLoggerSet(int32_t fileId);
VX63_API int32_t vx63_isFileIdLoggerSetFlist(int32_t fileId);

/*
 * Deletes one set from the internal storage, USB memory 1 or 2. The list of its folder stays as it is: to
 * take the name off the list is up to the caller (vx63_writeSetFileIdx).
 *   pcUserFileName, pcLoggerFileName  name of the set
 * Returns 0, or -1 (null pointer, name too long, or the file could not be removed).
 */
VX63_API int32_t vx63_deleteSetFileUser(const char* pcUserFileName);
VX63_API int32_t vx63_deleteSetFileUserUsb1(const char* pcUserFileName);
VX63_API int32_t vx63_deleteSetFileUserUsb2(const char* pcUserFileName);
VX63_API int32_t vx63_deleteSetFileLogger(const char* pcLoggerFileName);
VX63_API int32_t vx63_deleteSetFileLoggerUsb1(const char* pcLoggerFileName);
VX63_API int32_t vx63_deleteSetFileLoggerUsb2(const char* pcLoggerFileName);

/*
 * Deletes everything in a folder of sets and writes its list anew, empty. A folder that is empty, the list
 * included, counts as a failure.
 *   fileId  the set: VX63_SET_FILE_USER_SET* or VX63_SET_FILE_LOGGER_SET*
 * Returns 0, or -1; where the deletion itself failed, no list is written.
 */
VX63_API int32_t vx63_deleteSetFileUserBulk(uint32_t fileId);
VX63_API int32_t vx63_deleteSetFileLoggerBulk(uint32_t fileId);

/*
 * Deletes every settings file of the meter, sets and lists included. None is made anew: until one is
 * written, read the factory contents.
 * Returns 0, or -1 where a folder failed (an empty one counts); the other folders are emptied all the same.
 */
VX63_API int32_t vx63_deleteAllSetFile(void);

/*
 * Tells the system service that a file, or one record of it, changed, so that it takes the new contents into
 * use. 10 s.
 *   fileId  0 to 49
 *   ulIdx   index of the record; its low 8 bits are sent (300 arrives as 44)
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_ntfUpdateFile(uint32_t fileId);
VX63_API int32_t vx63_ntfUpdateFileIdx(uint32_t fileId, uint32_t ulIdx);

/* ---- Input and antenna power supply ---------------------------------------------------------------- */

/*
 * Selects the RF input of the measurement service. 10 s.
 *   input  VX63_INPUT_*
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_setMeasInput(int32_t input);

/*
 * Switches the antenna power supply. Answered by the measurement service; 10 s.
 *   powerSupply  VX63_POWER_SUPPLY_*, 0 to 4
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_reqPowerSupply(int32_t powerSupply);

/*
 * Reads the state of the measurement service. 10 s.
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getMeasStatus(MeasStatus* pMeasStat);

/*
 * Reads the antenna power supply. Answered by the device service; 10 s.
 *   pInfo  not tested: must point to a record
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getPowerSupplyInfo(PowerSupplyInfo* pInfo);

/*
 * Switches the antenna power supply of a multi-channel measurement over mixed bands. Answered by the
 * measurement service; 5 s.
 *   ucOnOff  0 off, 1 on, from the next start of a list on. Any other value is passed on as well, and
 *            the service refuses it
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_setPowerSupplyMultiMeasMixBand(uint8_t ucOnOff);

/* ---- Single measurement ---------------------------------------------------------------------------- */

/*
 * Tunes one channel and starts to measure it; it is measured until it is stopped. Answered by the
 * measurement service; 10 s. A powerSupply outside 0 to 4 is logged and taken as off, not refused.
 *   ucDispType  display type, passed on as it is
 *   pCondition  what to measure; read only
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_startSingleMeas(uint8_t ucDispType, const MeasCondition* pCondition);

/*
 * Stops the measurement. Answered by the measurement service; 10 s.
 *   ucDispType  display type, as it was given to the start
 * Returns VX63_OK, VX63_ERR_ARG (the service refused), VX63_ERR_COMM.
 */
VX63_API int32_t vx63_stopSingleMeas(uint8_t ucDispType);

/*
 * Reads the latest values of the running measurement. Answered by the measurement service; 10 s. Poll it:
 * the values change while the measurement runs.
 *   usReadCount  0: the values alone, pResult's CONS_NUM and points stay as they are; any other value:
 *                constellation points as well, passed on as it is (see vx63_startConstaMeas)
 *   pResult      all fields but reserved are written. CONS_NUM is what the service says, which can be more
 *                than was asked for. Of that many points, those that the response did not carry are 0: one
 *                response carries 624 at most. No more than VX63_CONSTA_POINTS_MAX points are written; the
 *                points behind the last one written stay as they are.
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_POWER, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getSingleMeasResult(uint16_t usReadCount, SingleMeasResult* pResult);

/* ---- Constellation --------------------------------------------------------------------------------- */

/*
 * Starts to collect constellation points of the running single measurement. Read them with
 * vx63_getSingleMeasResult. Answered by the measurement service; 10 s.
 *   ucDispType  display type, passed on as it is
 *   collectNum  points to collect: 1000, 2000 or 4000
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_startConstaMeas(uint8_t ucDispType, int32_t collectNum);

/*
 * Stops collecting. Answered by the measurement service; 10 s.
 *   ucDispType  display type, as it was given to the start
 * Returns VX63_OK, VX63_ERR_ARG (the service refused), VX63_ERR_COMM.
 */
VX63_API int32_t vx63_stopConstaMeas(uint8_t ucDispType);

/* ---- Delay profile --------------------------------------------------------------------------------- */

/*
 * Starts to measure the delay profile of one channel. Answered by the measurement service; 10 s. A
 * powerSupply outside 0 to 4 is logged and taken as off, not refused.
 *   ucDispType  display type, passed on as it is
 *   pCondition  what to measure; read only
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_startDlyPrfMeas(uint8_t ucDispType, const MeasCondition* pCondition);

/*
 * Stops the measurement. Answered by the measurement service; 10 s.
 *   ucDispType  display type, as it was given to the start
 * Returns VX63_OK, VX63_ERR_ARG (the service refused), VX63_ERR_COMM.
 */
VX63_API int32_t vx63_stopDlyPrfMeas(uint8_t ucDispType);

/*
 * Reads the delay profile in six blocks, from the first one in every call. Answered by the measurement
 * service; 10 s for each block. A block that the service answers with another one is asked for again for as
 * long as it does.
 *   pResult  stat tells whether the profile is complete; if it is not, read again later. Written block by
 *            block: when the profile turns out to be incomplete, and on failure, the blocks read before
 *            stay, and on failure stat is that of the last of them.
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_POWER, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getDlyPrfResult(DlyPrfResult* pResult);

/* ---- Multi-channel measurement --------------------------------------------------------------------- */

/*
 * Registers a list of channels and starts to measure them in turn. Answered by the measurement service;
 * takes one exchange of 10 s for every 40 channels. When a part is refused, those before it stay registered
 * and nothing is started or stopped. A powerSupply outside 0 to 4 is logged and taken as off, not refused.
 *   ucDispType  display type, passed on as it is
 *   pReg        the channels; read only. A channel's index has 8 bits: with more than 256 channels the first
 *               ones are registered once more in place of those from 256 on. A negative sRegNum is refused:
 *               with VX63_ERR_COMM from -39 down, with VX63_ERR_ARG above.
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_startMultiMeas(uint8_t ucDispType, const MultiMeasReg* pReg);

/*
 * Stops the measurement. Answered by the measurement service; 10 s.
 *   ucDispType  display type, as it was given to the start
 * Returns VX63_OK, VX63_ERR_ARG (the service refused), VX63_ERR_COMM.
 */
VX63_API int32_t vx63_stopMultiMeas(uint8_t ucDispType);

/*
 * Does nothing: sends nothing, logs nothing. Kept in the interface.
 * Returns VX63_OK.
 */
VX63_API int32_t vx63_setMultiMeasChannel(void);

/*
 * Reads the latest values of one channel while the measurement runs. Answered by the measurement service;
 * 10 s.
 *   sIndex   index of the channel in the registration, from 0. No upper limit is tested; the service gets
 *            the low 16 bits.
 *   pResult  all fields are written
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_POWER, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getMultiMeasResult(int32_t sIndex, MultiMeasResult* pResult);

/* ---- Priority multi-channel measurement ------------------------------------------------------------ */

/*
 * Starts a multi-channel measurement with a channel of priority: the same request as vx63_startSingleMeas,
 * and the same results. Answered by the measurement service; 10 s.
 *   ucDispType  display type, passed on as it is
 *   pCondition  what to measure; read only
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_startMultiChPrioMeas(uint8_t ucDispType, const MeasCondition* pCondition);

/*
 * Stops the measurement. Answered by the measurement service; 10 s.
 *   ucDispType  display type, as it was given to the start
 * Returns VX63_OK, VX63_ERR_ARG (the service refused), VX63_ERR_COMM.
 */
VX63_API int32_t vx63_stopMultiChPrioMeas(uint8_t ucDispType);

/*
 * Reads the latest values. Answered by the measurement service; 10 s.
 *   pResult  all fields but reserved, CONS_NUM and points are written
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_POWER, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getMultiChPrioMeas(SingleMeasResult* pResult);

/* ---- Channel scan ---------------------------------------------------------------------------------- */

/*
 * Registers a list of channels and starts to scan them. Everything else is as in vx63_startMultiMeas.
 */
VX63_API int32_t vx63_startScan(uint8_t ucDispType, const MultiMeasReg* pReg);

/*
 * Stops the scan, or a multi-channel measurement: the service cannot tell one stop from the other.
 * Everything else is as in vx63_stopMultiMeas.
 */
VX63_API int32_t vx63_stopScan(uint8_t ucDispType);

/*
 * Reads the latest values of one channel while the scan runs. Everything else is as in
 * vx63_getMultiMeasResult.
 */
VX63_API int32_t vx63_getScanResult(int32_t sIndex, MultiMeasResult* pResult);

/* ---- Optical power --------------------------------------------------------------------------------- */

/*
 * Starts to measure the optical input power. Answered by the measurement service; 10 s.
 *   ulWaveLength  nm, 800 to 1700. The library refuses 0 alone; the service judges any other value
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_startOptMeas(uint32_t ulWaveLength);

/*
 * Stops the measurement. Answered by the measurement service; 10 s.
 * Returns VX63_OK, VX63_ERR_ARG (the service refused), VX63_ERR_COMM.
 */
VX63_API int32_t vx63_stopOptMeas(void);

/*
 * Reads the optical power. Answered by the measurement service; 10 s.
 *   pResult  0.01 dBm: optical power
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getOptMeasResult(int32_t* pResult);

/* ---- DC voltage ------------------------------------------------------------------------------------ */

/*
 * Starts to measure the DC voltage. Answered by the measurement service; 10 s.
 * Returns VX63_OK, VX63_ERR_ARG (the service refused), VX63_ERR_COMM.
 */
VX63_API int32_t vx63_startDcMeas(void);

/*
 * Stops the measurement. Answered by the measurement service; 10 s.
 * Returns VX63_OK, VX63_ERR_ARG (the service refused), VX63_ERR_COMM.
 */
VX63_API int32_t vx63_stopDcMeas(void);

/*
 * Reads the DC voltage. Answered by the measurement service; 10 s.
 *   pResult  mV
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getDcMeasResult(uint32_t* pResult);

/* ---- Antenna angle --------------------------------------------------------------------------------- */

/*
 * Switches the angle measurement on. Answered by the device service; 10 s.
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_startAngleMeas(void);

/*
 * Switches the angle measurement off. Answered by the device service; 10 s.
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_stopAngleMeas(void);

/*
 * Starts the calibration of the angle sensor; vx63_getAngleCalStat follows it. It cannot be stopped.
 * Answered by the device service; 10 s.
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_startAngleCal(void);

/*
 * Reads how far the calibration of the angle sensor got. Answered by the device service; 10 s.
 *   pStat  not tested: must point to a record. Floats arrive bit for bit, those that are no numbers too.
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getAngleCalStat(AngleCalStat* pStat);

/*
 * Reads the live values of the angle sensor. Answered by the device service; 10 s.
 *   pInfo  not tested: must point to a record. Floats arrive bit for bit, those that are no numbers too.
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getAngleCalInfoDetail(AngleCalInfoDetail* pInfo);

/* ---- Device information ---------------------------------------------------------------------------- */

/* Of these, only vx63_getProductInfo logs its start and its end. */

/*
 * Reads the product data. Answered by the system service; 10 s.
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getProductInfo(ProductInfo* pProductInfo);

/*
 * Reads the current failure. Answered by the system service; 10 s.
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getFailinfo(FailInfo* pFail);

/*
 * Reads the key states. Answered by the key service; 10 s. A success logs nothing; a failure also logs the
 * record as the caller holds it, into /var/log/libvx63_key.txt: fill it before the first call.
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getKeyStatus(KeyStatus* pKeyStat);

/*
 * Reads the device status. Answered by the device service; 10 s. A success logs nothing.
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getDeviceStatus(DeviceStatus* pDevStat);

/*
 * Sets the failure state. Answered by the system service, whose answer is not examined; 10 s.
 *   usCode     failure code, passed on as it is
 *   ucStat     1 the failure is present, 0 it is not
 *   ucAddInfo  32 bytes of additional information; read only
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_setFailStat(uint16_t usCode, uint8_t ucStat, const uint8_t* ucAddInfo);

/* ---- Power and system control ---------------------------------------------------------------------- */

/* What the one-byte arguments mean is decided by the service that answers: every value is passed on. */

/*
 * Restarts the meter. Answered by the system service; 10 s.
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_reboot(void);

/*
 * Switches the meter off. Answered by the system service; 10 s.
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_shutdown(void);

/*
 * Puts the meter into standby. 10 s.
 *   ucMode  0 the whole meter: answered by the system service; 1 its measuring part: answered by the
 *           measurement service, which refuses any other value
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_standby(uint8_t ucMode);

/*
 * Wakes the meter up from standby. 10 s.
 *   ucMode  0 the whole meter: answered by the system service; 1 its measuring part: answered by the
 *           measurement service, which refuses any other value
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_wakeup(uint8_t ucMode);

/*
 * Forces standby. Answered by the measurement service, though the log names the system service when the
 * exchange fails; 10 s.
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_force_standby(void);

/*
 * Forces the wake-up from standby. Answered by the measurement service, though the log names the system
 * service when the exchange fails; 10 s.
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_force_wakeup(void);

/*
 * Reads the standby state. Answered by the measurement service; 10 s.
 *   pStandbyStat  0 awake, 1 the whole meter is in standby, 2 its measuring part is
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_getStandbyStat(uint32_t* pStandbyStat);

/*
 * Calibrates the meter. Answered by the measurement service; 5 s.
 *   ucMode  0 all, 1 the level alone
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_calibration(uint8_t ucMode);

/*
 * Tells the measurement service that the low-battery state has changed. 5 s.
 *   ucLowBattStat  0 good, 1 low
 * Returns VX63_OK, VX63_ERR_ARG (the service refused), VX63_ERR_COMM.
 */
VX63_API int32_t vx63_ntfLowBattStatChg(uint8_t ucLowBattStat);

/*
 * Resets the meter to its factory default. Answered by the system service; 5 s.
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_initFactoryDefault(void);

/*
 * Switches the developer mode. Answered by the system service; 5 s.
 *   ucOnOff  0 off, 1 on
 * Returns VX63_OK, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_setDeveloperMode(uint8_t ucOnOff);

/*
 * Updates the meter's program and returns when the update has finished. Asks the system service again and
 * again, without a pause, for as long as it answers that the update is still running: 600 s for each
 * answer, and no limit to their number.
 *   pUpdateReq  the update request: 32 bytes, passed on as they are; read once. What they mean is the
 *               system service's business: `vx63 update` makes those that the virtual meter's takes
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_prgUpdate(const void* pUpdateReq);

/* ---- Buzzer and display ---------------------------------------------------------------------------- */

/* What the values of the arguments mean is decided by the service that answers. */

/*
 * Sounds the buzzer. Answered by the buzzer service; 10 s.
 *   buzz      kind of sound and its priority: 0 key click, 1 confirmation, 2 warning, 3 error, 4 alarm
 *   buzzMode  0 once, 1 again and again, 2 stop
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_REPEAT, VX63_ERR_PRIORITY, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_buzzer(int32_t buzz, int32_t buzzMode);

/*
 * Forces the volume of the buzzer. Answered by the buzzer service; 10 s.
 *   buzz     kind of sound, 0 to 4: as vx63_buzzer has them
 *   buzzVol  0 (silent) to 3
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_REPEAT, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_forceBuzzerVolume(int32_t buzz, int32_t buzzVol);

/*
 * Forces the brightness of the display. Answered by the system service; 10 s.
 *   brightness  0 dark, 1 middle, 2 bright; the settings file has 1 to 3 for them
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_forceBrightness(int32_t brightness);

#ifdef __cplusplus
}
#endif

#endif
