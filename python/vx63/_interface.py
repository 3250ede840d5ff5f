# What follows from the C headers. Written by script/python-interface: do not edit.
# fmt: off
"""Constants. Names, values and what they mean:

  VX63_OK            0   success
  VX63_ERR_COMM      -1  the exchange failed, or the service answered with an unknown result
  VX63_ERR_ARG       -2  an argument is out of range or null, or the service refused a parameter
  VX63_ERR_REPEAT    -6  the buzzer is sounding a repeating pattern
  VX63_ERR_POWER     -7  the measurement service reports a fault of the antenna power supply
  VX63_ERR_PRIORITY  -8  the buzzer is busy with a sound of higher priority

The service processes. A client's own id is 0 to 17, as the firmware's process table gives it.
  PROC_ID_PSYS   0   system service: product data, failures, power, update, settings notices
  PROC_ID_PDEV   6   device service: device status, angle sensor, power-supply information
  PROC_ID_PKEY   8   key service: key states
  PROC_ID_PBUZ   10  buzzer service
  PROC_ID_PMEAS  12  measurement service: all measurements, standby, calibration, battery notices

RF inputs.
  VX63_INPUT_0  0
  VX63_INPUT_1  1

Antenna power supplies: the voltage selects the polarisation of an LNB, the 22 kHz tone its band.
  VX63_POWER_SUPPLY_OFF       0
  VX63_POWER_SUPPLY_11V       1
  VX63_POWER_SUPPLY_15V       2
  VX63_POWER_SUPPLY_11V_TONE  3
  VX63_POWER_SUPPLY_15V_TONE  4

Broadcast systems: usBdSys, bdSys, BDSYS, SPEC.
  VX63_BDSYS_TERRESTRIAL  0   OFDM in 6 MHz, on cable too
  VX63_BDSYS_SATELLITE    1   BS and CS, first generation
  VX63_BDSYS_SATELLITE_2  2   BS and CS, second generation
  VX63_BDSYS_CATV         3   cable: QAM in 6 MHz
  VX63_BDSYS_JSAT         4   QPSK
  VX63_BDSYS_JSAT_2       5   QPSK to 32APSK
  VX63_BDSYS_SKYP         6   cable: 256QAM
  VX63_BDSYS_CATV_2       9   cable: a variant of VX63_BDSYS_CATV
  VX63_BDSYS_LEVEL        10  any carrier: its level alone, without lock

Modulations, a bit each: usMod takes one or several, or VX63_MOD_ANY; MOD gives one.
  VX63_MOD_ANY             0
  VX63_MOD_OFDM            1
  VX63_MOD_BPSK            2
  VX63_MOD_QPSK            8
  VX63_MOD_8PSK_SATELLITE  16    of VX63_BDSYS_SATELLITE
  VX63_MOD_8PSK            32    of all others
  VX63_MOD_16APSK          64
  VX63_MOD_32APSK          128
  VX63_MOD_64QAM           1024
  VX63_MOD_256QAM          4096
  VX63_MOD_NONE            8192  a carrier without modulation

Guard intervals of an OFDM signal, as a part of its useful symbol: GI.
  VX63_GI_1_32  0
  VX63_GI_1_16  1
  VX63_GI_1_8   2
  VX63_GI_1_4   3

Bits of the stat of a measurement result.
  VX63_STAT_SIGNAL        1   the carrier-to-noise ratio is 0 dB or more
  VX63_STAT_LOCKED        2   as lock says
  VX63_STAT_BITS          4   bits were counted: BER_TOTAL is not 0
  VX63_STAT_POWER_SUPPLY  8   the antenna power supply is on
  VX63_STAT_MEASURED      16  of a list of channels: this one has been measured

Bits of the measurement service's ulMeasStat: what it is at.
  VX63_MEAS_SINGLE  1    a single measurement runs
  VX63_MEAS_LOCKED  2    it, or the delay profile, has locked
  VX63_MEAS_MULTI   4    a multi-channel measurement runs
  VX63_MEAS_SCAN    8    a scan runs and is not over
  VX63_MEAS_DLYPRF  16   a delay profile is measured
  VX63_MEAS_CONSTA  32   constellation points are collected
  VX63_MEAS_OPT     64   the optical power is measured
  VX63_MEAS_DC      128  the DC voltage is measured

Bits of the measurement service's usInputStat.
  VX63_INPUT_STAT_1             1   VX63_INPUT_1 is selected
  VX63_INPUT_STAT_SUPPLY        2   the antenna power supply is on,
  VX63_INPUT_STAT_15V           4   at 15 V,
  VX63_INPUT_STAT_TONE          8   with the tone,
  VX63_INPUT_STAT_SUPPLY_FAULT  16  reports a fault
  VX63_INPUT_STAT_MIXED_BANDS   32  feeds lists of mixed bands

State of a delay profile: its stat.
  VX63_DLYPRF_NONE       0  there is nothing to lock to
  VX63_DLYPRF_MEASURING  1  read again later
  VX63_DLYPRF_COMPLETE   2

The settings files, all under /usr/local/bin/: records x bytes of a record, then the file. The %s of a
setting set stands for the set's name. For sets and lists the records are the most that they hold.
  VX63_SET_FILE_POWOFF              0   1 x 7: sys_set/system_setting_file_powoff.csv
  VX63_SET_FILE_VOLUME              1   1 x 5: sys_set/system_setting_file_volume.csv
  VX63_SET_FILE_BRIGHTNESS          2   1 x 4: sys_set/system_setting_file_brightness.csv
  VX63_SET_FILE_LOCAL_FREQ          3   12 x 28: meas_set/measrement_setting_file_local_freq.csv
  VX63_SET_FILE_THRD                4   24 x 88: meas_set/measrement_setting_file_thrd.csv
  VX63_SET_FILE_CNRMER              5   15 x 3: meas_set/measrement_setting_file_cnrmer.csv
  VX63_SET_FILE_CATV_FREQ           6   4 x 28: meas_set/measrement_setting_file_catv_freq.csv
  VX63_SET_FILE_CABLE_LOSS          7   4 x 8: meas_set/measrement_setting_file_cable_loss.csv
  VX63_SET_FILE_CABLE_LOSS_ENB      8   1 x 1: meas_set/measrement_setting_file_cable_loss_enb.csv
  VX63_SET_FILE_INPUT               9   1 x 3: meas_set/measrement_setting_file_input.csv
  VX63_SET_FILE_CATV_MOD            10  1 x 12: meas_set/measrement_setting_file_catv_mod.csv
  VX63_SET_FILE_DC_OUT              11  3 x 10: meas_set/measrement_setting_file_dc_out.csv
  VX63_SET_FILE_OPT_MEAS            12  1 x 12: meas_set/measrement_setting_file_opt_meas.csv
  VX63_SET_FILE_CONSTA_NUM          13  1 x 16: meas_set/measrement_setting_file_consta_num.csv
  VX63_SET_FILE_USER_SET            14  324 x 28: user_set/%s.csv
  VX63_SET_FILE_USER_LIST           15  140 x 15: user_set/user_setting_file_list.csv
  VX63_SET_FILE_UHF                 16  40 x 12: ch_set/channel_setting_file_uhf_6mhz.csv
  VX63_SET_FILE_BS                  17  24 x 16: ch_set/channel_setting_file_bs_34.5mhz.csv
  VX63_SET_FILE_CS                  18  26 x 16: ch_set/channel_setting_file_cs_34.5mhz.csv
  VX63_SET_FILE_SCCB                19  23 x 16: ch_set/channel_setting_file_sccb_27mhz.csv
  VX63_SET_FILE_SCCC                20  24 x 16: ch_set/channel_setting_file_sccc_27mhz.csv
  VX63_SET_FILE_JSAT3A              21  28 x 16: ch_set/channel_setting_file_jsat3a_27mhz.csv
  VX63_SET_FILE_JSAT4B              22  32 x 16: ch_set/channel_setting_file_jsat4b_27mhz.csv
  VX63_SET_FILE_CATV_ALL            23  150 x 16: ch_set/channel_setting_file_catv_all_6mhz.csv
  VX63_SET_FILE_CATV_90_470MHZ      24  62 x 16: ch_set/channel_setting_file_catv_90_470mhz_6mhz.csv
  VX63_SET_FILE_CATV_470_1002MHZ    25  88 x 16: ch_set/channel_setting_file_catv_470_1002mhz_6mhz.csv
  VX63_SET_FILE_SKYP                26  113 x 12: ch_set/channel_setting_file_skyp_6mhz.csv
  VX63_SET_FILE_PILOT               27  20 x 12: ch_set/channel_setting_file_pilot.csv
  VX63_SET_FILE_LTE                 28  6 x 16: ch_set/channel_setting_file_lte.csv
  VX63_SET_FILE_FM                  29  251 x 12: ch_set/channel_setting_file_fm.csv
  VX63_SET_FILE_MANU_BDSYS_MOD      30  23 x 8: meas_set/measrement_setting_file_manu_bdsys_mod.csv
  VX63_SET_FILE_BDSYS_CONV          31  28 x 6: meas_set/measrement_setting_file_bdsys_conv.csv
  VX63_SET_FILE_CATV_BDSYS_CONV     32  5 x 8: meas_set/measrement_setting_file_catv_bdsys_conv.csv
  VX63_SET_FILE_CATV_UP_STREAM      33  1001 x 12: ch_set/channel_setting_file_catv_up_stream.csv
  VX63_SET_FILE_PMEAS_MNG           34  48 x 68: pmeas_set/pmeas_setting_file_pmeas_mng.csv
  VX63_SET_FILE_LOGGER_SET          35  324 x 28: logger_set/%s.csv
  VX63_SET_FILE_LOGGER_LIST         36  140 x 15: logger_set/logger_setting_file_list.csv
  VX63_SET_FILE_JSAT3A_ANTENNA      37  16 x 16: ch_set/channel_setting_file_jsat3a_antenna_27mhz.csv
  VX63_SET_FILE_JSAT4B_ANTENNA      38  16 x 16: ch_set/channel_setting_file_jsat4b_antenna_27mhz.csv
  VX63_SET_FILE_FM_DEF              39  12 x 12: ch_set/channel_setting_file_fm_def.csv
  VX63_SET_FILE_CATV_UP_STREAM_DEF  40  12 x 12: ch_set/channel_setting_file_catv_up_stream_def.csv
  VX63_SET_FILE_BS_CS               41  50 x 16: ch_set/channel_setting_file_bs_cs_34.5mhz.csv
  VX63_SET_FILE_USER_SET_USB1       42  324 x 28: user_set_usb1/%s.csv
  VX63_SET_FILE_USER_LIST_USB1      43  140 x 15: user_set_usb1/user_setting_file_list.csv
  VX63_SET_FILE_USER_SET_USB2       44  324 x 28: user_set_usb2/%s.csv
  VX63_SET_FILE_USER_LIST_USB2      45  140 x 15: user_set_usb2/user_setting_file_list.csv
  VX63_SET_FILE_LOGGER_SET_USB1     46  324 x 28: logger_set_usb1/%s.csv
  VX63_SET_FILE_LOGGER_LIST_USB1    47  140 x 15: logger_set_usb1/logger_setting_file_list.csv
  VX63_SET_FILE_LOGGER_SET_USB2     48  324 x 28: logger_set_usb2/%s.csv
  VX63_SET_FILE_LOGGER_LIST_USB2    49  140 x 15: logger_set_usb2/logger_setting_file_list.csv
  VX63_SET_FILE_COUNT               50

  VX63_CONSTA_POINTS_MAX  4000  constellation points that a result record holds

  VX63_DLYPRF_SAMPLES  2048  samples of a delay profile

  VX63_KEYS  17  keys of the meter
"""

from __future__ import annotations

from collections.abc import Sequence
from ctypes import Array, c_char, c_float, c_int8, c_int16, c_int32, c_uint8, c_uint16, c_uint32
from typing import TYPE_CHECKING, Any, Final

from . import _set_files as set_files
from ._call import asked, block, checked, counted, number, record, text
from ._errors import Error
from ._record import FlexibleRecord, Record
from ._set_files import SetFile


# ---- Constants ----

VX63_OK: Final = 0  # success
VX63_ERR_COMM: Final = -1  # the exchange failed, or the service answered with an unknown result
VX63_ERR_ARG: Final = -2  # an argument is out of range or null, or the service refused a parameter
VX63_ERR_REPEAT: Final = -6  # the buzzer is sounding a repeating pattern
VX63_ERR_POWER: Final = -7  # the measurement service reports a fault of the antenna power supply
VX63_ERR_PRIORITY: Final = -8  # the buzzer is busy with a sound of higher priority

# The service processes. A client's own id is 0 to 17, as the firmware's process table gives it.
PROC_ID_PSYS: Final = 0  # system service: product data, failures, power, update, settings notices
PROC_ID_PDEV: Final = 6  # device service: device status, angle sensor, power-supply information
PROC_ID_PKEY: Final = 8  # key service: key states
PROC_ID_PBUZ: Final = 10  # buzzer service
PROC_ID_PMEAS: Final = 12  # measurement service: all measurements, standby, calibration, battery notices

# RF inputs.
VX63_INPUT_0: Final = 0
VX63_INPUT_1: Final = 1

# Antenna power supplies: the voltage selects the polarisation of an LNB, the 22 kHz tone its band.
VX63_POWER_SUPPLY_OFF: Final = 0
VX63_POWER_SUPPLY_11V: Final = 1
VX63_POWER_SUPPLY_15V: Final = 2
VX63_POWER_SUPPLY_11V_TONE: Final = 3
VX63_POWER_SUPPLY_15V_TONE: Final = 4

# Broadcast systems: usBdSys, bdSys, BDSYS, SPEC.
VX63_BDSYS_TERRESTRIAL: Final = 0  # OFDM in 6 MHz, on cable too
VX63_BDSYS_SATELLITE: Final = 1  # BS and CS, first generation
VX63_BDSYS_SATELLITE_2: Final = 2  # BS and CS, second generation
VX63_BDSYS_CATV: Final = 3  # cable: QAM in 6 MHz
VX63_BDSYS_JSAT: Final = 4  # QPSK
VX63_BDSYS_JSAT_2: Final = 5  # QPSK to 32APSK
VX63_BDSYS_SKYP: Final = 6  # cable: 256QAM
VX63_BDSYS_CATV_2: Final = 9  # cable: a variant of VX63_BDSYS_CATV
VX63_BDSYS_LEVEL: Final = 10  # any carrier: its level alone, without lock

# Modulations, a bit each: usMod takes one or several, or VX63_MOD_ANY; MOD gives one.
VX63_MOD_ANY: Final = 0
VX63_MOD_OFDM: Final = 1
VX63_MOD_BPSK: Final = 2
VX63_MOD_QPSK: Final = 8
VX63_MOD_8PSK_SATELLITE: Final = 16  # of VX63_BDSYS_SATELLITE
VX63_MOD_8PSK: Final = 32  # of all others
VX63_MOD_16APSK: Final = 64
VX63_MOD_32APSK: Final = 128
VX63_MOD_64QAM: Final = 1024
VX63_MOD_256QAM: Final = 4096
VX63_MOD_NONE: Final = 8192  # a carrier without modulation

