#include "card/card_report.h"
#include "tools/dcm/command.h"
#include "tools/dcm/query_report.h"

#include <memory>

void addCardCommand(CLI::App &app, Exit &exit)
{
    struct Options : DeviceOptions {
        uint32_t mode = 0;
    };
    CLI::App *command = app.add_subcommand("card", "Print the report of a card type in one of its modes");
    const auto options = std::make_shared<Options>();
    options->addTo(*command, "card");
    command->add_option("MODE", options->mode, "Mode of the card [0]")->type_name("");
    command->callback([options, &exit] {
        const auto get = [&](const char *file, DcmCardInfo *info) {
            return dcmCardInfoGet(file, options->type, options->mode, info);
        };
        exit = dcmtool::printQuery<DcmCardInfo>(options->fileName(), get, dcm::printCardAnswer);
    });
}
