/*
 * Prints the results of the four queries on the descriptions in a folder: the reports of every frame, slot and card of
 * its device.xml and of one VM, checksums of the records, and the reports of failing queries. Two builds of the library
 * agree if their output is the same.
 *
 * The folder replaces /etc/zorconf/device: the two calls of the library that access files are wrapped.
 */
#define _POSIX_C_SOURCE 200809L

#include <dcm.h>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <errno.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum { VM = 3, MISSING_VM = 4, MISSING_TYPE = 0xFFFF };

static const char defaultFolder[] = "/etc/zorconf/device/";
static const char *folder;

/* --- The platform ------------------------------------------------------------------------------------------------ */

void loggingLogOutput(int module, int level, int flags, const char *format, ...);
int errnoGet(void);
uint32_t zorSelfSysIndex(void);
int hwalEttPhy2Logical(const DcmEttInfo *physical, uint32_t *logicalIndex);

void loggingLogOutput(int module, int level, int flags, const char *format, ...)
{
    printf("log(%d, %d, %d) ", module, level, flags);
    va_list arguments;
    va_start(arguments, format);
    vprintf(format, arguments);
    va_end(arguments);
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
    *logicalIndex = (physical->ettClass << 24) | ((physical->path[0] & 0xFF) << 16) | (physical->ettIndex & 0xFFFF);
    return 0;
}

/* --- Files ------------------------------------------------------------------------------------------------------- */

int __real_access(const char *path, int mode);
int __wrap_access(const char *path, int mode);
int __real_open(const char *path, int flags, ...);
int __wrap_open(const char *path, int flags, ...);

static const char *redirected(const char *path, char *buffer, size_t size)
{
    const size_t length = sizeof defaultFolder - 1;
    if (strncmp(path, defaultFolder, length) != 0)
        return path;
    const int written = snprintf(buffer, size, "%s/%s", folder, path + length);
    if (written < 0 || (size_t)written >= size) {
        fprintf(stderr, "the folder's name is too long\n");
        exit(EXIT_FAILURE);
    }
    return buffer;
}

int __wrap_access(const char *path, int mode)
{
    char buffer[4096];
    return __real_access(redirected(path, buffer, sizeof buffer), mode);
}

/* The program opens no file for writing. */
int __wrap_open(const char *path, int flags, ...)
{
    char buffer[4096];
    return __real_open(redirected(path, buffer, sizeof buffer), flags);
}

/* --- Queries ----------------------------------------------------------------------------------------------------- */

/* Filled with a byte that no query stores, so that unchanged bytes count in the checksum. */
static void *emptied(void *record, size_t size)
{
    errno = 0;
    return memset(record, 0xA5, size);
}

/* FNV-1a of the bytes of the record. */
static void printRecord(int result, const void *record, size_t size)
{
    const unsigned char *bytes = record;
    uint64_t sum = 0xCBF29CE484222325;
    for (size_t i = 0; i < size; i++)
        sum = (sum ^ bytes[i]) * 0x100000001B3;
    printf("query %d, record of %lu bytes, checksum %08lx%08lx\n", result, (unsigned long)size,
           (unsigned long)(sum >> 32), (unsigned long)(sum & 0xFFFFFFFF));
}

/* The result of a Show function is that of its last write; libcs guarantee only its sign. */
static void printShown(int result)
{
    printf("shown: %s\n", result < 0 ? "no" : "yes");
}

static void frame(const char *file, uint32_t type)
{
    static DcmFrameInfo info;
    printf("\n#### frame %lu of %s\n", (unsigned long)type, file != NULL ? file : "the default");
    printRecord(dcmFrameInfoGet(file, type, emptied(&info, sizeof info)), &info, sizeof info);
    printShown(dcmFrameInfoShowFilename(file, type));
}