# Guard intervals of an OFDM signal, as a part of its useful symbol: GI.
VX63_GI_1_32: Final = 0
VX63_GI_1_16: Final = 1
VX63_GI_1_8: Final = 2
VX63_GI_1_4: Final = 3

# Bits of the stat of a measurement result.
VX63_STAT_SIGNAL: Final = 1  # the carrier-to-noise ratio is 0 dB or more
VX63_STAT_LOCKED: Final = 2  # as lock says
VX63_STAT_BITS: Final = 4  # bits were counted: BER_TOTAL is not 0
VX63_STAT_POWER_SUPPLY: Final = 8  # the antenna power supply is on
VX63_STAT_MEASURED: Final = 16  # of a list of channels: this one has been measured

# Bits of the measurement service's ulMeasStat: what it is at.
VX63_MEAS_SINGLE: Final = 1  # a single measurement runs
VX63_MEAS_LOCKED: Final = 2  # it, or the delay profile, has locked
VX63_MEAS_MULTI: Final = 4  # a multi-channel measurement runs
VX63_MEAS_SCAN: Final = 8  # a scan runs and is not over
VX63_MEAS_DLYPRF: Final = 16  # a delay profile is measured
VX63_MEAS_CONSTA: Final = 32  # constellation points are collected
VX63_MEAS_OPT: Final = 64  # the optical power is measured
VX63_MEAS_DC: Final = 128  # the DC voltage is measured

# Bits of the measurement service's usInputStat.
VX63_INPUT_STAT_1: Final = 1  # VX63_INPUT_1 is selected
VX63_INPUT_STAT_SUPPLY: Final = 2  # the antenna power supply is on,
VX63_INPUT_STAT_15V: Final = 4  # at 15 V,
VX63_INPUT_STAT_TONE: Final = 8  # with the tone,
VX63_INPUT_STAT_SUPPLY_FAULT: Final = 16  # reports a fault
VX63_INPUT_STAT_MIXED_BANDS: Final = 32  # feeds lists of mixed bands

# State of a delay profile: its stat.
VX63_DLYPRF_NONE: Final = 0  # there is nothing to lock to
VX63_DLYPRF_MEASURING: Final = 1  # read again later
VX63_DLYPRF_COMPLETE: Final = 2

# The settings files, all under /usr/local/bin/: records x bytes of a record, then the file. The %s of a
# setting set stands for the set's name. For sets and lists the records are the most that they hold.
VX63_SET_FILE_POWOFF: Final = 0  # 1 x 7: sys_set/system_setting_file_powoff.csv
VX63_SET_FILE_VOLUME: Final = 1  # 1 x 5: sys_set/system_setting_file_volume.csv
VX63_SET_FILE_BRIGHTNESS: Final = 2  # 1 x 4: sys_set/system_setting_file_brightness.csv
VX63_SET_FILE_LOCAL_FREQ: Final = 3  # 12 x 28: meas_set/measrement_setting_file_local_freq.csv
VX63_SET_FILE_THRD: Final = 4  # 24 x 88: meas_set/measrement_setting_file_thrd.csv
VX63_SET_FILE_CNRMER: Final = 5  # 15 x 3: meas_set/measrement_setting_file_cnrmer.csv
VX63_SET_FILE_CATV_FREQ: Final = 6  # 4 x 28: meas_set/measrement_setting_file_catv_freq.csv
VX63_SET_FILE_CABLE_LOSS: Final = 7  # 4 x 8: meas_set/measrement_setting_file_cable_loss.csv
VX63_SET_FILE_CABLE_LOSS_ENB: Final = 8  # 1 x 1: meas_set/measrement_setting_file_cable_loss_enb.csv
VX63_SET_FILE_INPUT: Final = 9  # 1 x 3: meas_set/measrement_setting_file_input.csv
VX63_SET_FILE_CATV_MOD: Final = 10  # 1 x 12: meas_set/measrement_setting_file_catv_mod.csv
VX63_SET_FILE_DC_OUT: Final = 11  # 3 x 10: meas_set/measrement_setting_file_dc_out.csv
VX63_SET_FILE_OPT_MEAS: Final = 12  # 1 x 12: meas_set/measrement_setting_file_opt_meas.csv
VX63_SET_FILE_CONSTA_NUM: Final = 13  # 1 x 16: meas_set/measrement_setting_file_consta_num.csv
VX63_SET_FILE_USER_SET: Final = 14  # 324 x 28: user_set/%s.csv
VX63_SET_FILE_USER_LIST: Final = 15  # 140 x 15: user_set/user_setting_file_list.csv
VX63_SET_FILE_UHF: Final = 16  # 40 x 12: ch_set/channel_setting_file_uhf_6mhz.csv
VX63_SET_FILE_BS: Final = 17  # 24 x 16: ch_set/channel_setting_file_bs_34.5mhz.csv
VX63_SET_FILE_CS: Final = 18  # 26 x 16: ch_set/channel_setting_file_cs_34.5mhz.csv
VX63_SET_FILE_SCCB: Final = 19  # 23 x 16: ch_set/channel_setting_file_sccb_27mhz.csv
VX63_SET_FILE_SCCC: Final = 20  # 24 x 16: ch_set/channel_setting_file_sccc_27mhz.csv
VX63_SET_FILE_JSAT3A: Final = 21  # 28 x 16: ch_set/channel_setting_file_jsat3a_27mhz.csv
VX63_SET_FILE_JSAT4B: Final = 22  # 32 x 16: ch_set/channel_setting_file_jsat4b_27mhz.csv
VX63_SET_FILE_CATV_ALL: Final = 23  # 150 x 16: ch_set/channel_setting_file_catv_all_6mhz.csv
VX63_SET_FILE_CATV_90_470MHZ: Final = 24  # 62 x 16: ch_set/channel_setting_file_catv_90_470mhz_6mhz.csv
VX63_SET_FILE_CATV_470_1002MHZ: Final = 25  # 88 x 16: ch_set/channel_setting_file_catv_470_1002mhz_6mhz.csv
VX63_SET_FILE_SKYP: Final = 26  # 113 x 12: ch_set/channel_setting_file_skyp_6mhz.csv
VX63_SET_FILE_PILOT: Final = 27  # 20 x 12: ch_set/channel_setting_file_pilot.csv
VX63_SET_FILE_LTE: Final = 28  # 6 x 16: ch_set/channel_setting_file_lte.csv
VX63_SET_FILE_FM: Final = 29  # 251 x 12: ch_set/channel_setting_file_fm.csv
VX63_SET_FILE_MANU_BDSYS_MOD: Final = 30  # 23 x 8: meas_set/measrement_setting_file_manu_bdsys_mod.csv
VX63_SET_FILE_BDSYS_CONV: Final = 31  # 28 x 6: meas_set/measrement_setting_file_bdsys_conv.csv
VX63_SET_FILE_CATV_BDSYS_CONV: Final = 32  # 5 x 8: meas_set/measrement_setting_file_catv_bdsys_conv.csv
VX63_SET_FILE_CATV_UP_STREAM: Final = 33  # 1001 x 12: ch_set/channel_setting_file_catv_up_stream.csv
VX63_SET_FILE_PMEAS_MNG: Final = 34  # 48 x 68: pmeas_set/pmeas_setting_file_pmeas_mng.csv
VX63_SET_FILE_LOGGER_SET: Final = 35  # 324 x 28: logger_set/%s.csv
VX63_SET_FILE_LOGGER_LIST: Final = 36  # 140 x 15: logger_set/logger_setting_file_list.csv
VX63_SET_FILE_JSAT3A_ANTENNA: Final = 37  # 16 x 16: ch_set/channel_setting_file_jsat3a_antenna_27mhz.csv
VX63_SET_FILE_JSAT4B_ANTENNA: Final = 38  # 16 x 16: ch_set/channel_setting_file_jsat4b_antenna_27mhz.csv
VX63_SET_FILE_FM_DEF: Final = 39  # 12 x 12: ch_set/channel_setting_file_fm_def.csv
VX63_SET_FILE_CATV_UP_STREAM_DEF: Final = 40  # 12 x 12: ch_set/channel_setting_file_catv_up_stream_def.csv
VX63_SET_FILE_BS_CS: Final = 41  # 50 x 16: ch_set/channel_setting_file_bs_cs_34.5mhz.csv
VX63_SET_FILE_USER_SET_USB1: Final = 42  # 324 x 28: user_set_usb1/%s.csv
VX63_SET_FILE_USER_LIST_USB1: Final = 43  # 140 x 15: user_set_usb1/user_setting_file_list.csv
VX63_SET_FILE_USER_SET_USB2: Final = 44  # 324 x 28: user_set_usb2/%s.csv
VX63_SET_FILE_USER_LIST_USB2: Final = 45  # 140 x 15: user_set_usb2/user_setting_file_list.csv
VX63_SET_FILE_LOGGER_SET_USB1: Final = 46  # 324 x 28: logger_set_usb1/%s.csv
VX63_SET_FILE_LOGGER_LIST_USB1: Final = 47  # 140 x 15: logger_set_usb1/logger_setting_file_list.csv
VX63_SET_FILE_LOGGER_SET_USB2: Final = 48  # 324 x 28: logger_set_usb2/%s.csv
VX63_SET_FILE_LOGGER_LIST_USB2: Final = 49  # 140 x 15: logger_set_usb2/logger_setting_file_list.csv
VX63_SET_FILE_COUNT: Final = 50

VX63_CONSTA_POINTS_MAX: Final = 4000  # constellation points that a result record holds

VX63_DLYPRF_SAMPLES: Final = 2048  # samples of a delay profile

VX63_KEYS: Final = 17  # keys of the meter


# ---- Result codes ----


class CommError(Error):
    """The exchange failed, or the service answered with an unknown result."""
    name = "VX63_ERR_COMM"
    code = VX63_ERR_COMM


class ArgError(Error):
    """An argument is out of range or null, or the service refused a parameter."""
    name = "VX63_ERR_ARG"
    code = VX63_ERR_ARG


class RepeatError(Error):
    """The buzzer is sounding a repeating pattern."""
    name = "VX63_ERR_REPEAT"
    code = VX63_ERR_REPEAT


class PowerError(Error):
    """The measurement service reports a fault of the antenna power supply."""
    name = "VX63_ERR_POWER"
    code = VX63_ERR_POWER


class PriorityError(Error):
    """The buzzer is busy with a sound of higher priority."""
    name = "VX63_ERR_PRIORITY"
    code = VX63_ERR_PRIORITY


# ---- Records ----


class MeasCondition(Record):
    """What to measure: passed to every measurement start. Only powerSupply is interpreted by the library.

    Fields:
      ulFreq       kHz: centre frequency of the channel, before a converter
      ulLoFreq     kHz: local-oscillator frequency of the converter; 0 or 4294967295: none. The tuner receives
                   ulFreq - ulLoFreq, 10000 to 3224000 kHz
      usBdSys      VX63_BDSYS_*: broadcast system
      usBand       band: 0 none, 1 UHF, 2 BS, 3 CS, 4 JSAT 3A, 5 JSAT 4B, 6 SCC-B, 7 SCC-C, 8 to 10 cable, 11
                   pilot, 12 skyp, 13 LTE, 14 FM, 15 up-stream. A list with more than one feeds no LNB unless
                   vx63_setPowerSupplyMultiMeasMixBand() was asked to
      usMod        VX63_MOD_*, one or several: modulations to lock to
      usCondition  condition bits: come back as mesCond
      ucStrChan    channel name: exactly 8 bytes, not necessarily NUL-terminated
      ucOutputEnb  output enable
      powerSupply  VX63_POWER_SUPPLY_*; any other value is taken as VX63_POWER_SUPPLY_OFF
    """
    ulFreq: int
    ulLoFreq: int
    usBdSys: int
    usBand: int
    usMod: int
    usCondition: int
    ucStrChan: bytes
    ucOutputEnb: int
    powerSupply: int

    _fields_ = [
        ("ulFreq", c_uint32),
        ("ulLoFreq", c_uint32),
        ("usBdSys", c_uint16),
        ("usBand", c_uint16),
        ("usMod", c_uint16),
        ("usCondition", c_uint16),
        ("ucStrChan", c_char * 8),
        ("ucOutputEnb", c_uint8),
        ("powerSupply", c_int32),
    ]


class MeasStatus(Record):
    """State of the measurement service.

    Fields:
      ulMeasStat   VX63_MEAS_*, bits
      usInputStat  VX63_INPUT_STAT_*, bits
    """
    ulMeasStat: int
    usInputStat: int

    _fields_ = [
        ("ulMeasStat", c_uint32),
        ("usInputStat", c_uint16),
    ]


class PowerSupplyInfo(Record):
    """Readings of the antenna power supply.

    Fields:
      ucPowerSupply  VX63_POWER_SUPPLY_*: the one asked for
      ucVolt         V at the connector: 0, 11 or 15; 0 in a fault as well
      usAdVal        reading of the A/D converter, 0 to 1023: 20 V at full scale
      ulCurrentM     mA
      ulElecPowerM   mW: ucVolt times ulCurrentM
    """
    ucPowerSupply: int
    ucVolt: int
    usAdVal: int
    ulCurrentM: int
    ulElecPowerM: int

    _fields_ = [
        ("ucPowerSupply", c_uint8),
        ("ucVolt", c_uint8),
        ("usAdVal", c_uint16),
        ("ulCurrentM", c_uint32),
        ("ulElecPowerM", c_uint32),
    ]


class ConstaPoint(Record):
    """One constellation point; the ideal points have a root mean square amplitude of 64. (A C program that also
    includes <complex.h> must undefine its macro I.)

    Fields:
      I  in phase
      Q  in quadrature
    """
    I: int
    Q: int

    _fields_ = [
        ("I", c_int8),
        ("Q", c_int8),
    ]


class SingleMeasResult(Record):
    """Result of a single measurement.

    Fields:
      lock       1: locked. Without lock the fields from BER_TOTAL to MOD are 0
      stat       VX63_STAT_*, bits
      mesCond    usCondition of the start
      reserved   never written by the library
      bdSys      VX63_BDSYS_*: of the signal when locked, else the one asked for
      LEVEL      0.1 dBuV: level; 0 for 0 dBuV and less
      CNR        0.1 dB: carrier-to-noise ratio; 0 for 0 dB and less
      BER_TOTAL  bits counted since the last result, or since the lock
      BER_ERR    erroneous bits among them, before error correction
      TSID       transport-stream id
      GI         VX63_GI_*: guard interval
      LAYER      hierarchical layers, bits: 1 A, 2 B, 4 C
      MOD        VX63_MOD_*: modulation
      CONS_NUM   constellation points; left as it is by a plain result read
      points     left as they are by a plain result read
    """
    lock: int
    stat: int
    mesCond: int
    reserved: int
    bdSys: int
    LEVEL: int
    CNR: int
    BER_TOTAL: int
    BER_ERR: int
    TSID: int
    GI: int
    LAYER: int
    MOD: int
    CONS_NUM: int
    points: Array[ConstaPoint]

    _fields_ = [
        ("lock", c_uint8),
        ("stat", c_uint16),
        ("mesCond", c_uint16),
        ("reserved", c_uint16),
        ("bdSys", c_uint16),
        ("LEVEL", c_uint32),
        ("CNR", c_uint32),
        ("BER_TOTAL", c_uint32),
        ("BER_ERR", c_uint32),
        ("TSID", c_uint16),
        ("GI", c_uint8),
        ("LAYER", c_uint8),
        ("MOD", c_uint32),
        ("CONS_NUM", c_uint16),
        ("points", ConstaPoint * 4000),
    ]


