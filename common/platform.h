// The four functions of the platform. The library calls them and never defines them.
#ifndef DCM_COMMON_PLATFORM_H
#define DCM_COMMON_PLATFORM_H

#include <dcm.h>

extern "C" {

/** The platform's log call, with printf's format and arguments. */
void loggingLogOutput(int module, int level, int flags, const char *format, ...) __attribute__((format(printf, 4, 5)));

/** The calling thread's last error number. */
int errnoGet(void);

/** This system's index. */
uint32_t zorSelfSysIndex(void);

/** Maps a physical entity to its logical index; the status is the platform's. */
int hwalEttPhy2Logical(const DcmEttInfo *physical, uint32_t *logicalIndex);
}

#endif