static void slot(const char *file, uint32_t type)
{
    static DcmSlotInfo info;
    printf("\n#### slot %lu of %s\n", (unsigned long)type, file != NULL ? file : "the default");
    printRecord(dcmSlotInfoGet(file, type, emptied(&info, sizeof info)), &info, sizeof info);
    printShown(dcmSlotInfoShowFilename(file, type));
}

static void card(const char *file, uint32_t type, uint32_t mode)
{
    static DcmCardInfo info;
    printf("\n#### card %lu in mode %lu of %s\n", (unsigned long)type, (unsigned long)mode,
           file != NULL ? file : "the default");
    printRecord(dcmCardInfoGet(file, type, mode, emptied(&info, sizeof info)), &info, sizeof info);
    printShown(dcmCardInfoShowFilename(file, type, mode));
}

static void vm(uint8_t id)
{
    static DcmVmPortInfo info;
    printf("\n#### VM %u\n", (unsigned)id);
    const int result = dcmVmPortInfoGet(id, emptied(&info, sizeof info));
    printRecord(result, &info, sizeof info);
    if (result == 0)
        printShown(dcmVmPortInfoShow("the default", &info));
}

static uint32_t numberOf(xmlNodePtr element, const char *name)
{
    xmlChar *text = xmlGetProp(element, (const xmlChar *)name);
    const uint32_t number = text != NULL ? (uint32_t)strtoul((const char *)text, NULL, 0) : 0;
    xmlFree(text);
    return number;
}

/* Runs the query for each type of an element: "2,0x12" are two. */
static unsigned queryElement(xmlNodePtr element)
{
    unsigned queries = 0;
    xmlChar *types = xmlGetProp(element, (const xmlChar *)"typeid");
    if (types == NULL)
        return 0;
    char *rest = NULL;
    for (char *item = strtok_r((char *)types, ",", &rest); item != NULL; item = strtok_r(NULL, ",", &rest)) {
        const uint32_t type = (uint32_t)strtoul(item, NULL, 0);
        if (xmlStrcmp(element->name, (const xmlChar *)"frame") == 0)
            frame(NULL, type);
        else if (xmlStrcmp(element->name, (const xmlChar *)"slot") == 0)
            slot(NULL, type);
        else if (xmlStrcmp(element->name, (const xmlChar *)"card") == 0)
            card(NULL, type, numberOf(element, "mode"));
        else
            continue;
        queries++;
    }
    xmlFree(types);
    return queries;
}

static unsigned queryAll(void)
{
    unsigned queries = 0;
    char buffer[4096];
    xmlDocPtr document = xmlParseFile(redirected("/etc/zorconf/device/device.xml", buffer, sizeof buffer));
    xmlNodePtr root = document != NULL ? xmlDocGetRootElement(document) : NULL;
    for (xmlNodePtr child = root != NULL ? root->children : NULL; child != NULL; child = child->next)
        if (child->type == XML_ELEMENT_NODE)
            queries += queryElement(child);
    xmlFreeDoc(document);
    return queries;
}

/* Types and files that do not exist, and a file of another kind. */
static void queryInVain(void)
{
    static const char *const files[] = {NULL, "/etc/zorconf/device/missing.xml", "/etc/zorconf/device/vm-3.xml"};
    for (size_t i = 0; i < sizeof files / sizeof files[0]; i++) {
        frame(files[i], MISSING_TYPE);
        slot(files[i], MISSING_TYPE);
        card(files[i], MISSING_TYPE, 0);
    }
    vm(MISSING_VM);
}

int main(int argc, char *argv[])
{
    if (argc != 2) {
        fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return EXIT_FAILURE;
    }
    folder = argv[1];
    const unsigned queries = queryAll();
    if (queries == 0) {
        fprintf(stderr, "%s/device.xml holds no frame, slot or card\n", folder);
        return EXIT_FAILURE;
    }
    vm(VM);
    queryInVain();
    xmlCleanupParser();
    return fflush(stdout) == 0 && !ferror(stdout) ? EXIT_SUCCESS : EXIT_FAILURE;
}