class SetChannel(Record):
    """One channel of a setting set: a record of the files VX63_SET_FILE_USER_SET*, VX63_SET_FILE_LOGGER_SET*.

    Fields:
      NO           number of the record
      ENBFLG       1: enabled, 0: not
      BAND         band: as usBand of MeasCondition
      SPEC         VX63_BDSYS_*: broadcast system
      CH           channel name, NUL-terminated: at most 7 characters
      CENTER_FREQ  kHz: centre frequency as broadcast, 10000 to 22000000; 0: empty place
      MOD          VX63_MOD_*, one or several
      LOCAL_FREQ   kHz: local-oscillator frequency, 1 to 22000000; 0 or 4294967295: none
      GETDATA_FLG  flag: get data
      DC_OUT       DC output
    """
    NO: int
    ENBFLG: int
    BAND: int
    SPEC: int
    CH: bytes
    CENTER_FREQ: int
    MOD: int
    LOCAL_FREQ: int
    GETDATA_FLG: int
    DC_OUT: int

    _fields_ = [
        ("NO", c_uint8),
        ("ENBFLG", c_uint8),
        ("BAND", c_uint8),
        ("SPEC", c_uint8),
        ("CH", c_char * 8),
        ("CENTER_FREQ", c_uint32),
        ("MOD", c_uint32),
        ("LOCAL_FREQ", c_uint32),
        ("GETDATA_FLG", c_uint8),
        ("DC_OUT", c_uint8),
    ]


class SetListEntry(Record):
    """One entry of a list of setting sets: a record of the files VX63_SET_FILE_USER_LIST*, _LOGGER_LIST*.

    Fields:
      NO         number of the record, 1 to 140
      ENBFLG     1: names an existing set, 0: free
      FILE_NAME  the set's name, without folder and ".csv", NUL-terminated: at most 12 characters
    """
    NO: int
    ENBFLG: int
    FILE_NAME: bytes

    _fields_ = [
        ("NO", c_uint8),
        ("ENBFLG", c_uint8),
        ("FILE_NAME", c_char * 13),
    ]


class DlyPrfResult(Record):
    """A delay profile.

    Fields:
      stat          VX63_DLYPRF_COMPLETE, _MEASURING; any other: no data
      ucDlyPrfData  0.5 dB against the main path, -128 for -64 dB and less; sample n has a delay of (n - 512)
                    * 0.1640625 us
    """
    stat: int
    ucDlyPrfData: Array[c_int8]

    _fields_ = [
        ("stat", c_uint16),
        ("ucDlyPrfData", c_int8 * 2048),
    ]


class MultiMeasReg(FlexibleRecord):
    """Channels to measure or to scan: one block of sizeof(MultiMeasReg) + sRegNum * sizeof(MeasCondition) bytes.
    The array is C99's flexible one, which C++ compilers know as well.

    Fields:
      sRegNum  number of channels that follow, 1 to 256; 0 is sent, and the service refuses it
      single   the channels; the index of a channel here is its index in a result read
    """
    sRegNum: int
    single: Array[MeasCondition]

    _fields_ = [
        ("sRegNum", c_int16),
        ("_single", MeasCondition * 0),
    ]
    _flexible_ = ("sRegNum", "single", MeasCondition)


class MultiMeasResult(Record):
    """Result of one channel of a multi-channel measurement or a scan.

    Fields:
      lock       1: locked. Without lock the fields from BER_TOTAL to MOD are 0
      stat       VX63_STAT_*, bits; 0 until the channel has been measured
      mesCond    usCondition of the start
      readIdx    index of the channel whose result this is
      currIdx    index of the channel that is being measured now
      bdSys      VX63_BDSYS_*: of the signal when locked, else the one asked for
      LEVEL      0.1 dBuV: level; 0 for 0 dBuV and less
      CNR        0.1 dB: carrier-to-noise ratio; 0 for 0 dB and less
      BER_TOTAL  bits counted since the last result, or since the lock
      BER_ERR    erroneous bits among them, before error correction
      TSID       transport-stream id
      GI         VX63_GI_*: guard interval
      LAYER      hierarchical layers, bits: 1 A, 2 B, 4 C
      MOD        VX63_MOD_*: modulation
    """
    lock: int
    stat: int
    mesCond: int
    readIdx: int
    currIdx: int
    bdSys: int
    LEVEL: int
    CNR: int
    BER_TOTAL: int
    BER_ERR: int
    TSID: int
    GI: int
    LAYER: int
    MOD: int

    _fields_ = [
        ("lock", c_uint8),
        ("stat", c_uint16),
        ("mesCond", c_uint16),
        ("readIdx", c_uint8),
        ("currIdx", c_uint8),
        ("bdSys", c_uint16),
        ("LEVEL", c_uint32),
        ("CNR", c_uint32),
        ("BER_TOTAL", c_uint32),
        ("BER_ERR", c_uint32),
        ("TSID", c_uint16),
        ("GI", c_uint8),
        ("LAYER", c_uint8),
        ("MOD", c_uint32),
    ]


class AnglePoint(Record):
    """A point of the angle sensor's calibration: microtesla.

    Fields:
      x, y, z  microtesla
    """
    x: float
    y: float
    z: float

    _fields_ = [
        ("x", c_float),
        ("y", c_float),
        ("z", c_float),
    ]


class AngleCalStat(Record):
    """Progress of the angle sensor's calibration.

    Fields:
      lStatus                                   0 never calibrated; 1, 2, 3 in that turn; 4 finished
      centerPoint1, centerPoint2, centerPoint3  of the first, the second and the third turn; 0 until that turn
                                                is over
    """
    lStatus: int
    centerPoint1: AnglePoint
    centerPoint2: AnglePoint
    centerPoint3: AnglePoint

    _fields_ = [
        ("lStatus", c_int32),
        ("centerPoint1", AnglePoint),
        ("centerPoint2", AnglePoint),
        ("centerPoint3", AnglePoint),
    ]


class AngleCalInfoDetail(Record):
    """Live values of the angle sensor. Axes as in aeronautics: x forward, y to the right, z down.

    Fields:
      flRoll                     degrees, about x: -180 to 180, positive with the right side down
      flPitch                    degrees, about y: -90 to 90, positive with the front up
      flAx, flAy, flAz           g: acceleration, raw
      flMx, flMy, flMz           microtesla: magnetic field, raw
      flAxRot, flAyRot, flAzRot  g: acceleration, seen from level axes
      flMxRot, flMyRot, flMzRot  microtesla: magnetic field, seen from level axes; after a calibration less
                                 the mean of its centre points: then atan2(-flMyRot, flMxRot) is the heading
    """
    flRoll: float
    flPitch: float
    flAx: float
    flAy: float
    flAz: float
    flMx: float
    flMy: float
    flMz: float
    flAxRot: float
    flAyRot: float
    flAzRot: float
    flMxRot: float
    flMyRot: float
    flMzRot: float

    _fields_ = [
        ("flRoll", c_float),
        ("flPitch", c_float),
        ("flAx", c_float),
        ("flAy", c_float),
        ("flAz", c_float),
        ("flMx", c_float),
        ("flMy", c_float),
        ("flMz", c_float),
        ("flAxRot", c_float),
        ("flAyRot", c_float),
        ("flAzRot", c_float),
        ("flMxRot", c_float),
        ("flMyRot", c_float),
        ("flMzRot", c_float),
    ]


class MeasSetManuBdsysMod(Record):
    """One row of the factory table of manual broadcast systems and modulations.

    Fields:
      BDSYS  VX63_BDSYS_*
      MOD    VX63_MOD_*, one or several
    """
    BDSYS: int
    MOD: int

    _fields_ = [
        ("BDSYS", c_uint16),
        ("MOD", c_uint32),
    ]


class ProductInfo(Record):
    """Product data. Texts are NUL-padded; one that fills its field has NO terminator.

    Fields:
      cModelCode   model code
      cOptInfo     option information
      cSerialNo    serial number
      cBootPrgVer  boot program version
      cMainPrgVer  main program version
      cSubPrgVer   sub program version
      cQtVer       Qt version
      cProductVer  product version
    """
    cModelCode: bytes
    cOptInfo: bytes
    cSerialNo: bytes
    cBootPrgVer: bytes
    cMainPrgVer: bytes
    cSubPrgVer: bytes
    cQtVer: bytes
    cProductVer: bytes

    _fields_ = [
        ("cModelCode", c_char * 8),
        ("cOptInfo", c_char * 5),
        ("cSerialNo", c_char * 12),
        ("cBootPrgVer", c_char * 16),
        ("cMainPrgVer", c_char * 16),
        ("cSubPrgVer", c_char * 16),
        ("cQtVer", c_char * 16),
        ("cProductVer", c_char * 16),
    ]


class FailInfo(Record):
    """The current failure. What the codes mean is decided by the system service.

    Fields:
      usCode      failure code
      ucStat      1: the failure is present, 0: it is not
      ucCtl       control
      usWait      wait; the log shows it as a signed number
      ucReserved  0
      ucAddInfo   additional information
    """
    usCode: int
    ucStat: int
    ucCtl: int
    usWait: int
    ucReserved: Array[c_uint8]
    ucAddInfo: Array[c_uint8]

    _fields_ = [
        ("usCode", c_uint16),
        ("ucStat", c_uint8),
        ("ucCtl", c_uint8),
        ("usWait", c_uint16),
        ("ucReserved", c_uint8 * 2),
        ("ucAddInfo", c_uint8 * 32),
    ]


class KeyStatus(Record):
    """Key states.

    Fields:
      stat  of each key: 1 pressed, 0 not
    """
    stat: Array[c_int32]

    _fields_ = [
        ("stat", c_int32 * 17),
    ]


class DeviceStatus(Record):
    """Device status. Each field is named by the place of its value in the service's report; they do not stand in
    that order.

    Fields:
      usStat0  bits: 0x01 a memory is in USB slot 1, 0x02 in slot 2
      ucStat2  %: charge of the battery, 0 to 100
      ucStat6  degrees Celsius: temperature inside, 0 to 100
      ulStat3  fed by: 0 the battery, 1 from outside
      ulStat4  charger: 0 off, 1 charging, 2 the battery is full
      ulStat5  battery: 0 good, 1 low
      usStat8  mV: voltage of the battery
    """
    usStat0: int
    ucStat2: int
    ucStat6: int
    ulStat3: int
    ulStat4: int
    ulStat5: int
    usStat8: int

    _fields_ = [
        ("usStat0", c_uint16),
        ("ucStat2", c_uint8),
        ("ucStat6", c_uint8),
        ("ulStat3", c_uint32),
        ("ulStat4", c_uint32),
        ("ulStat5", c_uint32),
        ("usStat8", c_uint16),
    ]


# ---- Settings files ----


class SetFilePowoff(Record):
    """A record of the file VX63_SET_FILE_POWOFF.

    Fields:
      POWER_OFF_SEL1  selection 1 of the power-off menu
      POWER_OFF_SEL2  selection 2 of the power-off menu
      POWER_OFF_SEL3  selection 3 of the power-off menu
      POWER_OFF_SEL4  selection 4 of the power-off menu
      POWER_OFF_SEL5  selection 5 of the power-off menu
      POWER_OFF_SEL6  selection 6 of the power-off menu
      POWER_OFF       power-off: what is selected
    """
    POWER_OFF_SEL1: int
    POWER_OFF_SEL2: int
    POWER_OFF_SEL3: int
    POWER_OFF_SEL4: int
    POWER_OFF_SEL5: int
    POWER_OFF_SEL6: int
    POWER_OFF: int

    _fields_ = [
        ("POWER_OFF_SEL1", c_uint8),
        ("POWER_OFF_SEL2", c_uint8),
        ("POWER_OFF_SEL3", c_uint8),
        ("POWER_OFF_SEL4", c_uint8),
        ("POWER_OFF_SEL5", c_uint8),
        ("POWER_OFF_SEL6", c_uint8),
        ("POWER_OFF", c_uint8),
    ]


class SetFileVolume(Record):
    """A record of the file VX63_SET_FILE_VOLUME.

    Fields:
      VOLUME_SEL1  selection 1 of the volume menu; 0 to 3
      VOLUME_SEL2  selection 2 of the volume menu; 0 to 3
      VOLUME_SEL3  selection 3 of the volume menu; 0 to 3
      VOLUME_SEL4  selection 4 of the volume menu; 0 to 3
      VOLUME       volume of the buzzer: 0 silent to 3 loudest; 0 to 3
    """
    VOLUME_SEL1: int
    VOLUME_SEL2: int
    VOLUME_SEL3: int
    VOLUME_SEL4: int
    VOLUME: int

    _fields_ = [
        ("VOLUME_SEL1", c_uint8),
        ("VOLUME_SEL2", c_uint8),
        ("VOLUME_SEL3", c_uint8),
        ("VOLUME_SEL4", c_uint8),
        ("VOLUME", c_uint8),
    ]


class SetFileBrightness(Record):
    """A record of the file VX63_SET_FILE_BRIGHTNESS.

    Fields:
      BRIGHTNESS_SEL1  selection 1 of the brightness menu; 1 = dark, 2 = middle, 3 = bright
      BRIGHTNESS_SEL2  selection 2 of the brightness menu; 1 = dark, 2 = middle, 3 = bright
      BRIGHTNESS_SEL3  selection 3 of the brightness menu; 1 = dark, 2 = middle, 3 = bright
      BRIGHTNESS       brightness of the display; 1 = dark, 2 = middle, 3 = bright
    """
    BRIGHTNESS_SEL1: int
    BRIGHTNESS_SEL2: int
    BRIGHTNESS_SEL3: int
    BRIGHTNESS: int

    _fields_ = [
        ("BRIGHTNESS_SEL1", c_uint8),
        ("BRIGHTNESS_SEL2", c_uint8),
        ("BRIGHTNESS_SEL3", c_uint8),
        ("BRIGHTNESS", c_uint8),
    ]


class SetFileLocalFreq(Record):
    """A record of the file VX63_SET_FILE_LOCAL_FREQ.

    Fields:
      BAND         band; 0 = none, 1 = UHF, 2 = BS, 3 = CS, 4 = JSAT 3A, 5 = JSAT 4B, 6 = SCC-B, 7 = SCC-C, 8
                   = cable, 9 = cable, 10 = cable, 11 = pilot, 12 = skyp, 13 = LTE, 14 = FM, 15 = up-stream
      WAVE         polarisation group; 0 = right-hand circular, 1 = left-hand circular, 2 = horizontal, 3 =
                   vertical
      LOCAL_FREQ1  kHz: local oscillator, place 1: that of channel plans; 1 to 22000000, 0 = none, 4294967295
                   = none
      LOCAL_FREQ2  kHz: local oscillator, place 2; 1 to 22000000, 0 = none, 4294967295 = none
      LOCAL_FREQ3  kHz: local oscillator, place 3; 1 to 22000000, 0 = none, 4294967295 = none
      LOCAL_FREQ4  kHz: local oscillator, place 4; 1 to 22000000, 0 = none, 4294967295 = none
      LOCAL_FREQ5  kHz: local oscillator, place 5; 1 to 22000000, 0 = none, 4294967295 = none
      LOCAL_FREQ6  kHz: local oscillator, place 6; 1 to 22000000, 0 = none, 4294967295 = none
    """
    BAND: int
    WAVE: int
    LOCAL_FREQ1: int
    LOCAL_FREQ2: int
    LOCAL_FREQ3: int
    LOCAL_FREQ4: int
    LOCAL_FREQ5: int
    LOCAL_FREQ6: int

    _fields_ = [
        ("BAND", c_uint8),
        ("WAVE", c_uint8),
        ("LOCAL_FREQ1", c_uint32),
        ("LOCAL_FREQ2", c_uint32),
        ("LOCAL_FREQ3", c_uint32),
        ("LOCAL_FREQ4", c_uint32),
        ("LOCAL_FREQ5", c_uint32),
        ("LOCAL_FREQ6", c_uint32),
    ]


