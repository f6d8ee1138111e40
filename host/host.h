/**
 * @file host.h
 * A stand-in for the platform that the library runs in: the tool and the tests link it, the library never does.
 * What is set here holds for the whole process; but for the log, set it before other threads call the library.
 */
#ifndef DCM_HOST_H
#define DCM_HOST_H

#include <dcm.h>
#include <stdarg.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Receives what the library logs; `format` and `arguments` are vprintf's. */
typedef void (*HostLogHandler)(int module, int level, int flags, const char *format, va_list arguments);

/** Maps a physical entity to its logical index and returns a status. */
typedef int (*HostEttMapping)(const DcmEttInfo *physical, uint32_t *logicalIndex);

/** Sends the log to `handler`; NULL, as at the start, drops it. Threads may call it at any time. */
void hostSetLogHandler(HostLogHandler handler);

/** Sets this system's index; 1 at the start. */
void hostSetSystemIndex(uint32_t index);

/**
 * Sets the mapping from physical to logical entities. NULL, as at the start, stands for the host's own: the logical
 * index is (class << 24) | (first path part << 16) | (index & 0xffff), and the status is 0.
 */
void hostSetEttMapping(HostEttMapping mapping);

#ifdef __cplusplus
}
#endif

#endif
