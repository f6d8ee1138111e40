/*
 * A minimal process of a network element: C, its own platform functions, no C++ runtime. It reads frame 1 of the given
 * file and prints the head of the record. Without a file it writes one and checks the record.
 */
#define _POSIX_C_SOURCE 200809L

#include <dcm.h>

#include <errno.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static const char tinyDescription[] = "<device>\n"
                                      "    <frame typeid='1'>\n"
                                      "        <maxslotnum>12</maxslotnum>\n"
                                      "        <slotmap><mpu>1-2</mpu><lpu>3-12</lpu></slotmap>\n"
                                      "        <fanmodule-entity num='3'/>\n"
                                      "        <fanctrl-entity num='2'/>\n"
                                      "        <power-entity num='1'/>\n"
                                      "    </frame>\n"
                                      "</device>\n";

/* The platform, which the library does not declare. */
void loggingLogOutput(int module, int level, int flags, const char *format, ...);
int errnoGet(void);
uint32_t zorSelfSysIndex(void);
int hwalEttPhy2Logical(const DcmEttInfo *physical, uint32_t *logicalIndex);

static unsigned loggedReports;

void loggingLogOutput(int module, int level, int flags, const char *format, ...)
{
    (void)module;
    (void)level;
    (void)flags;
    va_list arguments;
    va_start(arguments, format);
    (void)vfprintf(stderr, format, arguments);
    va_end(arguments);
    loggedReports++;
}

int errnoGet(void)
{
    return errno;
}

uint32_t zorSelfSysIndex(void)
{
    return 1;
}

int hwalEttPhy2Logical(const DcmEttInfo *physical, uint32_t *logicalIndex)
{
    *logicalIndex = physical->ettIndex;
    return 0;
}

static void printFrame(const DcmFrameInfo *frame)
{
    printf("frame type %u: %u slots, %u fan modules, %u fan controllers, %u power supplies, %u LEDs\n",
           (unsigned)frame->type, (unsigned)frame->maxSlotId, (unsigned)frame->fanModuleNum,
           (unsigned)frame->fanCtrlNum, (unsigned)frame->powerNum, (unsigned)frame->ledNum);
}

static bool isTheTinyFrame(const DcmFrameInfo *frame)
{
    static const uint8_t mpu[4] = {0xC0, 0, 0, 0};
    static const uint8_t lpu[4] = {0x3F, 0xF0, 0, 0};
    return frame->type == 1 && frame->maxSlotId == 12 && frame->fanModuleNum == 3 && frame->fanCtrlNum == 2 &&
           frame->powerNum == 1 && frame->ledNum == 0 && memcmp(frame->slotmap.mpu, mpu, sizeof mpu) == 0 &&
           memcmp(frame->slotmap.lpu, lpu, sizeof lpu) == 0;
}

/* Writes the tiny description into a new file, whose name replaces the XXXXXX of `path`. */
static bool writeTinyDescription(char *path)
{
    const int descriptor = mkstemp(path);
    if (descriptor < 0)
        return false;
    const ssize_t written = write(descriptor, tinyDescription, sizeof tinyDescription - 1);
    return close(descriptor) == 0 && written == (ssize_t)(sizeof tinyDescription - 1);
}

/* The failure, or NULL. The reports of queries that are expected to fail appear on both streams. */
static const char *queryTinyDescription(const char *path)
{
    static DcmFrameInfo frame;
    if (dcmFrameInfoGet(path, 1, &frame) != 0 || loggedReports != 0)
        return "frame 1 is not found";
    printFrame(&frame);
    if (!isTheTinyFrame(&frame))
        return "frame 1 is not what the file says";
    if (dcmFrameInfoGet(path, 2, &frame) != -1 || loggedReports != 1)
        return "frame 2 is not reported as missing, once";
    return NULL;
}

static int readsWhatItWrites(void)
{
    char path[] = "/tmp/dcm-client-XXXXXX";
    if (!writeTinyDescription(path)) {
        perror(path);
        return EXIT_FAILURE;
    }
    const char *problem = queryTinyDescription(path);
    (void)unlink(path);
    if (problem != NULL)
        fprintf(stderr, "%s\n", problem);
    return problem == NULL ? EXIT_SUCCESS : EXIT_FAILURE;
}

int main(int argc, char *argv[])
{
    static DcmFrameInfo frame;
    if (argc < 2)
        return readsWhatItWrites();
    if (dcmFrameInfoGet(argv[1], 1, &frame) != 0)
        return EXIT_FAILURE;
    printFrame(&frame);
    return EXIT_SUCCESS;
}
