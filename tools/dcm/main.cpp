// dcm: reads device descriptions on an engineer's machine as the network element reads them.
#include "tools/dcm/commands/command.h"
#include "tools/dcm/process.h"

int main(int argc, char **argv)
{
    try {
        dcmtool::prepareProcess();
        return dcmtool::runCommandLine({frameCommand(), slotCommand(), cardCommand(), vmCommand(), checkCommand(),
                                        formatCommand(), listCommand(), exportCommand(), showCommand(), drawCommand(),
                                        pageCommand(), diffCommand(), gitSetupCommand(), explainCommand(),
                                        wordsCommand(), newCommand(), lspCommand()},
                                       argc, argv);
    } catch (...) {
        // Everything else is caught earlier: only a length beyond all memory gets here.
        dcmtool::runOutOfMemory();
    }
}
