// A process in C++ with a platform of its own: prints the panel ports of card 0x0301 of the file that it is given, and
// succeeds when the library finds as many as the card announces.
#include <dcm.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

// The platform. The library brings no declarations of it.
extern "C" {

void loggingLogOutput(int, int, int, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
}

int errnoGet()
{
    return errno;
}

uint32_t zorSelfSysIndex()
{
    return 1;
}

int hwalEttPhy2Logical(const DcmEttInfo *physical, uint32_t *logicalIndex)
{
    *logicalIndex = physical->ettIndex;
    return 0;
}
}

int main(int argc, char *argv[])
{
    static DcmCardInfo card;
    if (argc != 2 || dcmCardInfoGet(argv[1], 0x0301, 0, &card) != 0)
        return 1;

    int ports = 0;
    for (const DcmPanelIfInfo &port : card.panelIf) {
        if (port.drvType == 0)
            continue;
        std::printf("port %u: %s\n", unsigned{port.portId}, dcmPhyTypeVal2Str(port.phyType));
        ports++;
    }
    return ports == card.pannelIfNum ? 0 : 1;
}