class SetFileThrd(Record):
    """A record of the file VX63_SET_FILE_THRD.

    Fields:
      BAND          band; 0 = none, 1 = UHF, 2 = BS, 3 = CS, 4 = JSAT 3A, 5 = JSAT 4B, 6 = SCC-B, 7 = SCC-C, 8
                    = cable, 9 = cable, 10 = cable, 11 = pilot, 12 = skyp, 13 = LTE, 14 = FM, 15 = up-stream
      SPEC          broadcast system; 0 = terrestrial, 1 = satellite, 2 = satellite-2, 3 = catv, 4 = jsat, 5 =
                    jsat-2, 6 = skyp, 9 = catv-2, 10 = level
      MODULATION    modulations; sum of 0 = any, 1 = OFDM, 2 = BPSK, 8 = QPSK, 16 = 8PSK (satellite), 32 =
                    8PSK (others), 64 = 16APSK, 128 = 32APSK, 1024 = 64QAM, 4096 = 256QAM, 8192 = none
      LV_MIN        0.1 dBuV: level: lower end of the scale; -200 to 1300
      LV_LOW        0.1 dBuV: level: lowest that passes; -200 to 1300
      LV_HIGH       0.1 dBuV: level: highest that passes; -200 to 1300
      LV_MAX        0.1 dBuV: level: upper end of the scale; -200 to 1300
      MER_MIN       0.1 dB: modulation error ratio: lower end of the scale; 0 to 600
      MER_LOW       0.1 dB: modulation error ratio: low edge of what is wanted; 0 to 600
      MER_HIGH      0.1 dB: modulation error ratio: high edge of what is wanted; 0 to 600
      MER_MAX       0.1 dB: modulation error ratio: upper end of the scale; 0 to 600
      BER_MIN_MAN   0.01: bit error rate, worst end of the scale: mantissa
      BER_MIN_EXP   bit error rate, worst end of the scale: power of ten; -99 to 0
      BER_LOW_MAN   0.01: bit error rate, highest that does not fail: mantissa
      BER_LOW_EXP   bit error rate, highest that does not fail: power of ten; -99 to 0
      BER_HIGH_MAN  0.01: bit error rate, highest that passes: mantissa
      BER_HIGH_EXP  bit error rate, highest that passes: power of ten; -99 to 0
      BER_MAX_MAN   0.01: bit error rate, best end of the scale: mantissa
      BER_MAX_EXP   bit error rate, best end of the scale: power of ten; -99 to 0
      CN_MIN        0.1 dB: carrier-to-noise ratio: lower end of the scale; 0 to 600
      CN_LOW        0.1 dB: carrier-to-noise ratio: lowest that does not fail; 0 to 600
      CN_HIGH       0.1 dB: carrier-to-noise ratio: lowest that passes; 0 to 600
      CN_MAX        0.1 dB: carrier-to-noise ratio: upper end of the scale; 0 to 600
    """
    BAND: int
    SPEC: int
    MODULATION: int
    LV_MIN: int
    LV_LOW: int
    LV_HIGH: int
    LV_MAX: int
    MER_MIN: int
    MER_LOW: int
    MER_HIGH: int
    MER_MAX: int
    BER_MIN_MAN: int
    BER_MIN_EXP: int
    BER_LOW_MAN: int
    BER_LOW_EXP: int
    BER_HIGH_MAN: int
    BER_HIGH_EXP: int
    BER_MAX_MAN: int
    BER_MAX_EXP: int
    CN_MIN: int
    CN_LOW: int
    CN_HIGH: int
    CN_MAX: int

    _fields_ = [
        ("BAND", c_uint8),
        ("SPEC", c_uint8),
        ("MODULATION", c_uint32),
        ("LV_MIN", c_int32),
        ("LV_LOW", c_int32),
        ("LV_HIGH", c_int32),
        ("LV_MAX", c_int32),
        ("MER_MIN", c_uint32),
        ("MER_LOW", c_uint32),
        ("MER_HIGH", c_uint32),
        ("MER_MAX", c_uint32),
        ("BER_MIN_MAN", c_uint32),
        ("BER_MIN_EXP", c_int32),
        ("BER_LOW_MAN", c_uint32),
        ("BER_LOW_EXP", c_int32),
        ("BER_HIGH_MAN", c_uint32),
        ("BER_HIGH_EXP", c_int32),
        ("BER_MAX_MAN", c_uint32),
        ("BER_MAX_EXP", c_int32),
        ("CN_MIN", c_uint32),
        ("CN_LOW", c_uint32),
        ("CN_HIGH", c_uint32),
        ("CN_MAX", c_uint32),
    ]


class SetFileCnrmer(Record):
    """A record of the file VX63_SET_FILE_CNRMER.

    Fields:
      CNRMER_SEL1  selection 1 of the menu: CNR or MER; 0 to 1, 255 = not used
      CNRMER_SEL2  selection 2 of the menu: CNR or MER; 0 to 1, 255 = not used
      CNRMER       CNR or MER: what is selected; 0 to 1, 255 = not used
    """
    CNRMER_SEL1: int
    CNRMER_SEL2: int
    CNRMER: int

    _fields_ = [
        ("CNRMER_SEL1", c_uint8),
        ("CNRMER_SEL2", c_uint8),
        ("CNRMER", c_uint8),
    ]


class SetFileCatvFreq(Record):
    """A record of the file VX63_SET_FILE_CATV_FREQ.

    Fields:
      SET_NO    number of the frequency set
      MOD       modulations; sum of 0 = any, 1 = OFDM, 2 = BPSK, 8 = QPSK, 16 = 8PSK (satellite), 32 = 8PSK
                (others), 64 = 16APSK, 128 = 32APSK, 1024 = 64QAM, 4096 = 256QAM, 8192 = none
      FREQ_C24  kHz: centre frequency of channel C24; 10000 to 3224000
      FREQ_C25  kHz: centre frequency of channel C25; 10000 to 3224000
      FREQ_C26  kHz: centre frequency of channel C26; 10000 to 3224000
      FREQ_C27  kHz: centre frequency of channel C27; 10000 to 3224000
      DISP      flag: displayed; 0 to 1
      USE       flag: in use; 0 to 1
    """
    SET_NO: int
    MOD: int
    FREQ_C24: int
    FREQ_C25: int
    FREQ_C26: int
    FREQ_C27: int
    DISP: int
    USE: int

    _fields_ = [
        ("SET_NO", c_uint8),
        ("MOD", c_uint32),
        ("FREQ_C24", c_uint32),
        ("FREQ_C25", c_uint32),
        ("FREQ_C26", c_uint32),
        ("FREQ_C27", c_uint32),
        ("DISP", c_uint8),
        ("USE", c_uint8),
    ]


class SetFileCableLoss(Record):
    """A record of the file VX63_SET_FILE_CABLE_LOSS.

    Fields:
      FREQ              kHz: frequency of the correction; 10000 to 3224000
      CORRECTION_VALUE  correction at that frequency
    """
    FREQ: int
    CORRECTION_VALUE: int

    _fields_ = [
        ("FREQ", c_uint32),
        ("CORRECTION_VALUE", c_uint32),
    ]


class SetFileCableLossEnb(Record):
    """A record of the file VX63_SET_FILE_CABLE_LOSS_ENB.

    Fields:
      CORRECTION_ENB  correction of the cable loss; 0 = off, 1 = on
    """
    CORRECTION_ENB: int

    _fields_ = [
        ("CORRECTION_ENB", c_uint8),
    ]


class SetFileInput(Record):
    """A record of the file VX63_SET_FILE_INPUT.

    Fields:
      INPUT_SEL1  selection 1 of the input menu; 0 to 1
      INPUT_SEL2  selection 2 of the input menu; 0 to 1
      INPUT       measurement input; 0 to 1
    """
    INPUT_SEL1: int
    INPUT_SEL2: int
    INPUT: int

    _fields_ = [
        ("INPUT_SEL1", c_uint8),
        ("INPUT_SEL2", c_uint8),
        ("INPUT", c_uint8),
    ]


class SetFileCatvMod(Record):
    """A record of the file VX63_SET_FILE_CATV_MOD.

    Fields:
      MOD_SEL1  selection 1 of the modulation menu; sum of 0 = any, 1 = OFDM, 2 = BPSK, 8 = QPSK, 16 = 8PSK
                (satellite), 32 = 8PSK (others), 64 = 16APSK, 128 = 32APSK, 1024 = 64QAM, 4096 = 256QAM, 8192
                = none
      MOD_SEL2  selection 2 of the modulation menu; sum of 0 = any, 1 = OFDM, 2 = BPSK, 8 = QPSK, 16 = 8PSK
                (satellite), 32 = 8PSK (others), 64 = 16APSK, 128 = 32APSK, 1024 = 64QAM, 4096 = 256QAM, 8192
                = none
      MOD_SEL3  selection 3 of the modulation menu; sum of 0 = any, 1 = OFDM, 2 = BPSK, 8 = QPSK, 16 = 8PSK
                (satellite), 32 = 8PSK (others), 64 = 16APSK, 128 = 32APSK, 1024 = 64QAM, 4096 = 256QAM, 8192
                = none
    """
    MOD_SEL1: int
    MOD_SEL2: int
    MOD_SEL3: int

    _fields_ = [
        ("MOD_SEL1", c_uint32),
        ("MOD_SEL2", c_uint32),
        ("MOD_SEL3", c_uint32),
    ]


class SetFileDcOut(Record):
    """A record of the file VX63_SET_FILE_DC_OUT.

    Fields:
      DC_OUT_STAT  state of the output in which the record holds; channel plans use 0
      JCSAT3_H     supply for JSAT 3A, horizontal; 0 = off, 1 = 11 V, 2 = 15 V, 3 = 11 V, tone, 4 = 15 V, tone
      JCSAT3_V     supply for JSAT 3A, vertical; 0 = off, 1 = 11 V, 2 = 15 V, 3 = 11 V, tone, 4 = 15 V, tone
      JCSAT4_H     supply for JSAT 4B, horizontal; 0 = off, 1 = 11 V, 2 = 15 V, 3 = 11 V, tone, 4 = 15 V, tone
      JCSAT4_V     supply for JSAT 4B, vertical; 0 = off, 1 = 11 V, 2 = 15 V, 3 = 11 V, tone, 4 = 15 V, tone
      SCC_B_H      supply for SCC-B, horizontal; 0 = off, 1 = 11 V, 2 = 15 V, 3 = 11 V, tone, 4 = 15 V, tone
      SCC_B_V      supply for SCC-B, vertical; 0 = off, 1 = 11 V, 2 = 15 V, 3 = 11 V, tone, 4 = 15 V, tone
      SCC_C_H      supply for SCC-C, horizontal; 0 = off, 1 = 11 V, 2 = 15 V, 3 = 11 V, tone, 4 = 15 V, tone
      SCC_C_V      supply for SCC-C, vertical; 0 = off, 1 = 11 V, 2 = 15 V, 3 = 11 V, tone, 4 = 15 V, tone
      OTHER        supply for others; 0 = off, 1 = 11 V, 2 = 15 V, 3 = 11 V, tone, 4 = 15 V, tone
    """
    DC_OUT_STAT: int
    JCSAT3_H: int
    JCSAT3_V: int
    JCSAT4_H: int
    JCSAT4_V: int
    SCC_B_H: int
    SCC_B_V: int
    SCC_C_H: int
    SCC_C_V: int
    OTHER: int

    _fields_ = [
        ("DC_OUT_STAT", c_uint8),
        ("JCSAT3_H", c_uint8),
        ("JCSAT3_V", c_uint8),
        ("JCSAT4_H", c_uint8),
        ("JCSAT4_V", c_uint8),
        ("SCC_B_H", c_uint8),
        ("SCC_B_V", c_uint8),
        ("SCC_C_H", c_uint8),
        ("SCC_C_V", c_uint8),
        ("OTHER", c_uint8),
    ]


class SetFileOptMeas(Record):
    """A record of the file VX63_SET_FILE_OPT_MEAS.

    Fields:
      OPT_MEAS_SEL1  nm: selection 1 of the wavelength menu; 800 to 1700
      OPT_MEAS_SEL2  nm: selection 2 of the wavelength menu; 800 to 1700
      OPT_MEAS_SEL3  nm: selection 3 of the wavelength menu; 800 to 1700
    """
    OPT_MEAS_SEL1: int
    OPT_MEAS_SEL2: int
    OPT_MEAS_SEL3: int

    _fields_ = [
        ("OPT_MEAS_SEL1", c_uint32),
        ("OPT_MEAS_SEL2", c_uint32),
        ("OPT_MEAS_SEL3", c_uint32),
    ]


class SetFileConstaNum(Record):
    """A record of the file VX63_SET_FILE_CONSTA_NUM.

    Fields:
      CONSTA_NUM_SEL1  points: selection 1 of the menu; 1000, 2000, 4000
      CONSTA_NUM_SEL2  points: selection 2 of the menu; 1000, 2000, 4000
      CONSTA_NUM_SEL3  points: selection 3 of the menu; 1000, 2000, 4000
      CONSTA_NUM       points: constellation points to collect; 1000, 2000, 4000
    """
    CONSTA_NUM_SEL1: int
    CONSTA_NUM_SEL2: int
    CONSTA_NUM_SEL3: int
    CONSTA_NUM: int

    _fields_ = [
        ("CONSTA_NUM_SEL1", c_uint32),
        ("CONSTA_NUM_SEL2", c_uint32),
        ("CONSTA_NUM_SEL3", c_uint32),
        ("CONSTA_NUM", c_uint32),
    ]


class SetFileUhf(Record):
    """A record of the files VX63_SET_FILE_UHF, VX63_SET_FILE_SKYP, VX63_SET_FILE_PILOT, VX63_SET_FILE_FM,
    VX63_SET_FILE_CATV_UP_STREAM, VX63_SET_FILE_FM_DEF, VX63_SET_FILE_CATV_UP_STREAM_DEF.

    Fields:
      CH_NO      name of the channel; at most 7 bytes
      CENT_FREQ  kHz: centre frequency; 10000 to 3224000, 0 = empty place
    """
    CH_NO: bytes
    CENT_FREQ: int

    _fields_ = [
        ("CH_NO", c_char * 8),
        ("CENT_FREQ", c_uint32),
    ]


