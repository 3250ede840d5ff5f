#include "lsys.h"

int32_t lsys_readCsvNewFmt(const char* pcPath, const char* pcVersion, uint32_t ulMaxRecords,
                           uint32_t ulColumnCount, uint8_t* pRecords, uint32_t ulRecordSize,
                           const LsysColumn* pColumns)
{
    (void)pcPath, (void)pcVersion, (void)ulMaxRecords, (void)ulColumnCount, (void)pRecords;
    (void)ulRecordSize, (void)pColumns;
    return -1;
}

int32_t lsys_writeCsvNewFmt(const char* pcPath, const char* pcVersion, const char* pcHeader,
                            uint32_t ulRecords, uint32_t ulColumnCount, const uint8_t* pRecords,
                            uint32_t ulRecordSize, const LsysColumn* pColumns)
{
    (void)pcPath, (void)pcVersion, (void)pcHeader, (void)ulRecords, (void)ulColumnCount, (void)pRecords;
    (void)ulRecordSize, (void)pColumns;
    return -1;
}

int32_t lsys_system(const char* pcCommand)
{
    (void)pcCommand;
    return -1;
}
