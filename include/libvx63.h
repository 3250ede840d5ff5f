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
 * takes no locks, allocates no memory and prints nothing. It never throws.
 *
 * Results. Every function returns one of the VX63_* result codes: 0 for success, negative for failure.
 * VX63_ERR_ARG is found before anything is sent, unless the service itself refuses a parameter.
 *
 * Records. The caller owns every record and every pointer; the library keeps none after the call. An
 * output record is written on success only: after a failure it is as it was, unless the function says
 * otherwise. A null pointer is refused with VX63_ERR_ARG unless the function says that it is not tested.
 *
 * Threads. Each thread that talks to a service first calls vx63_init() with a process id of its own; it
 * names the queue on which that thread's responses arrive. Threads with different ids may call any
 * function at the same time. Two threads (or processes) that share an id take each other's responses.
 *
 * Time-outs. A function that says "10 s" waits up to 10 s to hand over its request and again up to 10 s
 * for the response. A response that comes later is met, and discarded, by the thread's next call, which
 * then fails with VX63_ERR_COMM; the call after it works again.
 *
 * Log. Every call writes lines to /var/log/libvx63.cpp.txt: its start, its errors and its end. A log
 * that cannot be written never changes a result. The file is started anew once it exceeds 2 MiB.
 *
 * Units. The library passes frequencies, levels and codes through as they are; what they mean is decided
 * by the service that answers.
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

/* ---- Argument constants ---------------------------------------------------------------------------- */

enum {
    VX63_POWER_SUPPLY_OFF = 0 /* antenna power supply off; 1 to 4 select a supply */
};

/* ---- Records --------------------------------------------------------------------------------------- */

/* What to measure: passed to every measurement start. Only powerSupply is interpreted by the library. */
typedef struct MeasCondition {
    uint32_t ulFreq;      /* frequency to tune */
    uint32_t ulLoFreq;    /* local-oscillator frequency, for converted satellite bands */
    uint16_t usBdSys;     /* broadcast system code */
    uint16_t usBand;      /* band code */
    uint16_t usMod;       /* modulation code */
    uint16_t usCondition; /* condition bits */
    char ucStrChan[8];    /* channel name: exactly 8 bytes, not necessarily NUL-terminated */
    uint8_t ucOutputEnb;  /* output enable */
    int32_t powerSupply;  /* antenna power supply 0 to 4; any other value is taken as VX63_POWER_SUPPLY_OFF */
} MeasCondition;

/* State of the measurement service. */
typedef struct MeasStatus {
    uint32_t ulMeasStat;  /* measurement status bits */
    uint16_t usInputStat; /* input status bits */
} MeasStatus;

/* Readings of the antenna power supply. */
typedef struct PowerSupplyInfo {
    uint8_t ucPowerSupply; /* the supply that is switched on */
    uint8_t ucVolt;        /* voltage */
    uint16_t usAdVal;      /* raw value of the A/D converter */
    uint32_t ulCurrentM;   /* current, in thousandths */
    uint32_t ulElecPowerM; /* power, in thousandths */
} PowerSupplyInfo;

/* One constellation point. (A C program that also includes <complex.h> must undefine its macro I.) */
struct ConstaPoint {
    int8_t I;
    int8_t Q;
};

enum {
    VX63_CONSTA_POINTS_MAX = 4000 /* constellation points that a result record holds */
};

/* Result of a single measurement. */
typedef struct SingleMeasResult {
    uint8_t lock;       /* lock state */
    uint16_t stat;      /* measurement status */
    uint16_t mesCond;   /* measured condition */
    uint16_t reserved;  /* never written by the library */
    uint16_t bdSys;     /* broadcast system detected */
    uint32_t LEVEL;     /* level */
    uint32_t CNR;       /* carrier-to-noise ratio */
    uint32_t BER_TOTAL; /* bits counted for the bit error rate */
    uint32_t BER_ERR;   /* erroneous bits among them */
    uint16_t TSID;      /* transport-stream id */
    uint8_t GI;         /* guard interval */
    uint8_t LAYER;      /* hierarchical layer */
    uint32_t MOD;       /* modulation */
    uint16_t CONS_NUM;  /* constellation points; left as it is by a plain result read */
    struct ConstaPoint points[VX63_CONSTA_POINTS_MAX]; /* left as they are by a plain result read */
} SingleMeasResult;