class SetFileBs(Record):
    """A record of the files VX63_SET_FILE_BS, VX63_SET_FILE_CS, VX63_SET_FILE_SCCB, VX63_SET_FILE_SCCC,
    VX63_SET_FILE_JSAT3A, VX63_SET_FILE_JSAT4B, VX63_SET_FILE_JSAT3A_ANTENNA,
    VX63_SET_FILE_JSAT4B_ANTENNA, VX63_SET_FILE_BS_CS.

    Fields:
      WAVE       polarisation group; 0 = right-hand circular, 1 = left-hand circular, 2 = horizontal, 3 =
                 vertical
      CH_NO      name of the channel; at most 7 bytes
      CENT_FREQ  kHz: centre frequency as broadcast; 10000 to 22000000
    """
    WAVE: int
    CH_NO: bytes
    CENT_FREQ: int

    _fields_ = [
        ("WAVE", c_uint8),
        ("_1", c_uint8 * 3),
        ("CH_NO", c_char * 8),
        ("CENT_FREQ", c_uint32),
    ]


class SetFileCatvAll(Record):
    """A record of the files VX63_SET_FILE_CATV_ALL, VX63_SET_FILE_CATV_90_470MHZ,
    VX63_SET_FILE_CATV_470_1002MHZ.

    Fields:
      CH_NO           name of the channel; at most 7 bytes
      QAM_CENT_FREQ   kHz: centre frequency of a QAM signal; 10000 to 3224000
      OFDM_CENT_FREQ  kHz: centre frequency of an OFDM signal; 10000 to 3224000
    """
    CH_NO: bytes
    QAM_CENT_FREQ: int
    OFDM_CENT_FREQ: int

    _fields_ = [
        ("CH_NO", c_char * 8),
        ("QAM_CENT_FREQ", c_uint32),
        ("OFDM_CENT_FREQ", c_uint32),
    ]


class SetFileLte(Record):
    """A record of the file VX63_SET_FILE_LTE.

    Fields:
      CH_NO      name of the channel; at most 7 bytes
      CENT_FREQ  kHz: centre frequency; 10000 to 3224000
      BAND_WIDE  kHz: bandwidth; 1 to 100000
    """
    CH_NO: bytes
    CENT_FREQ: int
    BAND_WIDE: int

    _fields_ = [
        ("CH_NO", c_char * 8),
        ("CENT_FREQ", c_uint32),
        ("BAND_WIDE", c_uint32),
    ]


class SetFileBdsysConv(Record):
    """A record of the file VX63_SET_FILE_BDSYS_CONV.

    Fields:
      BDSYS       broadcast system; 0 = terrestrial, 1 = satellite, 2 = satellite-2, 3 = catv, 4 = jsat, 5 =
                  jsat-2, 6 = skyp, 9 = catv-2, 10 = level
      BDSYS_TUNE  its code for tuning
      BAND        band; 0 = none, 1 = UHF, 2 = BS, 3 = CS, 4 = JSAT 3A, 5 = JSAT 4B, 6 = SCC-B, 7 = SCC-C, 8 =
                  cable, 9 = cable, 10 = cable, 11 = pilot, 12 = skyp, 13 = LTE, 14 = FM, 15 = up-stream
    """
    BDSYS: int
    BDSYS_TUNE: int
    BAND: int

    _fields_ = [
        ("BDSYS", c_uint16),
        ("BDSYS_TUNE", c_uint16),
        ("BAND", c_uint8),
    ]


class SetFileCatvBdsysConv(Record):
    """A record of the file VX63_SET_FILE_CATV_BDSYS_CONV.

    Fields:
      MOD         modulations; sum of 0 = any, 1 = OFDM, 2 = BPSK, 8 = QPSK, 16 = 8PSK (satellite), 32 = 8PSK
                  (others), 64 = 16APSK, 128 = 32APSK, 1024 = 64QAM, 4096 = 256QAM, 8192 = none
      BDSYS_CATV  broadcast system; 0 = terrestrial, 1 = satellite, 2 = satellite-2, 3 = catv, 4 = jsat, 5 =
                  jsat-2, 6 = skyp, 9 = catv-2, 10 = level
      BDSYS_TUNE  its code for tuning
    """
    MOD: int
    BDSYS_CATV: int
    BDSYS_TUNE: int

    _fields_ = [
        ("MOD", c_uint32),
        ("BDSYS_CATV", c_uint16),
        ("BDSYS_TUNE", c_uint16),
    ]


class SetFilePmeasMng(Record):
    """A record of the file VX63_SET_FILE_PMEAS_MNG.

    Fields:
      NEXT_CH_SYNC          synchronisation with the next channel
      SINGLE0_ISMES         single 0: whether and how to measure
      SINGLE0_MESDATA       single 0: selection of measurement data
      SINGLE0_SAVEMETHOD    single 0: how to save
      SINGLE0_TMNOSIGNAL    single 0: time-out, no signal
      SINGLE0_TMLOCK        single 0: time-out, lock
      SINGLE0_JUDGEMESDATA  single 0: judgement of measurement data
      SINGLE0_JUDGESTATUS   single 0: judgement of the status
      SINGLE1_ISMES         single 1: whether and how to measure
      SINGLE1_MESDATA       single 1: selection of measurement data
      SINGLE1_SAVEMETHOD    single 1: how to save
      SINGLE1_TMNOSIGNAL    single 1: time-out, no signal
      SINGLE1_TMLOCK        single 1: time-out, lock
      SINGLE1_JUDGEMESDATA  single 1: judgement of measurement data
      SINGLE1_JUDGESTATUS   single 1: judgement of the status
      MULTI0_ISMES          multi 0: whether and how to measure
      MULTI0_MESDATA        multi 0: selection of measurement data
      MULTI0_SAVEMETHOD     multi 0: how to save
      MULTI0_TMNOSIGNAL     multi 0: time-out, no signal
      MULTI0_TMLOCK         multi 0: time-out, lock
      MULTI0_JUDGEMESDATA   multi 0: judgement of measurement data
      MULTI0_JUDGESTATUS    multi 0: judgement of the status
      MULTI1_ISMES          multi 1: whether and how to measure
      MULTI1_MESDATA        multi 1: selection of measurement data
      MULTI1_SAVEMETHOD     multi 1: how to save
      MULTI1_TMNOSIGNAL     multi 1: time-out, no signal
      MULTI1_TMLOCK         multi 1: time-out, lock
      MULTI1_JUDGEMESDATA   multi 1: judgement of measurement data
      MULTI1_JUDGESTATUS    multi 1: judgement of the status
    """
    NEXT_CH_SYNC: int
    SINGLE0_ISMES: int
    SINGLE0_MESDATA: int
    SINGLE0_SAVEMETHOD: int
    SINGLE0_TMNOSIGNAL: int
    SINGLE0_TMLOCK: int
    SINGLE0_JUDGEMESDATA: int
    SINGLE0_JUDGESTATUS: int
    SINGLE1_ISMES: int
    SINGLE1_MESDATA: int
    SINGLE1_SAVEMETHOD: int
    SINGLE1_TMNOSIGNAL: int
    SINGLE1_TMLOCK: int
    SINGLE1_JUDGEMESDATA: int
    SINGLE1_JUDGESTATUS: int
    MULTI0_ISMES: int
    MULTI0_MESDATA: int
    MULTI0_SAVEMETHOD: int
    MULTI0_TMNOSIGNAL: int
    MULTI0_TMLOCK: int
    MULTI0_JUDGEMESDATA: int
    MULTI0_JUDGESTATUS: int
    MULTI1_ISMES: int
    MULTI1_MESDATA: int
    MULTI1_SAVEMETHOD: int
    MULTI1_TMNOSIGNAL: int
    MULTI1_TMLOCK: int
    MULTI1_JUDGEMESDATA: int
    MULTI1_JUDGESTATUS: int

    _fields_ = [
        ("NEXT_CH_SYNC", c_int32),
        ("SINGLE0_ISMES", c_uint8),
        ("SINGLE0_MESDATA", c_uint8),
        ("SINGLE0_SAVEMETHOD", c_uint8),
        ("SINGLE0_TMNOSIGNAL", c_uint32),
        ("SINGLE0_TMLOCK", c_uint32),
        ("SINGLE0_JUDGEMESDATA", c_uint16),
        ("SINGLE0_JUDGESTATUS", c_uint16),
        ("SINGLE1_ISMES", c_uint8),
        ("SINGLE1_MESDATA", c_uint8),
        ("SINGLE1_SAVEMETHOD", c_uint8),
        ("SINGLE1_TMNOSIGNAL", c_uint32),
        ("SINGLE1_TMLOCK", c_uint32),
        ("SINGLE1_JUDGEMESDATA", c_uint16),
        ("SINGLE1_JUDGESTATUS", c_uint16),
        ("MULTI0_ISMES", c_uint8),
        ("MULTI0_MESDATA", c_uint8),
        ("MULTI0_SAVEMETHOD", c_uint8),
        ("MULTI0_TMNOSIGNAL", c_uint32),
        ("MULTI0_TMLOCK", c_uint32),
        ("MULTI0_JUDGEMESDATA", c_uint16),
        ("MULTI0_JUDGESTATUS", c_uint16),
        ("MULTI1_ISMES", c_uint8),
        ("MULTI1_MESDATA", c_uint8),
        ("MULTI1_SAVEMETHOD", c_uint8),
        ("MULTI1_TMNOSIGNAL", c_uint32),
        ("MULTI1_TMLOCK", c_uint32),
        ("MULTI1_JUDGEMESDATA", c_uint16),
        ("MULTI1_JUDGESTATUS", c_uint16),
    ]


# By file id.
SET_FILES: Final = (
    SetFile(VX63_SET_FILE_POWOFF, "/usr/local/bin/sys_set/system_setting_file_powoff.csv", SetFilePowoff, 1, True),
    SetFile(VX63_SET_FILE_VOLUME, "/usr/local/bin/sys_set/system_setting_file_volume.csv", SetFileVolume, 1, True),
    SetFile(VX63_SET_FILE_BRIGHTNESS, "/usr/local/bin/sys_set/system_setting_file_brightness.csv", SetFileBrightness, 1, True),
    SetFile(VX63_SET_FILE_LOCAL_FREQ, "/usr/local/bin/meas_set/measrement_setting_file_local_freq.csv", SetFileLocalFreq, 12, True),
    SetFile(VX63_SET_FILE_THRD, "/usr/local/bin/meas_set/measrement_setting_file_thrd.csv", SetFileThrd, 24, True),
    SetFile(VX63_SET_FILE_CNRMER, "/usr/local/bin/meas_set/measrement_setting_file_cnrmer.csv", SetFileCnrmer, 15, True),
    SetFile(VX63_SET_FILE_CATV_FREQ, "/usr/local/bin/meas_set/measrement_setting_file_catv_freq.csv", SetFileCatvFreq, 4, True),
    SetFile(VX63_SET_FILE_CABLE_LOSS, "/usr/local/bin/meas_set/measrement_setting_file_cable_loss.csv", SetFileCableLoss, 4, True),
    SetFile(VX63_SET_FILE_CABLE_LOSS_ENB, "/usr/local/bin/meas_set/measrement_setting_file_cable_loss_enb.csv", SetFileCableLossEnb, 1, True),
    SetFile(VX63_SET_FILE_INPUT, "/usr/local/bin/meas_set/measrement_setting_file_input.csv", SetFileInput, 1, True),
    SetFile(VX63_SET_FILE_CATV_MOD, "/usr/local/bin/meas_set/measrement_setting_file_catv_mod.csv", SetFileCatvMod, 1, True),
    SetFile(VX63_SET_FILE_DC_OUT, "/usr/local/bin/meas_set/measrement_setting_file_dc_out.csv", SetFileDcOut, 3, True),
    SetFile(VX63_SET_FILE_OPT_MEAS, "/usr/local/bin/meas_set/measrement_setting_file_opt_meas.csv", SetFileOptMeas, 1, True),
    SetFile(VX63_SET_FILE_CONSTA_NUM, "/usr/local/bin/meas_set/measrement_setting_file_consta_num.csv", SetFileConstaNum, 1, True),
    SetFile(VX63_SET_FILE_USER_SET, "/usr/local/bin/user_set/%s.csv", SetChannel, 324, False),
    SetFile(VX63_SET_FILE_USER_LIST, "/usr/local/bin/user_set/user_setting_file_list.csv", SetListEntry, 140, False),
    SetFile(VX63_SET_FILE_UHF, "/usr/local/bin/ch_set/channel_setting_file_uhf_6mhz.csv", SetFileUhf, 40, True),
    SetFile(VX63_SET_FILE_BS, "/usr/local/bin/ch_set/channel_setting_file_bs_34.5mhz.csv", SetFileBs, 24, True),
    SetFile(VX63_SET_FILE_CS, "/usr/local/bin/ch_set/channel_setting_file_cs_34.5mhz.csv", SetFileBs, 26, True),
    SetFile(VX63_SET_FILE_SCCB, "/usr/local/bin/ch_set/channel_setting_file_sccb_27mhz.csv", SetFileBs, 23, True),
    SetFile(VX63_SET_FILE_SCCC, "/usr/local/bin/ch_set/channel_setting_file_sccc_27mhz.csv", SetFileBs, 24, True),
    SetFile(VX63_SET_FILE_JSAT3A, "/usr/local/bin/ch_set/channel_setting_file_jsat3a_27mhz.csv", SetFileBs, 28, True),
    SetFile(VX63_SET_FILE_JSAT4B, "/usr/local/bin/ch_set/channel_setting_file_jsat4b_27mhz.csv", SetFileBs, 32, True),
    SetFile(VX63_SET_FILE_CATV_ALL, "/usr/local/bin/ch_set/channel_setting_file_catv_all_6mhz.csv", SetFileCatvAll, 150, True),
    SetFile(VX63_SET_FILE_CATV_90_470MHZ, "/usr/local/bin/ch_set/channel_setting_file_catv_90_470mhz_6mhz.csv", SetFileCatvAll, 62, True),
    SetFile(VX63_SET_FILE_CATV_470_1002MHZ, "/usr/local/bin/ch_set/channel_setting_file_catv_470_1002mhz_6mhz.csv", SetFileCatvAll, 88, True),
    SetFile(VX63_SET_FILE_SKYP, "/usr/local/bin/ch_set/channel_setting_file_skyp_6mhz.csv", SetFileUhf, 113, True),
    SetFile(VX63_SET_FILE_PILOT, "/usr/local/bin/ch_set/channel_setting_file_pilot.csv", SetFileUhf, 20, True),
    SetFile(VX63_SET_FILE_LTE, "/usr/local/bin/ch_set/channel_setting_file_lte.csv", SetFileLte, 6, True),
    SetFile(VX63_SET_FILE_FM, "/usr/local/bin/ch_set/channel_setting_file_fm.csv", SetFileUhf, 251, True),
    SetFile(VX63_SET_FILE_MANU_BDSYS_MOD, "/usr/local/bin/meas_set/measrement_setting_file_manu_bdsys_mod.csv", MeasSetManuBdsysMod, 23, True),
    SetFile(VX63_SET_FILE_BDSYS_CONV, "/usr/local/bin/meas_set/measrement_setting_file_bdsys_conv.csv", SetFileBdsysConv, 28, True),
    SetFile(VX63_SET_FILE_CATV_BDSYS_CONV, "/usr/local/bin/meas_set/measrement_setting_file_catv_bdsys_conv.csv", SetFileCatvBdsysConv, 5, True),
    SetFile(VX63_SET_FILE_CATV_UP_STREAM, "/usr/local/bin/ch_set/channel_setting_file_catv_up_stream.csv", SetFileUhf, 1001, True),
    SetFile(VX63_SET_FILE_PMEAS_MNG, "/usr/local/bin/pmeas_set/pmeas_setting_file_pmeas_mng.csv", SetFilePmeasMng, 48, True),
    SetFile(VX63_SET_FILE_LOGGER_SET, "/usr/local/bin/logger_set/%s.csv", SetChannel, 324, False),
    SetFile(VX63_SET_FILE_LOGGER_LIST, "/usr/local/bin/logger_set/logger_setting_file_list.csv", SetListEntry, 140, False),
    SetFile(VX63_SET_FILE_JSAT3A_ANTENNA, "/usr/local/bin/ch_set/channel_setting_file_jsat3a_antenna_27mhz.csv", SetFileBs, 16, True),
    SetFile(VX63_SET_FILE_JSAT4B_ANTENNA, "/usr/local/bin/ch_set/channel_setting_file_jsat4b_antenna_27mhz.csv", SetFileBs, 16, True),
    SetFile(VX63_SET_FILE_FM_DEF, "/usr/local/bin/ch_set/channel_setting_file_fm_def.csv", SetFileUhf, 12, True),
    SetFile(VX63_SET_FILE_CATV_UP_STREAM_DEF, "/usr/local/bin/ch_set/channel_setting_file_catv_up_stream_def.csv", SetFileUhf, 12, True),
    SetFile(VX63_SET_FILE_BS_CS, "/usr/local/bin/ch_set/channel_setting_file_bs_cs_34.5mhz.csv", SetFileBs, 50, True),
    SetFile(VX63_SET_FILE_USER_SET_USB1, "/usr/local/bin/user_set_usb1/%s.csv", SetChannel, 324, False),
    SetFile(VX63_SET_FILE_USER_LIST_USB1, "/usr/local/bin/user_set_usb1/user_setting_file_list.csv", SetListEntry, 140, False),
    SetFile(VX63_SET_FILE_USER_SET_USB2, "/usr/local/bin/user_set_usb2/%s.csv", SetChannel, 324, False),
    SetFile(VX63_SET_FILE_USER_LIST_USB2, "/usr/local/bin/user_set_usb2/user_setting_file_list.csv", SetListEntry, 140, False),
    SetFile(VX63_SET_FILE_LOGGER_SET_USB1, "/usr/local/bin/logger_set_usb1/%s.csv", SetChannel, 324, False),
    SetFile(VX63_SET_FILE_LOGGER_LIST_USB1, "/usr/local/bin/logger_set_usb1/logger_setting_file_list.csv", SetListEntry, 140, False),
    SetFile(VX63_SET_FILE_LOGGER_SET_USB2, "/usr/local/bin/logger_set_usb2/%s.csv", SetChannel, 324, False),
    SetFile(VX63_SET_FILE_LOGGER_LIST_USB2, "/usr/local/bin/logger_set_usb2/logger_setting_file_list.csv", SetListEntry, 140, False),
)


