// The language server over standard input and output.
#include "tools/dcm/commands/command.h"
#include "tools/dcm/lsp/server.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/uri.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

using namespace dcmtool;

namespace {

// Whether something can be read at once.
bool hasInput()
{
    struct pollfd input = {STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, 0) > 0;
}

Exit serve()
{
    const OwnOutput output;
    bool isWritten = true;
    dcmlsp::Server server(
        [&](const dcmlsp::Json &message) { isWritten = isWritten && output.print(dcmlsp::framed(message)); },
        DCM_VERSION, uriOfRulePages());
    dcmlsp::MessageReader reader;
    std::array<char, size_t{1} << 16> block = {};
    while (isWritten) {
        while (const auto message = reader.next()) {
            server.receive(*message);
            if (!server.isRunning())
                return !isWritten ? kCannotWrite : server.hasShutDown() ? kSuccess : kQueryFailed;
        }
        if (!hasInput())
            server.publish();
        const ssize_t count = read(STDIN_FILENO, block.data(), block.size());
        if (count < 0 && errno == EINTR)
            continue;
        // An editor that has ended without asking the server to.
        if (count <= 0) {
            server.publish();
            return isWritten ? kQueryFailed : kCannotWrite;
        }
        reader.add({block.data(), static_cast<size_t>(count)});
    }
    return kCannotWrite;
}

} // namespace

Command lspCommand()
{
    const auto isStdio = std::make_shared<bool>(false);
    return {"lsp",
            "Serve editors as a language server, over standard input and output",
            {{"--stdio", "What editors tend to pass; there is no other way", isStdio.get()}},
            [isStdio] { return serve(); },
            "Exit status: 0 after the requests to shut down and exit, 1 without them, 64 wrong usage,\n"
            "71 out of memory, 74 standard output cannot be written."};
}
