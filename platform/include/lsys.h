/*
 * lsys.h: the system library of the platform, as the library calls it: CSV settings files read and
 * written as arrays of fixed-size records, and the shell.
 *
 * On the meter the firmware provides these calls. They keep no state; any number of threads may call at
 * the same time, but two writers of one file are not serialised.
 */
#ifndef LSYS_H
#define LSYS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* How one CSV column maps into the record. */
typedef struct LsysColumn {
    uint32_t ulType; /* kind of value: 0 to 3 unsigned, 4 signed, 6 text with NUL inside the field */
    uint32_t
        ulWidth; /* width of the field in the record, in bytes: 1, 2 or 4 for numbers, 8 or 13 for text */
    uint32_t ulOffset; /* byte offset of the field in the record */
} LsysColumn;

/*
 * Reads a CSV settings file.
 *   pcPath         absolute path
 *   pcVersion      format version that the file must have
 *   ulMaxRecords   records that pRecords holds
 *   ulColumnCount  columns of the file, described by pColumns in CSV order
 *   pRecords       receives the records, ulRecordSize bytes each
 * Returns the number of records read (0 or more), or a negative value.
 */
int32_t lsys_readCsvNewFmt(const char* pcPath, const char* pcVersion, uint32_t ulMaxRecords,
                           uint32_t ulColumnCount, uint8_t* pRecords, uint32_t ulRecordSize,
                           const LsysColumn* pColumns);

/*
 * Writes a CSV settings file whole.
 *   pcHeader   the header line: column names separated by commas
 *   ulRecords  records to write
 * (the other arguments as for lsys_readCsvNewFmt)
 * Returns 0 or more, or a negative value.
 */
int32_t lsys_writeCsvNewFmt(const char* pcPath, const char* pcVersion, const char* pcHeader,
                            uint32_t ulRecords, uint32_t ulColumnCount, const uint8_t* pRecords,
                            uint32_t ulRecordSize, const LsysColumn* pColumns);

/*
 * Runs a command line by the shell and waits for it.
 * Returns 0 when it exited with 0, any other value otherwise.
 */
int32_t lsys_system(const char* pcCommand);

#ifdef __cplusplus
}
#endif

#endif