# ---- Operations ----


def vx63_init(procId: int) -> None:
    """Tells the library which process id the calling thread speaks for. Sends nothing; may be called again
    at any time. A thread that never succeeds in it sends with id 0xFF, and its calls end in time-outs.
      procId  0 to 17
    Raises ArgError (the thread's id stays as it was).
    """
    checked("vx63_init", number(c_int32, "procId", procId))


def vx63_readSetFile(fileId: int, pcMeasFileName: str | bytes | None = None, bDefault: int = 0) -> list[Any]:
    """Reads a whole file.
      fileId          0 to 49
      pDat            receives the records; room for as many as the file can hold, see VX63_SET_FILE_*. After
                      a failed read it may be written in part
      pcMeasFileName  name of the set; for other files not used, may be null
      bDefault        not 0: the factory contents instead of the file. Has no effect on sets and lists
    Returns the number of records read, or a negative value.
    Here: Returns the records, which the parameter pDat receives in C: SET_FILES tells their class.
    A negative value is raised as SetFileError.
    """
    return set_files.read(SET_FILES, fileId, pcMeasFileName, bDefault)


def vx63_writeSetFile(fileId: int, pDat: Sequence[Record], pcMeasFileName: str | bytes | None = None, ulUserLine: int | None = None) -> int:
    """Writes a whole file.
      fileId          0 to 49
      pDat            the records; read only
      pcMeasFileName  name of the set; for other files not used, may be null
      ulUserLine      records to write to a set or a list, 0 to as many as it can hold; any other file is
                      always written whole
    Returns 0 or more, or a negative value.
    Here: Without ulUserLine all of pDat is written. SET_FILES tells the records' class.
    A negative value is raised as SetFileError.
    """
    return set_files.write(SET_FILES, fileId, pDat, pcMeasFileName, ulUserLine)


def vx63_readSetFileIdx(fileId: int, ulIdx: int, pcUserFileName: str | bytes | None = None, bDefault: int = 0) -> Any:
    """Reads one record of a file.
      fileId          0 to 49
      pDat            addressed as if it held the whole file: record ulIdx alone is written, at its place
      ulIdx           index of the record, from 0; less than the number of records in the file
      pcUserFileName  name of the set; for other files not used, may be null
      bDefault        not 0: the factory contents instead of the file. Has no effect on sets and lists
    Returns the number of records in the file, or a negative value (pDat is as it was).
    Here: Returns the record alone, which the parameter pDat receives in C: SET_FILES tells its class.
    A negative value is raised as SetFileError.
    """
    return set_files.read_record(SET_FILES, fileId, ulIdx, pcUserFileName, bDefault)


def vx63_writeSetFileIdx(fileId: int, pDat: Record, ulIdx: int, pcUserFileName: str | bytes | None = None) -> int:
    """Replaces one record of a file; none can be added. The whole file is read and written back: of two writers
    at the same time the last one wins for the whole file.
      fileId          0 to 49
      pDat            addressed as if it held the whole file: record ulIdx alone is read, at its place
      ulIdx           index of the record, from 0; less than the number of records in the file
      pcUserFileName  name of the set; for other files not used, may be null
    Returns 0 or more, or a negative value.
    Here: Here pDat is the record alone. SET_FILES tells its class.
    A negative value is raised as SetFileError.
    """
    return set_files.write_record(SET_FILES, fileId, pDat, ulIdx, pcUserFileName)


def vx63_isFileIdUserSet(fileId: int) -> bool:
    """Whether a file is a user set, a list of user sets, a logger set, a list of logger sets. Any value may be
    asked for; nothing is logged.
    Returns 1 or 0.
    """
    return asked("vx63_isFileIdUserSet", number(c_int32, "fileId", fileId))


def vx63_isFileIdUserSetFlist(fileId: int) -> bool:
    """Whether a file is a user set, a list of user sets, a logger set, a list of logger sets. Any value may be
    asked for; nothing is logged.
    Returns 1 or 0.
    """
    return asked("vx63_isFileIdUserSetFlist", number(c_int32, "fileId", fileId))


def vx63_isFileIdLoggerSet(fileId: int) -> bool:
    """Whether a file is a user set, a list of user sets, a logger set, a list of logger sets. Any value may be
    asked for; nothing is logged.
    Returns 1 or 0.
    """
    return asked("vx63_isFileIdLoggerSet", number(c_int32, "fileId", fileId))


def vx63_isFileIdLoggerSetFlist(fileId: int) -> bool:
    """Whether a file is a user set, a list of user sets, a logger set, a list of logger sets. Any value may be
    asked for; nothing is logged.
    Returns 1 or 0.
    """
    return asked("vx63_isFileIdLoggerSetFlist", number(c_int32, "fileId", fileId))


def vx63_deleteSetFileUser(pcUserFileName: str | bytes) -> int:
    """Deletes one set from the internal storage, USB memory 1 or 2. The list of its folder stays as it is: to
    take the name off the list is up to the caller (vx63_writeSetFileIdx).
      pcUserFileName, pcLoggerFileName  name of the set
    Returns 0, or -1 (null pointer, name too long, or the file could not be removed).
    A negative value is raised as SetFileError.
    """
    return counted("vx63_deleteSetFileUser", text("pcUserFileName", pcUserFileName))


def vx63_deleteSetFileUserUsb1(pcUserFileName: str | bytes) -> int:
    """Deletes one set from the internal storage, USB memory 1 or 2. The list of its folder stays as it is: to
    take the name off the list is up to the caller (vx63_writeSetFileIdx).
      pcUserFileName, pcLoggerFileName  name of the set
    Returns 0, or -1 (null pointer, name too long, or the file could not be removed).
    A negative value is raised as SetFileError.
    """
    return counted("vx63_deleteSetFileUserUsb1", text("pcUserFileName", pcUserFileName))


def vx63_deleteSetFileUserUsb2(pcUserFileName: str | bytes) -> int:
    """Deletes one set from the internal storage, USB memory 1 or 2. The list of its folder stays as it is: to
    take the name off the list is up to the caller (vx63_writeSetFileIdx).
      pcUserFileName, pcLoggerFileName  name of the set
    Returns 0, or -1 (null pointer, name too long, or the file could not be removed).
    A negative value is raised as SetFileError.
    """
    return counted("vx63_deleteSetFileUserUsb2", text("pcUserFileName", pcUserFileName))


def vx63_deleteSetFileLogger(pcLoggerFileName: str | bytes) -> int:
    """Deletes one set from the internal storage, USB memory 1 or 2. The list of its folder stays as it is: to
    take the name off the list is up to the caller (vx63_writeSetFileIdx).
      pcUserFileName, pcLoggerFileName  name of the set
    Returns 0, or -1 (null pointer, name too long, or the file could not be removed).
    A negative value is raised as SetFileError.
    """
    return counted("vx63_deleteSetFileLogger", text("pcLoggerFileName", pcLoggerFileName))


def vx63_deleteSetFileLoggerUsb1(pcLoggerFileName: str | bytes) -> int:
    """Deletes one set from the internal storage, USB memory 1 or 2. The list of its folder stays as it is: to
    take the name off the list is up to the caller (vx63_writeSetFileIdx).
      pcUserFileName, pcLoggerFileName  name of the set
    Returns 0, or -1 (null pointer, name too long, or the file could not be removed).
    A negative value is raised as SetFileError.
    """
    return counted("vx63_deleteSetFileLoggerUsb1", text("pcLoggerFileName", pcLoggerFileName))


def vx63_deleteSetFileLoggerUsb2(pcLoggerFileName: str | bytes) -> int:
    """Deletes one set from the internal storage, USB memory 1 or 2. The list of its folder stays as it is: to
    take the name off the list is up to the caller (vx63_writeSetFileIdx).
      pcUserFileName, pcLoggerFileName  name of the set
    Returns 0, or -1 (null pointer, name too long, or the file could not be removed).
    A negative value is raised as SetFileError.
    """
    return counted("vx63_deleteSetFileLoggerUsb2", text("pcLoggerFileName", pcLoggerFileName))


def vx63_deleteSetFileUserBulk(fileId: int) -> int:
    """Deletes everything in a folder of sets and writes its list anew, empty. A folder that is empty, the list
    included, counts as a failure.
      fileId  the set: VX63_SET_FILE_USER_SET* or VX63_SET_FILE_LOGGER_SET*
    Returns 0, or -1; where the deletion itself failed, no list is written.
    A negative value is raised as SetFileError.
    """
    return counted("vx63_deleteSetFileUserBulk", number(c_uint32, "fileId", fileId))


def vx63_deleteSetFileLoggerBulk(fileId: int) -> int:
    """Deletes everything in a folder of sets and writes its list anew, empty. A folder that is empty, the list
    included, counts as a failure.
      fileId  the set: VX63_SET_FILE_USER_SET* or VX63_SET_FILE_LOGGER_SET*
    Returns 0, or -1; where the deletion itself failed, no list is written.
    A negative value is raised as SetFileError.
    """
    return counted("vx63_deleteSetFileLoggerBulk", number(c_uint32, "fileId", fileId))


def vx63_deleteAllSetFile() -> int:
    """Deletes every settings file of the meter, sets and lists included. None is made anew: until one is
    written, read the factory contents.
    Returns 0, or -1 where a folder failed (an empty one counts); the other folders are emptied all the same.
    A negative value is raised as SetFileError.
    """
    return counted("vx63_deleteAllSetFile")


def vx63_ntfUpdateFile(fileId: int) -> None:
    """Tells the system service that a file, or one record of it, changed, so that it takes the new contents into
    use. 10 s.
      fileId  0 to 49
      ulIdx   index of the record; its low 8 bits are sent (300 arrives as 44)
    Raises ArgError, CommError.
    """
    checked("vx63_ntfUpdateFile", number(c_uint32, "fileId", fileId))


def vx63_ntfUpdateFileIdx(fileId: int, ulIdx: int) -> None:
    """Tells the system service that a file, or one record of it, changed, so that it takes the new contents into
    use. 10 s.
      fileId  0 to 49
      ulIdx   index of the record; its low 8 bits are sent (300 arrives as 44)
    Raises ArgError, CommError.
    """
    checked("vx63_ntfUpdateFileIdx", number(c_uint32, "fileId", fileId), number(c_uint32, "ulIdx", ulIdx))


def vx63_setMeasInput(input: int) -> None:
    """Selects the RF input of the measurement service. 10 s.
      input  VX63_INPUT_*
    Raises ArgError, CommError.
    """
    checked("vx63_setMeasInput", number(c_int32, "input", input))


def vx63_reqPowerSupply(powerSupply: int) -> None:
    """Switches the antenna power supply. Answered by the measurement service; 10 s.
      powerSupply  VX63_POWER_SUPPLY_*, 0 to 4
    Raises ArgError, CommError.
    """
    checked("vx63_reqPowerSupply", number(c_int32, "powerSupply", powerSupply))


def vx63_getMeasStatus(pMeasStat: MeasStatus | None = None) -> MeasStatus:
    """Reads the state of the measurement service. 10 s.
    Raises ArgError, CommError.
    Returns pMeasStat, a new record if none is given.
    """
    pMeasStat = MeasStatus() if pMeasStat is None else pMeasStat
    checked("vx63_getMeasStatus", record(MeasStatus, "pMeasStat", pMeasStat))
    return pMeasStat


def vx63_getPowerSupplyInfo(pInfo: PowerSupplyInfo | None = None) -> PowerSupplyInfo:
    """Reads the antenna power supply. Answered by the device service; 10 s.
      pInfo  not tested: must point to a record
    Raises CommError.
    Returns pInfo, a new record if none is given.
    """
    pInfo = PowerSupplyInfo() if pInfo is None else pInfo
    checked("vx63_getPowerSupplyInfo", record(PowerSupplyInfo, "pInfo", pInfo))
    return pInfo


def vx63_setPowerSupplyMultiMeasMixBand(ucOnOff: int) -> None:
    """Switches the antenna power supply of a multi-channel measurement over mixed bands. Answered by the
    measurement service; 5 s.
      ucOnOff  0 off, 1 on, from the next start of a list on. Any other value is passed on as well, and
               the service refuses it
    Raises CommError.
    """
    checked("vx63_setPowerSupplyMultiMeasMixBand", number(c_uint8, "ucOnOff", ucOnOff))


