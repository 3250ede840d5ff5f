"""The settings files: typed from their definition, for comparison with what the tool says."""

# id, path in /usr/local/bin/, columns, bytes of a record, rows, bytes of the factory contents
FILES = [
    (0, "sys_set/system_setting_file_powoff.csv", 7, 7, 1, 7),
    (1, "sys_set/system_setting_file_volume.csv", 5, 5, 1, 5),
    (2, "sys_set/system_setting_file_brightness.csv", 4, 4, 1, 4),
    (3, "meas_set/measrement_setting_file_local_freq.csv", 8, 28, 12, 336),
    (4, "meas_set/measrement_setting_file_thrd.csv", 23, 88, 24, 2112),
    (5, "meas_set/measrement_setting_file_cnrmer.csv", 3, 3, 15, 45),
    (6, "meas_set/measrement_setting_file_catv_freq.csv", 8, 28, 4, 112),
    (7, "meas_set/measrement_setting_file_cable_loss.csv", 2, 8, 4, 32),
    (8, "meas_set/measrement_setting_file_cable_loss_enb.csv", 1, 1, 1, 1),
    (9, "meas_set/measrement_setting_file_input.csv", 3, 3, 1, 3),
    (10, "meas_set/measrement_setting_file_catv_mod.csv", 3, 12, 1, 12),
    (11, "meas_set/measrement_setting_file_dc_out.csv", 10, 10, 3, 30),
    (12, "meas_set/measrement_setting_file_opt_meas.csv", 3, 12, 1, 12),
    (13, "meas_set/measrement_setting_file_consta_num.csv", 4, 16, 1, 16),
    (14, "user_set/%s.csv", 10, 28, 324, 0),
    (15, "user_set/user_setting_file_list.csv", 3, 15, 140, 0),
    (16, "ch_set/channel_setting_file_uhf_6mhz.csv", 2, 12, 40, 480),
    (17, "ch_set/channel_setting_file_bs_34.5mhz.csv", 3, 16, 24, 384),
    (18, "ch_set/channel_setting_file_cs_34.5mhz.csv", 3, 16, 26, 416),
    (19, "ch_set/channel_setting_file_sccb_27mhz.csv", 3, 16, 23, 368),
    (20, "ch_set/channel_setting_file_sccc_27mhz.csv", 3, 16, 24, 384),
    (21, "ch_set/channel_setting_file_jsat3a_27mhz.csv", 3, 16, 28, 448),
    (22, "ch_set/channel_setting_file_jsat4b_27mhz.csv", 3, 16, 32, 512),
    (23, "ch_set/channel_setting_file_catv_all_6mhz.csv", 3, 16, 150, 2400),
    (24, "ch_set/channel_setting_file_catv_90_470mhz_6mhz.csv", 3, 16, 62, 992),
    (25, "ch_set/channel_setting_file_catv_470_1002mhz_6mhz.csv", 3, 16, 88, 1408),
    (26, "ch_set/channel_setting_file_skyp_6mhz.csv", 2, 12, 113, 1356),
    (27, "ch_set/channel_setting_file_pilot.csv", 2, 12, 20, 240),
    (28, "ch_set/channel_setting_file_lte.csv", 3, 16, 6, 96),
    (29, "ch_set/channel_setting_file_fm.csv", 2, 12, 251, 3012),
    (30, "meas_set/measrement_setting_file_manu_bdsys_mod.csv", 2, 8, 23, 184),
    (31, "meas_set/measrement_setting_file_bdsys_conv.csv", 3, 6, 28, 168),
    (32, "meas_set/measrement_setting_file_catv_bdsys_conv.csv", 3, 8, 5, 40),
    (33, "ch_set/channel_setting_file_catv_up_stream.csv", 2, 12, 1001, 12012),
    (34, "pmeas_set/pmeas_setting_file_pmeas_mng.csv", 29, 68, 48, 3264),
    (35, "logger_set/%s.csv", 10, 28, 324, 0),
    (36, "logger_set/logger_setting_file_list.csv", 3, 15, 140, 0),
    (37, "ch_set/channel_setting_file_jsat3a_antenna_27mhz.csv", 3, 16, 16, 256),
    (38, "ch_set/channel_setting_file_jsat4b_antenna_27mhz.csv", 3, 16, 16, 256),
    (39, "ch_set/channel_setting_file_fm_def.csv", 2, 12, 12, 144),
    (40, "ch_set/channel_setting_file_catv_up_stream_def.csv", 2, 12, 12, 144),
    (41, "ch_set/channel_setting_file_bs_cs_34.5mhz.csv", 3, 16, 50, 800),
    (42, "user_set_usb1/%s.csv", 10, 28, 324, 0),
    (43, "user_set_usb1/user_setting_file_list.csv", 3, 15, 140, 0),
    (44, "user_set_usb2/%s.csv", 10, 28, 324, 0),
    (45, "user_set_usb2/user_setting_file_list.csv", 3, 15, 140, 0),
    (46, "logger_set_usb1/%s.csv", 10, 28, 324, 0),
    (47, "logger_set_usb1/logger_setting_file_list.csv", 3, 15, 140, 0),
    (48, "logger_set_usb2/%s.csv", 10, 28, 324, 0),
    (49, "logger_set_usb2/logger_setting_file_list.csv", 3, 15, 140, 0),
]