enum {
    VX63_DLYPRF_SAMPLES = 2048 /* samples of a delay profile */
};

/* A delay profile. */
typedef struct DlyPrfResult {
    uint16_t stat;                            /* 2 complete, 1 still measuring, any other: no data */
    int8_t ucDlyPrfData[VX63_DLYPRF_SAMPLES]; /* samples in the order of their delay */
} DlyPrfResult;

/*
 * Channels to measure or to scan: one block of sizeof(MultiMeasReg) + sRegNum * sizeof(MeasCondition) bytes.
 * The array is C99's flexible one, which C++ compilers know as well.
 */
__extension__ typedef struct MultiMeasReg {
    int16_t sRegNum;        /* number of channels that follow */
    MeasCondition single[]; /* the channels; the index of a channel here is its index in a result read */
} MultiMeasReg;

/* Result of one channel of a multi-channel measurement or a scan. */
typedef struct MultiMeasResult {
    uint8_t lock;       /* lock state */
    uint16_t stat;      /* measurement status */
    uint16_t mesCond;   /* measured condition */
    uint8_t readIdx;    /* index of the channel whose result this is */
    uint8_t currIdx;    /* index of the channel that is being measured now */
    uint16_t bdSys;     /* broadcast system detected */
    uint32_t LEVEL;     /* level */
    uint32_t CNR;       /* carrier-to-noise ratio */
    uint32_t BER_TOTAL; /* bits counted for the bit error rate */
    uint32_t BER_ERR;   /* erroneous bits among them */
    uint16_t TSID;      /* transport-stream id */
    uint8_t GI;         /* guard interval */
    uint8_t LAYER;      /* hierarchical layer */
    uint32_t MOD;       /* modulation */
} MultiMeasResult;

/* A point of the angle sensor's calibration. */
typedef struct AnglePoint {
    float x;
    float y;
    float z;
} AnglePoint;

/* Progress of the angle sensor's calibration. */
typedef struct AngleCalStat {
    int32_t lStatus; /* as the device service reports it */
    AnglePoint centerPoint1;
    AnglePoint centerPoint2;
    AnglePoint centerPoint3;
} AngleCalStat;

/* Live values of the angle sensor. */
typedef struct AngleCalInfoDetail {
    float flRoll;
    float flPitch;
    float flAx; /* acceleration, raw */
    float flAy;
    float flAz;
    float flMx; /* magnetic field, raw */
    float flMy;
    float flMz;
    float flAxRot; /* acceleration, rotated */
    float flAyRot;
    float flAzRot;
    float flMxRot; /* magnetic field, rotated */
    float flMyRot;
    float flMzRot;
} AngleCalInfoDetail;

/* One row of the factory table of manual broadcast systems and modulations. */
typedef struct MeasSetManuBdsysMod {
    uint16_t BDSYS; /* broadcast system code */
    uint32_t MOD;   /* modulation code */
} MeasSetManuBdsysMod;

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

/* ---- Input and antenna power supply ---------------------------------------------------------------- */

/*
 * Selects the RF input of the measurement service. 10 s.
 *   input  0 or 1
 * Returns VX63_OK, VX63_ERR_ARG, VX63_ERR_COMM.
 */
VX63_API int32_t vx63_setMeasInput(int32_t input);

/*
 * Switches the antenna power supply. Answered by the measurement service; 10 s.
 *   powerSupply  0 (VX63_POWER_SUPPLY_OFF) to 4
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
 *   ucOnOff  passed on as it is; the service judges it
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
 *   ulWaveLength  wavelength, not 0; any other value is passed on and the service judges it
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
 *   pResult  optical power as the service scales it; may be negative
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
 *   pResult  voltage as the service scales it
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

#ifdef __cplusplus
}
#endif

#endif