def vx63_startSingleMeas(ucDispType: int, pCondition: MeasCondition) -> None:
    """Tunes one channel and starts to measure it; it is measured until it is stopped. Answered by the
    measurement service; 10 s. A powerSupply outside 0 to 4 is logged and taken as off, not refused.
      ucDispType  display type, passed on as it is
      pCondition  what to measure; read only
    Raises ArgError, CommError.
    """
    checked("vx63_startSingleMeas", number(c_uint8, "ucDispType", ucDispType), record(MeasCondition, "pCondition", pCondition))


def vx63_stopSingleMeas(ucDispType: int) -> None:
    """Stops the measurement. Answered by the measurement service; 10 s.
      ucDispType  display type, as it was given to the start
    Raises ArgError (the service refused), CommError.
    """
    checked("vx63_stopSingleMeas", number(c_uint8, "ucDispType", ucDispType))


def vx63_getSingleMeasResult(usReadCount: int, pResult: SingleMeasResult | None = None) -> SingleMeasResult:
    """Reads the latest values of the running measurement. Answered by the measurement service; 10 s. Poll it:
    the values change while the measurement runs.
      usReadCount  0: the values alone, pResult's CONS_NUM and points stay as they are; any other value:
                   constellation points as well, passed on as it is (see vx63_startConstaMeas)
      pResult      all fields but reserved are written. CONS_NUM is what the service says, which can be more
                   than was asked for. Of that many points, those that the response did not carry are 0: one
                   response carries 624 at most. No more than VX63_CONSTA_POINTS_MAX points are written; the
                   points behind the last one written stay as they are.
    Raises ArgError, PowerError, CommError.
    Returns pResult, a new record if none is given.
    """
    pResult = SingleMeasResult() if pResult is None else pResult
    checked("vx63_getSingleMeasResult", number(c_uint16, "usReadCount", usReadCount), record(SingleMeasResult, "pResult", pResult))
    return pResult


def vx63_startConstaMeas(ucDispType: int, collectNum: int) -> None:
    """Starts to collect constellation points of the running single measurement. Read them with
    vx63_getSingleMeasResult. Answered by the measurement service; 10 s.
      ucDispType  display type, passed on as it is
      collectNum  points to collect: 1000, 2000 or 4000
    Raises ArgError, CommError.
    """
    checked("vx63_startConstaMeas", number(c_uint8, "ucDispType", ucDispType), number(c_int32, "collectNum", collectNum))


def vx63_stopConstaMeas(ucDispType: int) -> None:
    """Stops collecting. Answered by the measurement service; 10 s.
      ucDispType  display type, as it was given to the start
    Raises ArgError (the service refused), CommError.
    """
    checked("vx63_stopConstaMeas", number(c_uint8, "ucDispType", ucDispType))


def vx63_startDlyPrfMeas(ucDispType: int, pCondition: MeasCondition) -> None:
    """Starts to measure the delay profile of one channel. Answered by the measurement service; 10 s. A
    powerSupply outside 0 to 4 is logged and taken as off, not refused.
      ucDispType  display type, passed on as it is
      pCondition  what to measure; read only
    Raises ArgError, CommError.
    """
    checked("vx63_startDlyPrfMeas", number(c_uint8, "ucDispType", ucDispType), record(MeasCondition, "pCondition", pCondition))


def vx63_stopDlyPrfMeas(ucDispType: int) -> None:
    """Stops the measurement. Answered by the measurement service; 10 s.
      ucDispType  display type, as it was given to the start
    Raises ArgError (the service refused), CommError.
    """
    checked("vx63_stopDlyPrfMeas", number(c_uint8, "ucDispType", ucDispType))


def vx63_getDlyPrfResult(pResult: DlyPrfResult | None = None) -> DlyPrfResult:
    """Reads the delay profile in six blocks, from the first one in every call. Answered by the measurement
    service; 10 s for each block. A block that the service answers with another one is asked for again for as
    long as it does.
      pResult  stat tells whether the profile is complete; if it is not, read again later. Written block by
               block: when the profile turns out to be incomplete, and on failure, the blocks read before
               stay, and on failure stat is that of the last of them.
    Raises ArgError, PowerError, CommError.
    Returns pResult, a new record if none is given.
    """
    pResult = DlyPrfResult() if pResult is None else pResult
    checked("vx63_getDlyPrfResult", record(DlyPrfResult, "pResult", pResult))
    return pResult


def vx63_startMultiMeas(ucDispType: int, pReg: MultiMeasReg) -> None:
    """Registers a list of channels and starts to measure them in turn. Answered by the measurement service;
    takes one exchange of 10 s for every 40 channels. When a part is refused, those before it stay registered
    and nothing is started or stopped. A powerSupply outside 0 to 4 is logged and taken as off, not refused.
      ucDispType  display type, passed on as it is
      pReg        the channels; read only. A channel's index has 8 bits: with more than 256 channels the first
                  ones are registered once more in place of those from 256 on. A negative sRegNum is refused:
                  with VX63_ERR_COMM from -39 down, with VX63_ERR_ARG above.
    Raises ArgError, CommError.
    """
    checked("vx63_startMultiMeas", number(c_uint8, "ucDispType", ucDispType), record(MultiMeasReg, "pReg", pReg))


def vx63_stopMultiMeas(ucDispType: int) -> None:
    """Stops the measurement. Answered by the measurement service; 10 s.
      ucDispType  display type, as it was given to the start
    Raises ArgError (the service refused), CommError.
    """
    checked("vx63_stopMultiMeas", number(c_uint8, "ucDispType", ucDispType))


def vx63_setMultiMeasChannel() -> None:
    """Does nothing: sends nothing, logs nothing. Kept in the interface."""
    checked("vx63_setMultiMeasChannel")


def vx63_getMultiMeasResult(sIndex: int, pResult: MultiMeasResult | None = None) -> MultiMeasResult:
    """Reads the latest values of one channel while the measurement runs. Answered by the measurement service;
    10 s.
      sIndex   index of the channel in the registration, from 0. No upper limit is tested; the service gets
               the low 16 bits.
      pResult  all fields are written
    Raises ArgError, PowerError, CommError.
    Returns pResult, a new record if none is given.
    """
    pResult = MultiMeasResult() if pResult is None else pResult
    checked("vx63_getMultiMeasResult", number(c_int32, "sIndex", sIndex), record(MultiMeasResult, "pResult", pResult))
    return pResult


def vx63_startMultiChPrioMeas(ucDispType: int, pCondition: MeasCondition) -> None:
    """Starts a multi-channel measurement with a channel of priority: the same request as vx63_startSingleMeas,
    and the same results. Answered by the measurement service; 10 s.
      ucDispType  display type, passed on as it is
      pCondition  what to measure; read only
    Raises ArgError, CommError.
    """
    checked("vx63_startMultiChPrioMeas", number(c_uint8, "ucDispType", ucDispType), record(MeasCondition, "pCondition", pCondition))


def vx63_stopMultiChPrioMeas(ucDispType: int) -> None:
    """Stops the measurement. Answered by the measurement service; 10 s.
      ucDispType  display type, as it was given to the start
    Raises ArgError (the service refused), CommError.
    """
    checked("vx63_stopMultiChPrioMeas", number(c_uint8, "ucDispType", ucDispType))


def vx63_getMultiChPrioMeas(pResult: SingleMeasResult | None = None) -> SingleMeasResult:
    """Reads the latest values. Answered by the measurement service; 10 s.
      pResult  all fields but reserved, CONS_NUM and points are written
    Raises ArgError, PowerError, CommError.
    Returns pResult, a new record if none is given.
    """
    pResult = SingleMeasResult() if pResult is None else pResult
    checked("vx63_getMultiChPrioMeas", record(SingleMeasResult, "pResult", pResult))
    return pResult


def vx63_startScan(ucDispType: int, pReg: MultiMeasReg) -> None:
    """Registers a list of channels and starts to scan them. Everything else is as in vx63_startMultiMeas."""
    checked("vx63_startScan", number(c_uint8, "ucDispType", ucDispType), record(MultiMeasReg, "pReg", pReg))


def vx63_stopScan(ucDispType: int) -> None:
    """Stops the scan, or a multi-channel measurement: the service cannot tell one stop from the other.
    Everything else is as in vx63_stopMultiMeas.
    """
    checked("vx63_stopScan", number(c_uint8, "ucDispType", ucDispType))


def vx63_getScanResult(sIndex: int, pResult: MultiMeasResult | None = None) -> MultiMeasResult:
    """Reads the latest values of one channel while the scan runs. Everything else is as in
    vx63_getMultiMeasResult.
    Returns pResult, a new record if none is given.
    """
    pResult = MultiMeasResult() if pResult is None else pResult
    checked("vx63_getScanResult", number(c_int32, "sIndex", sIndex), record(MultiMeasResult, "pResult", pResult))
    return pResult


def vx63_startOptMeas(ulWaveLength: int) -> None:
    """Starts to measure the optical input power. Answered by the measurement service; 10 s.
      ulWaveLength  nm, 800 to 1700. The library refuses 0 alone; the service judges any other value
    Raises ArgError, CommError.
    """
    checked("vx63_startOptMeas", number(c_uint32, "ulWaveLength", ulWaveLength))


def vx63_stopOptMeas() -> None:
    """Stops the measurement. Answered by the measurement service; 10 s.
    Raises ArgError (the service refused), CommError.
    """
    checked("vx63_stopOptMeas")


def vx63_getOptMeasResult() -> int:
    """Reads the optical power. Answered by the measurement service; 10 s.
      pResult  0.01 dBm: optical power
    Raises ArgError, CommError.
    Returns what pResult receives in C.
    """
    pResult = (c_int32 * 1)()
    checked("vx63_getOptMeasResult", pResult)
    return pResult[0]


def vx63_startDcMeas() -> None:
    """Starts to measure the DC voltage. Answered by the measurement service; 10 s.
    Raises ArgError (the service refused), CommError.
    """
    checked("vx63_startDcMeas")


def vx63_stopDcMeas() -> None:
    """Stops the measurement. Answered by the measurement service; 10 s.
    Raises ArgError (the service refused), CommError.
    """
    checked("vx63_stopDcMeas")


def vx63_getDcMeasResult() -> int:
    """Reads the DC voltage. Answered by the measurement service; 10 s.
      pResult  mV
    Raises ArgError, CommError.
    Returns what pResult receives in C.
    """
    pResult = (c_uint32 * 1)()
    checked("vx63_getDcMeasResult", pResult)
    return pResult[0]


def vx63_startAngleMeas() -> None:
    """Switches the angle measurement on. Answered by the device service; 10 s.
    Raises CommError.
    """
    checked("vx63_startAngleMeas")


def vx63_stopAngleMeas() -> None:
    """Switches the angle measurement off. Answered by the device service; 10 s.
    Raises CommError.
    """
    checked("vx63_stopAngleMeas")


def vx63_startAngleCal() -> None:
    """Starts the calibration of the angle sensor; vx63_getAngleCalStat follows it. It cannot be stopped.
    Answered by the device service; 10 s.
    Raises CommError.
    """
    checked("vx63_startAngleCal")


def vx63_getAngleCalStat(pStat: AngleCalStat | None = None) -> AngleCalStat:
    """Reads how far the calibration of the angle sensor got. Answered by the device service; 10 s.
      pStat  not tested: must point to a record. Floats arrive bit for bit, those that are no numbers too.
    Raises CommError.
    Returns pStat, a new record if none is given.
    """
    pStat = AngleCalStat() if pStat is None else pStat
    checked("vx63_getAngleCalStat", record(AngleCalStat, "pStat", pStat))
    return pStat


def vx63_getAngleCalInfoDetail(pInfo: AngleCalInfoDetail | None = None) -> AngleCalInfoDetail:
    """Reads the live values of the angle sensor. Answered by the device service; 10 s.
      pInfo  not tested: must point to a record. Floats arrive bit for bit, those that are no numbers too.
    Raises CommError.
    Returns pInfo, a new record if none is given.
    """
    pInfo = AngleCalInfoDetail() if pInfo is None else pInfo
    checked("vx63_getAngleCalInfoDetail", record(AngleCalInfoDetail, "pInfo", pInfo))
    return pInfo


def vx63_getProductInfo(pProductInfo: ProductInfo | None = None) -> ProductInfo:
    """Reads the product data. Answered by the system service; 10 s.
    Raises ArgError, CommError.
    Returns pProductInfo, a new record if none is given.
    """
    pProductInfo = ProductInfo() if pProductInfo is None else pProductInfo
    checked("vx63_getProductInfo", record(ProductInfo, "pProductInfo", pProductInfo))
    return pProductInfo


def vx63_getFailinfo(pFail: FailInfo | None = None) -> FailInfo:
    """Reads the current failure. Answered by the system service; 10 s.
    Raises ArgError, CommError.
    Returns pFail, a new record if none is given.
    """
    pFail = FailInfo() if pFail is None else pFail
    checked("vx63_getFailinfo", record(FailInfo, "pFail", pFail))
    return pFail


def vx63_getKeyStatus(pKeyStat: KeyStatus | None = None) -> KeyStatus:
    """Reads the key states. Answered by the key service; 10 s. A success logs nothing; a failure also logs the
    record as the caller holds it, into /var/log/libvx63_key.txt: fill it before the first call.
    Raises ArgError, CommError.
    Returns pKeyStat, a new record if none is given.
    """
    pKeyStat = KeyStatus() if pKeyStat is None else pKeyStat
    checked("vx63_getKeyStatus", record(KeyStatus, "pKeyStat", pKeyStat))
    return pKeyStat


def vx63_getDeviceStatus(pDevStat: DeviceStatus | None = None) -> DeviceStatus:
    """Reads the device status. Answered by the device service; 10 s. A success logs nothing.
    Raises ArgError, CommError.
    Returns pDevStat, a new record if none is given.
    """
    pDevStat = DeviceStatus() if pDevStat is None else pDevStat
    checked("vx63_getDeviceStatus", record(DeviceStatus, "pDevStat", pDevStat))
    return pDevStat


def vx63_setFailStat(usCode: int, ucStat: int, ucAddInfo: bytes) -> None:
    """Sets the failure state. Answered by the system service, whose answer is not examined; 10 s.
      usCode     failure code, passed on as it is
      ucStat     1 the failure is present, 0 it is not
      ucAddInfo  32 bytes of additional information; read only
    Raises ArgError, CommError.
    """
    checked("vx63_setFailStat", number(c_uint16, "usCode", usCode), number(c_uint8, "ucStat", ucStat), block(32, "ucAddInfo", ucAddInfo))


def vx63_reboot() -> None:
    """Restarts the meter. Answered by the system service; 10 s.
    Raises CommError.
    """
    checked("vx63_reboot")


def vx63_shutdown() -> None:
    """Switches the meter off. Answered by the system service; 10 s.
    Raises CommError.
    """
    checked("vx63_shutdown")


def vx63_standby(ucMode: int) -> None:
    """Puts the meter into standby. 10 s.
      ucMode  0 the whole meter: answered by the system service; 1 its measuring part: answered by the
              measurement service, which refuses any other value
    Raises CommError.
    """
    checked("vx63_standby", number(c_uint8, "ucMode", ucMode))


