/*
 * lsys.h: the system library of the platform, as the library calls it: CSV settings files read and
 * written as arrays of fixed-size records, and the shell.
 *
 * On the meter the firmware provides these calls; on a PC platform/host does, in the text form that
 * docs/settings-files.md tells. They keep no state; any number of threads may call at the same time, but two
 * writers of one file are not serialised: the file is wholly the one's or wholly the other's.
 *
 * With LSYS_DEBUG in the environment a CSV call that fails says why in one line on stderr.
 */
#ifndef LSYS_H
#define LSYS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Results. A caller that knows only "0 or more, or negative" is served as well. */
enum {
    LSYS_OK = 0,
    LSYS_ERR_ARG = -1,        /* null or empty argument; impossible column; header unlike the columns */
    LSYS_ERR_MISSING = -2,    /* no such file, or no such folder for a write */
    LSYS_ERR_PERMISSION = -3, /* file or folder may not be read or written, or is on a read-only disk */
    LSYS_ERR_NOT_FILE = -4,   /* a folder, a device or the like stands there */
    LSYS_ERR_VERSION = -5,    /* the first line is not the version */
    LSYS_ERR_COLUMNS = -6,    /* a line has more or fewer columns than described, or a name is empty */
    LSYS_ERR_NUMBER = -7,     /* not a decimal number where one must stand */
    LSYS_ERR_RANGE = -8,      /* a number that its field cannot hold */
    LSYS_ERR_TEXT = -9,       /* a text of more than width - 1 bytes; on writing: a field without NUL */
    LSYS_ERR_QUOTE = -10,     /* a quote inside or behind a text, or one that is never closed */
    LSYS_ERR_CUT = -11,       /* the file ends before the newline of its header or of its last record */
    LSYS_ERR_RECORDS = -12,   /* more records than the caller has room for */
    LSYS_ERR_BINARY = -13,    /* a NUL anywhere, or a control byte outside quotes */
    LSYS_ERR_FULL = -14,      /* no room on the disk, in the quota or under the limit of a file's size */
    LSYS_ERR_SYSTEM = -15     /* any other failure of the system */
};

/* Kinds of value in a column. The codes 0 to 3 are all read and written as unsigned numbers. */
enum { LSYS_TYPE_UNSIGNED = 3, LSYS_TYPE_SIGNED = 4, LSYS_TYPE_TEXT = 6 };

/* How one CSV column maps into the record. Fields lie anywhere in the record, but do not overlap. */
typedef struct LsysColumn {
    uint32_t ulType;   /* 0 to 3 unsigned, 4 signed, 6 text with NUL inside the field */
    uint32_t ulWidth;  /* width of the field in bytes: 1, 2 or 4 for numbers, 1 or more for text */
    uint32_t ulOffset; /* byte offset of the field in the record; offset + width is at most the record size */
} LsysColumn;

/*
 * Reads a CSV settings file.
 *   pcPath         absolute path
 *   pcVersion      format version that the file must have
 *   ulMaxRecords   records that pRecords holds; at most INT32_MAX
 *   ulColumnCount  columns of the file, 1 or more, described by pColumns in CSV order
 *   pRecords       receives the records, ulRecordSize bytes each
 * Numbers are stored in the byte order of the machine; a text is padded with zeros to its width, and what
 * lies between the fields is zero.
 * Returns the number of records read (0 or more), or a negative LSYS_ERR_*. Then pRecords holds the records
 * before the bad one, and the bad one is zero; everything behind it is as it was.
 */
int32_t lsys_readCsvNewFmt(const char* pcPath, const char* pcVersion, uint32_t ulMaxRecords,
                           uint32_t ulColumnCount, uint8_t* pRecords, uint32_t ulRecordSize,
                           const LsysColumn* pColumns);

/*
 * Writes a CSV settings file whole: the file is replaced by the new one in a single step, once that is on the
 * disk. Whatever happens before (an error, a kill, a power cut) leaves the old file as it was.
 *   pcHeader   the header line: ulColumnCount names separated by commas, without quotes and control bytes
 *   ulRecords  records to write; at most INT32_MAX
 * (the other arguments as for lsys_readCsvNewFmt)
 * Returns LSYS_OK, or a negative LSYS_ERR_* with the file as it was.
 */
int32_t lsys_writeCsvNewFmt(const char* pcPath, const char* pcVersion, const char* pcHeader,
                            uint32_t ulRecords, uint32_t ulColumnCount, const uint8_t* pRecords,
                            uint32_t ulRecordSize, const LsysColumn* pColumns);

/*
 * Runs a command line by /bin/sh and waits for its end, whatever the application does with SIGCHLD. The
 * application's signal dispositions and masks stay as they are: a SIGINT from the terminal reaches the
 * application as well as the command.
 * Returns 0 when the command exited with 0; its exit status, or 128 + the signal that ended it, when not; a
 * negative LSYS_ERR_* when it could not be run or its end is not known.
 */
int32_t lsys_system(const char* pcCommand);

#ifdef __cplusplus
}
#endif

#endif