# Files that share their columns: NAME:TYPE/WIDTH/OFFSET, in the order of the file.
COLUMNS = {
    (0,): (
        "POWER_OFF_SEL1:3/1/0 POWER_OFF_SEL2:3/1/1 POWER_OFF_SEL3:3/1/2 POWER_OFF_SEL4:3/1/3 "
        "POWER_OFF_SEL5:3/1/4 POWER_OFF_SEL6:3/1/5 POWER_OFF:3/1/6"
    ),
    (1,): (
        "VOLUME_SEL1:3/1/0 VOLUME_SEL2:3/1/1 VOLUME_SEL3:3/1/2 VOLUME_SEL4:3/1/3 VOLUME:3/1/4"
    ),
    (2,): (
        "BRIGHTNESS_SEL1:3/1/0 BRIGHTNESS_SEL2:3/1/1 BRIGHTNESS_SEL3:3/1/2 BRIGHTNESS:3/1/3"
    ),
    (3,): (
        "BAND:3/1/0 WAVE:3/1/1 LOCAL_FREQ1:3/4/4 LOCAL_FREQ2:3/4/8 LOCAL_FREQ3:3/4/12 LOCAL_FREQ4:3/4/16 "
        "LOCAL_FREQ5:3/4/20 LOCAL_FREQ6:3/4/24"
    ),
    (4,): (
        "BAND:3/1/0 SPEC:3/1/1 MODULATION:2/4/4 LV_MIN:4/4/8 LV_LOW:4/4/12 LV_HIGH:4/4/16 LV_MAX:4/4/20 "
        "MER_MIN:3/4/24 MER_LOW:3/4/28 MER_HIGH:3/4/32 MER_MAX:3/4/36 BER_MIN_MAN:3/4/40 "
        "BER_MIN_EXP:4/4/44 BER_LOW_MAN:3/4/48 BER_LOW_EXP:4/4/52 BER_HIGH_MAN:3/4/56 "
        "BER_HIGH_EXP:4/4/60 BER_MAX_MAN:3/4/64 BER_MAX_EXP:4/4/68 CN_MIN:3/4/72 CN_LOW:3/4/76 "
        "CN_HIGH:3/4/80 CN_MAX:3/4/84"
    ),
    (5,): (
        "CNRMER_SEL1:3/1/0 CNRMER_SEL2:3/1/1 CNRMER:3/1/2"
    ),
    (6,): (
        "SET_NO:3/1/0 MOD:2/4/4 FREQ_C24:3/4/8 FREQ_C25:3/4/12 FREQ_C26:3/4/16 FREQ_C27:3/4/20 "
        "DISP:3/1/24 USE:3/1/25"
    ),
    (7,): (
        "FREQ:3/4/0 CORRECTION_VALUE:3/4/4"
    ),
    (8,): (
        "CORRECTION_ENB:3/1/0"
    ),
    (9,): (
        "INPUT_SEL1:3/1/0 INPUT_SEL2:3/1/1 INPUT:3/1/2"
    ),
    (10,): (
        "MOD_SEL1:2/4/0 MOD_SEL2:2/4/4 MOD_SEL3:2/4/8"
    ),
    (11,): (
        "DC_OUT_STAT:3/1/0 JCSAT3_H:3/1/1 JCSAT3_V:3/1/2 JCSAT4_H:3/1/3 JCSAT4_V:3/1/4 SCC-B_H:3/1/5 "
        "SCC-B_V:3/1/6 SCC-C_H:3/1/7 SCC-C_V:3/1/8 OTHER:3/1/9"
    ),
    (12,): (
        "OPT_MEAS_SEL1:3/4/0 OPT_MEAS_SEL2:3/4/4 OPT_MEAS_SEL3:3/4/8"
    ),
    (13,): (
        "CONSTA_NUM_SEL1:3/4/0 CONSTA_NUM_SEL2:3/4/4 CONSTA_NUM_SEL3:3/4/8 CONSTA_NUM:3/4/12"
    ),
    (14, 42, 44): (
        "NO:3/1/0 ENBFLG:3/1/1 BAND:3/1/2 SPEC:3/1/3 CH:6/8/4 CENTER_FREQ:3/4/12 MOD:2/4/16 "
        "LOCAL_FREQ:3/4/20 GETDATA_FLG:3/1/24 DC_OUT:3/1/25"
    ),
    (15, 43, 45): (
        "NO:3/1/0 ENBFLG:3/1/1 FILE_NAME:6/13/2"
    ),
    (16,): (
        "CH_NO:6/8/0 CENT_FREQ:3/4/8"
    ),
    (17, 18, 19, 20, 21, 22, 37, 38, 41): (
        "WAVE:3/1/0 CH_NO:6/8/4 CENT_FREQ:3/4/12"
    ),
    (23, 24, 25): (
        "CH_NO:6/8/0 QAM_CENT_FREQ:3/4/8 OFDM_CENT_FREQ:3/4/12"
    ),
    (26,): (
        "CH_NO:6/8/0 CENT_FREQ:3/4/8"
    ),
    (27,): (
        "CH_NO:6/8/0 CENT_FREQ:3/4/8"
    ),
    (28,): (
        "CH_NO:6/8/0 CENT_FREQ:3/4/8 BAND_WIDE:3/4/12"
    ),
    (29,): (
        "CH_NO:6/8/0 CENT_FREQ:3/4/8"
    ),
    (30,): (
        "BDSYS:3/2/0 MOD:3/4/4"
    ),
    (31,): (
        "BAND:3/1/4 BDSYS:3/2/0 BDSYS_TUNE:3/2/2"
    ),
    (32,): (
        "BDSYS(CATV):3/2/4 MOD:3/4/0 BDSYS_TUNE:3/2/6"
    ),
    (33,): (
        "CH_NO:6/8/0 CENT_FREQ:3/4/8"
    ),
    (34,): (
        "NEXT_CH_SYNC:4/4/0 SINGLE0_ISMES:3/1/4 SINGLE0_MESDATA:0/1/5 SINGLE0_SAVEMETHOD:3/1/6 "
        "SINGLE0_TMNOSIGNAL:3/4/8 SINGLE0_TMLOCK:3/4/12 SINGLE0_JUDGEMESDATA:1/2/16 "
        "SINGLE0_JUDGESTATUS:1/2/18 SINGLE1_ISMES:3/1/20 SINGLE1_MESDATA:0/1/21 "
        "SINGLE1_SAVEMETHOD:3/1/22 SINGLE1_TMNOSIGNAL:3/4/24 SINGLE1_TMLOCK:3/4/28 "
        "SINGLE1_JUDGEMESDATA:1/2/32 SINGLE1_JUDGESTATUS:1/2/34 MULTI0_ISMES:3/1/36 "
        "MULTI0_MESDATA:0/1/37 MULTI0_SAVEMETHOD:3/1/38 MULTI0_TMNOSIGNAL:3/4/40 MULTI0_TMLOCK:3/4/44 "
        "MULTI0_JUDGEMESDATA:1/2/48 MULTI0_JUDGESTATUS:1/2/50 MULTI1_ISMES:3/1/52 MULTI1_MESDATA:0/1/53 "
        "MULTI1_SAVEMETHOD:3/1/54 MULTI1_TMNOSIGNAL:3/4/56 MULTI1_TMLOCK:3/4/60 "
        "MULTI1_JUDGEMESDATA:1/2/64 MULTI1_JUDGESTATUS:1/2/66"
    ),
    (35, 46, 48): (
        "NO:3/1/0 ENBFLG:3/1/1 BAND:3/1/2 SPEC:3/1/3 CH:6/8/4 CENTER_FREQ:3/4/12 MOD:2/4/16 "
        "LOCAL_FREQ:3/4/20 GETDATA_FLG:3/1/24 DC_OUT:3/1/25"
    ),
    (36, 47, 49): (
        "NO:3/1/0 ENBFLG:3/1/1 FILE_NAME:6/13/2"
    ),
    (39,): (
        "CH_NO:6/8/0 CENT_FREQ:3/4/8"
    ),
    (40,): (
        "CH_NO:6/8/0 CENT_FREQ:3/4/8"
    ),
}
