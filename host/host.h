/**
 * @file host.h
 * A stub platform: the tool and the tests link it, the library never does. Settings apply to the whole process. Except
 * for the log, they must be set before other threads call the library.
 */
#ifndef DCM_HOST_H
#define DCM_HOST_H

#include <dcm.h>
#include <stdarg.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Receives the log calls of the library, with vprintf's arguments. */
typedef void (*HostLogHandler)(int module, int level, int flags, const char *format, va_list arguments);

/** Maps a physical entity to its logical index and returns a status. */
typedef int (*HostEttMapping)(const DcmEttInfo *physical, uint32_t *logicalIndex);

/** Sends the log to `handler`; NULL, the default, drops it. May be called by any thread at any time. */
void hostSetLogHandler(HostLogHandler handler);

/** Sets the index of this system; the default is 1. */
void hostSetSystemIndex(uint32_t index);

/**
 * Sets the mapping from physical to logical entities. NULL is the default mapping: the logical index is
 * (class << 24) | (first path part << 16) | (index & 0xffff), and the status is 0.
 */
void hostSetEttMapping(HostEttMapping mapping);

#ifdef __cplusplus
}
#endif

#endif