def vx63_wakeup(ucMode: int) -> None:
    """Wakes the meter up from standby. 10 s.
      ucMode  0 the whole meter: answered by the system service; 1 its measuring part: answered by the
              measurement service, which refuses any other value
    Raises CommError.
    """
    checked("vx63_wakeup", number(c_uint8, "ucMode", ucMode))


def vx63_force_standby() -> None:
    """Forces standby. Answered by the measurement service, though the log names the system service when the
    exchange fails; 10 s.
    Raises CommError.
    """
    checked("vx63_force_standby")


def vx63_force_wakeup() -> None:
    """Forces the wake-up from standby. Answered by the measurement service, though the log names the system
    service when the exchange fails; 10 s.
    Raises CommError.
    """
    checked("vx63_force_wakeup")


def vx63_getStandbyStat() -> int:
    """Reads the standby state. Answered by the measurement service; 10 s.
      pStandbyStat  0 awake, 1 the whole meter is in standby, 2 its measuring part is
    Raises ArgError, CommError.
    Returns what pStandbyStat receives in C.
    """
    pStandbyStat = (c_uint32 * 1)()
    checked("vx63_getStandbyStat", pStandbyStat)
    return pStandbyStat[0]


def vx63_calibration(ucMode: int) -> None:
    """Calibrates the meter. Answered by the measurement service; 5 s.
      ucMode  0 all, 1 the level alone
    Raises CommError.
    """
    checked("vx63_calibration", number(c_uint8, "ucMode", ucMode))


def vx63_ntfLowBattStatChg(ucLowBattStat: int) -> None:
    """Tells the measurement service that the low-battery state has changed. 5 s.
      ucLowBattStat  0 good, 1 low
    Raises ArgError (the service refused), CommError.
    """
    checked("vx63_ntfLowBattStatChg", number(c_uint8, "ucLowBattStat", ucLowBattStat))


def vx63_initFactoryDefault() -> None:
    """Resets the meter to its factory default. Answered by the system service; 5 s.
    Raises CommError.
    """
    checked("vx63_initFactoryDefault")


def vx63_setDeveloperMode(ucOnOff: int) -> None:
    """Switches the developer mode. Answered by the system service; 5 s.
      ucOnOff  0 off, 1 on
    Raises CommError.
    """
    checked("vx63_setDeveloperMode", number(c_uint8, "ucOnOff", ucOnOff))


def vx63_prgUpdate(pUpdateReq: bytes) -> None:
    """Updates the meter's program and returns when the update has finished. Asks the system service again and
    again, without a pause, for as long as it answers that the update is still running: 600 s for each
    answer, and no limit to their number.
      pUpdateReq  the update request: 32 bytes, passed on as they are; read once. What they mean is the
                  system service's business: `vx63 update` makes those that the virtual meter's takes
    Raises ArgError, CommError.
    """
    checked("vx63_prgUpdate", block(32, "pUpdateReq", pUpdateReq))


def vx63_buzzer(buzz: int, buzzMode: int) -> None:
    """Sounds the buzzer. Answered by the buzzer service; 10 s.
      buzz      kind of sound and its priority: 0 key click, 1 confirmation, 2 warning, 3 error, 4 alarm
      buzzMode  0 once, 1 again and again, 2 stop
    Raises ArgError, RepeatError, PriorityError, CommError.
    """
    checked("vx63_buzzer", number(c_int32, "buzz", buzz), number(c_int32, "buzzMode", buzzMode))


def vx63_forceBuzzerVolume(buzz: int, buzzVol: int) -> None:
    """Forces the volume of the buzzer. Answered by the buzzer service; 10 s.
      buzz     kind of sound, 0 to 4: as vx63_buzzer has them
      buzzVol  0 (silent) to 3
    Raises ArgError, RepeatError, CommError.
    """
    checked("vx63_forceBuzzerVolume", number(c_int32, "buzz", buzz), number(c_int32, "buzzVol", buzzVol))


def vx63_forceBrightness(brightness: int) -> None:
    """Forces the brightness of the display. Answered by the system service; 10 s.
      brightness  0 dark, 1 middle, 2 bright; the settings file has 1 to 3 for them
    Raises ArgError, CommError.
    """
    checked("vx63_forceBrightness", number(c_int32, "brightness", brightness))


# ---- Exported data ----

# Read anew, on the calling thread, whenever it is asked for.
DATA: Final[dict[str, Any]] = {
    "g_cLibTestLogFilePath": c_char * 256,
    "g_lLibLogLevel": c_int32,
    "gLibDumpLog": c_char * 50000,
    "gLibDumpTestLog": c_char * 50000,
    "g_measSetManuBdsysModDef": MeasSetManuBdsysMod * 23,
}
if TYPE_CHECKING:
    # Path of the log file; rewritten, with the same text, by every log statement.
    g_cLibTestLogFilePath: bytes
    # For the applications; the library neither reads nor writes it (logging is always on).
    g_lLibLogLevel: int
    # The calling thread's buffer in which hex dumps are composed.
    gLibDumpLog: bytes
    # For the applications: a buffer of the calling thread's own. The library does not use it.
    gLibDumpTestLog: bytes
    # Factory defaults of the manual broadcast system and modulation settings.
    g_measSetManuBdsysModDef: tuple[MeasSetManuBdsysMod, ...]

__all__ = [
    "VX63_OK",
    "VX63_ERR_COMM",
    "VX63_ERR_ARG",
    "VX63_ERR_REPEAT",
    "VX63_ERR_POWER",
    "VX63_ERR_PRIORITY",
    "PROC_ID_PSYS",
    "PROC_ID_PDEV",
    "PROC_ID_PKEY",
    "PROC_ID_PBUZ",
    "PROC_ID_PMEAS",
    "VX63_INPUT_0",
    "VX63_INPUT_1",
    "VX63_POWER_SUPPLY_OFF",
    "VX63_POWER_SUPPLY_11V",
    "VX63_POWER_SUPPLY_15V",
    "VX63_POWER_SUPPLY_11V_TONE",
    "VX63_POWER_SUPPLY_15V_TONE",
    "VX63_BDSYS_TERRESTRIAL",
    "VX63_BDSYS_SATELLITE",
    "VX63_BDSYS_SATELLITE_2",
    "VX63_BDSYS_CATV",
    "VX63_BDSYS_JSAT",
    "VX63_BDSYS_JSAT_2",
    "VX63_BDSYS_SKYP",
    "VX63_BDSYS_CATV_2",
    "VX63_BDSYS_LEVEL",
    "VX63_MOD_ANY",
    "VX63_MOD_OFDM",
    "VX63_MOD_BPSK",
    "VX63_MOD_QPSK",
    "VX63_MOD_8PSK_SATELLITE",
    "VX63_MOD_8PSK",
    "VX63_MOD_16APSK",
    "VX63_MOD_32APSK",
    "VX63_MOD_64QAM",
    "VX63_MOD_256QAM",
    "VX63_MOD_NONE",
    "VX63_GI_1_32",
    "VX63_GI_1_16",
    "VX63_GI_1_8",
    "VX63_GI_1_4",
    "VX63_STAT_SIGNAL",
    "VX63_STAT_LOCKED",
    "VX63_STAT_BITS",
    "VX63_STAT_POWER_SUPPLY",
    "VX63_STAT_MEASURED",
    "VX63_MEAS_SINGLE",
    "VX63_MEAS_LOCKED",
    "VX63_MEAS_MULTI",
    "VX63_MEAS_SCAN",
    "VX63_MEAS_DLYPRF",
    "VX63_MEAS_CONSTA",
    "VX63_MEAS_OPT",
    "VX63_MEAS_DC",
    "VX63_INPUT_STAT_1",
    "VX63_INPUT_STAT_SUPPLY",
    "VX63_INPUT_STAT_15V",
    "VX63_INPUT_STAT_TONE",
    "VX63_INPUT_STAT_SUPPLY_FAULT",
    "VX63_INPUT_STAT_MIXED_BANDS",
    "VX63_DLYPRF_NONE",
    "VX63_DLYPRF_MEASURING",
    "VX63_DLYPRF_COMPLETE",
    "VX63_SET_FILE_POWOFF",
    "VX63_SET_FILE_VOLUME",
    "VX63_SET_FILE_BRIGHTNESS",
    "VX63_SET_FILE_LOCAL_FREQ",
    "VX63_SET_FILE_THRD",
    "VX63_SET_FILE_CNRMER",
    "VX63_SET_FILE_CATV_FREQ",
    "VX63_SET_FILE_CABLE_LOSS",
    "VX63_SET_FILE_CABLE_LOSS_ENB",
    "VX63_SET_FILE_INPUT",
    "VX63_SET_FILE_CATV_MOD",
    "VX63_SET_FILE_DC_OUT",
    "VX63_SET_FILE_OPT_MEAS",
    "VX63_SET_FILE_CONSTA_NUM",
    "VX63_SET_FILE_USER_SET",
    "VX63_SET_FILE_USER_LIST",
    "VX63_SET_FILE_UHF",
    "VX63_SET_FILE_BS",
    "VX63_SET_FILE_CS",
    "VX63_SET_FILE_SCCB",
    "VX63_SET_FILE_SCCC",
    "VX63_SET_FILE_JSAT3A",
    "VX63_SET_FILE_JSAT4B",
    "VX63_SET_FILE_CATV_ALL",
    "VX63_SET_FILE_CATV_90_470MHZ",
    "VX63_SET_FILE_CATV_470_1002MHZ",
    "VX63_SET_FILE_SKYP",
    "VX63_SET_FILE_PILOT",
    "VX63_SET_FILE_LTE",
    "VX63_SET_FILE_FM",
    "VX63_SET_FILE_MANU_BDSYS_MOD",
    "VX63_SET_FILE_BDSYS_CONV",
    "VX63_SET_FILE_CATV_BDSYS_CONV",
    "VX63_SET_FILE_CATV_UP_STREAM",
    "VX63_SET_FILE_PMEAS_MNG",
    "VX63_SET_FILE_LOGGER_SET",
    "VX63_SET_FILE_LOGGER_LIST",
    "VX63_SET_FILE_JSAT3A_ANTENNA",
    "VX63_SET_FILE_JSAT4B_ANTENNA",
    "VX63_SET_FILE_FM_DEF",
    "VX63_SET_FILE_CATV_UP_STREAM_DEF",
    "VX63_SET_FILE_BS_CS",
    "VX63_SET_FILE_USER_SET_USB1",
    "VX63_SET_FILE_USER_LIST_USB1",
    "VX63_SET_FILE_USER_SET_USB2",
    "VX63_SET_FILE_USER_LIST_USB2",
    "VX63_SET_FILE_LOGGER_SET_USB1",
    "VX63_SET_FILE_LOGGER_LIST_USB1",
    "VX63_SET_FILE_LOGGER_SET_USB2",
    "VX63_SET_FILE_LOGGER_LIST_USB2",
    "VX63_SET_FILE_COUNT",
    "VX63_CONSTA_POINTS_MAX",
    "VX63_DLYPRF_SAMPLES",
    "VX63_KEYS",
    "CommError",
    "ArgError",
    "RepeatError",
    "PowerError",
    "PriorityError",
    "MeasCondition",
    "MeasStatus",
    "PowerSupplyInfo",
    "ConstaPoint",
    "SingleMeasResult",
    "SetChannel",
    "SetListEntry",
    "DlyPrfResult",
    "MultiMeasReg",
    "MultiMeasResult",
    "AnglePoint",
    "AngleCalStat",
    "AngleCalInfoDetail",
    "MeasSetManuBdsysMod",
    "ProductInfo",
    "FailInfo",
    "KeyStatus",
    "DeviceStatus",
    "SetFilePowoff",
    "SetFileVolume",
    "SetFileBrightness",
    "SetFileLocalFreq",
    "SetFileThrd",
    "SetFileCnrmer",
    "SetFileCatvFreq",
    "SetFileCableLoss",
    "SetFileCableLossEnb",
    "SetFileInput",
    "SetFileCatvMod",
    "SetFileDcOut",
    "SetFileOptMeas",
    "SetFileConstaNum",
    "SetFileUhf",
    "SetFileBs",
    "SetFileCatvAll",
    "SetFileLte",
    "SetFileBdsysConv",
    "SetFileCatvBdsysConv",
    "SetFilePmeasMng",
    "SET_FILES",
    "vx63_init",
    "vx63_readSetFile",
    "vx63_writeSetFile",
    "vx63_readSetFileIdx",
    "vx63_writeSetFileIdx",
    "vx63_isFileIdUserSet",
    "vx63_isFileIdUserSetFlist",
    "vx63_isFileIdLoggerSet",
    "vx63_isFileIdLoggerSetFlist",
    "vx63_deleteSetFileUser",
    "vx63_deleteSetFileUserUsb1",
    "vx63_deleteSetFileUserUsb2",
    "vx63_deleteSetFileLogger",
    "vx63_deleteSetFileLoggerUsb1",
    "vx63_deleteSetFileLoggerUsb2",
    "vx63_deleteSetFileUserBulk",
    "vx63_deleteSetFileLoggerBulk",
    "vx63_deleteAllSetFile",
    "vx63_ntfUpdateFile",
    "vx63_ntfUpdateFileIdx",
    "vx63_setMeasInput",
    "vx63_reqPowerSupply",
    "vx63_getMeasStatus",
    "vx63_getPowerSupplyInfo",
    "vx63_setPowerSupplyMultiMeasMixBand",
    "vx63_startSingleMeas",
    "vx63_stopSingleMeas",
    "vx63_getSingleMeasResult",
    "vx63_startConstaMeas",
    "vx63_stopConstaMeas",
    "vx63_startDlyPrfMeas",
    "vx63_stopDlyPrfMeas",
    "vx63_getDlyPrfResult",
    "vx63_startMultiMeas",
    "vx63_stopMultiMeas",
    "vx63_setMultiMeasChannel",
    "vx63_getMultiMeasResult",
    "vx63_startMultiChPrioMeas",
    "vx63_stopMultiChPrioMeas",
    "vx63_getMultiChPrioMeas",
    "vx63_startScan",
    "vx63_stopScan",
    "vx63_getScanResult",
    "vx63_startOptMeas",
    "vx63_stopOptMeas",
    "vx63_getOptMeasResult",
    "vx63_startDcMeas",
    "vx63_stopDcMeas",
    "vx63_getDcMeasResult",
    "vx63_startAngleMeas",
    "vx63_stopAngleMeas",
    "vx63_startAngleCal",
    "vx63_getAngleCalStat",
    "vx63_getAngleCalInfoDetail",
    "vx63_getProductInfo",
    "vx63_getFailinfo",
    "vx63_getKeyStatus",
    "vx63_getDeviceStatus",
    "vx63_setFailStat",
    "vx63_reboot",
    "vx63_shutdown",
    "vx63_standby",
    "vx63_wakeup",
    "vx63_force_standby",
    "vx63_force_wakeup",
    "vx63_getStandbyStat",
    "vx63_calibration",
    "vx63_ntfLowBattStatChg",
    "vx63_initFactoryDefault",
    "vx63_setDeveloperMode",
    "vx63_prgUpdate",
    "vx63_buzzer",
    "vx63_forceBuzzerVolume",
    "vx63_forceBrightness",
]
