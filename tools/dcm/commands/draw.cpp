#include "tools/dcm/check/engine.h"
#include "tools/dcm/commands/selection.h"
#include "tools/dcm/draw/back_ends.h"
#include "tools/dcm/draw/described_cards.h"
#include "tools/dcm/draw/findings.h"
#include "tools/dcm/output_file.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <set>

using namespace dcmtool;

namespace {

enum class Format : uint8_t { text, svg, png, pdf };

struct Options {
    std::string file;
    std::string output;
    std::vector<std::string> leds;
    std::vector<std::string> fits;
    bool isChecked = false;
    std::optional<RecordKind> kind;
    Number type;
    std::optional<Number> mode;
};

// By the end of the name; without a name, text for a terminal.
Format formatOf(const std::string &name)
{
    const size_t dot = name.find_last_of('.');
    const std::string end = dot == std::string::npos ? "" : name.substr(dot);
    if (name.empty() || end == ".txt")
        return Format::text;
    if (end == ".svg")
        return Format::svg;
    if (end == ".png")
        return Format::png;
    if (end == ".pdf")
        return Format::pdf;
    throw UsageError("-o takes a name that ends with .svg, .txt, .png or .pdf, not " + printable(name));
}

uint32_t numberOf(const std::string &text, const std::string &option)
{
    char *end = nullptr;
    const unsigned long number = std::strtoul(text.c_str(), &end, 0);
    const bool isNumber = !text.empty() && text[0] >= '0' && text[0] <= '9' && *end == '\0' && number <= UINT32_MAX;
    if (!isNumber)
        throw UsageError("--fit takes SLOT=CARD or SLOT=CARD:MODE, not " + printable(option));
    return static_cast<uint32_t>(number);
}

// SLOT=CARD[:MODE]
Fit fitOf(const std::string &option)
{
    const size_t equals = option.find('=');
    const size_t colon = option.find(':');
    Fit fit;
    fit.slot = numberOf(option.substr(0, equals), option);
    fit.cardType = numberOf(equals == std::string::npos ? "" : option.substr(equals + 1, colon - equals - 1), option);
    fit.mode = colon == std::string::npos ? 0 : numberOf(option.substr(colon + 1), option);
    return fit;
}

std::vector<Fit> fitsOf(const Options &options)
{
    std::vector<Fit> fits;
    std::map<uint32_t, size_t> counts;
    for (const std::string &option : options.fits) {
        fits.push_back(fitOf(option));
        const uint32_t slot = fits.back().slot;
        if (slot == 0 || slot > DCM_SLOT_MAX)
            throw UsageError("--fit takes a slot from 1 to " + std::to_string(DCM_SLOT_MAX) + ", not " +
                             printable(option));
        if (++counts[slot] > kMostFitsOfSlot)
            throw UsageError("--fit takes at most " + std::to_string(kMostFitsOfSlot) + " cards for a slot");
    }
    return fits;
}

LedStateSelection ledStatesOf(const Options &options)
{
    LedStateSelection ledStates;
    for (const std::string &led : options.leds)
        if (!ledStates.select(led))
            throw UsageError("--led takes TYPE=STATE or TYPE-ID=STATE, not " + printable(led));
    return ledStates;
}

// ---- Drawing --------------------------------------------------------------------------------------------------------

struct Drawing {
    Picture picture;
    bool isComplete = true; // no card was refused
};

class Drawer {
public:
    Drawer(const DescriptionFile &file, const Options &options, const Metrics &metrics)
        : file_(file), options_(options), type_(options.type.value), mode_(options.mode.value_or(Number()).value),
          metrics_(metrics), ledStates_(ledStatesOf(options))
    {
    }

    // None if there is nothing to draw, which is reported.
    std::optional<Drawing> draw()
    {
        if (!isDescribed(file_, {"", options_.kind, options_.type, options_.mode}))
            return std::nullopt;
        std::optional<Drawing> drawing = options_.kind == RecordKind::frame ? drawnFrame() : drawnCard();
        if (!drawing)
            return drawing;
        const std::vector<std::string> unused = ledStates_.unused();
        for (const std::string &led : unused)
            std::fprintf(stderr, "dcm: --led %s: no LED in the picture has this state\n", printable(led).c_str());
        drawing->isComplete = drawing->isComplete && unused.empty();
        return drawing;
    }

private:
    void reportFailure() const
    {
        const bool isCard = options_.kind == RecordKind::card;
        std::fprintf(stderr, "dcm: %s: the query of %s type %s%s fails\n", printable(file_.name()).c_str(),
                     isCard ? "card" : "frame", options_.type.written.c_str(),
                     isCard ? (" mode " + std::to_string(mode_)).c_str() : "");
    }

    void mark(Drawing &drawing, const Places &places, const std::string &id) const
    {
        if (options_.isChecked)
            markFindings(drawing.picture, markedIn(file_, checkFile(file_), places, id), metrics_);
    }

    std::optional<Drawing> drawnCard()
    {
        const DescribedCards cards(
            file_, [&](uint32_t type, uint32_t mode) { return type == type_ && mode == mode_; }, false);
        const CardView *view = cards.find(type_, mode_);
        if (view == nullptr) {
            reportFailure();
            return std::nullopt;
        }
        Drawing drawing = {drawCard(*view, ledStates_, metrics_)};
        mark(drawing, view->places, "card-" + hexadecimal(type_) + "-" + std::to_string(mode_));
        return drawing;
    }

    std::optional<Drawing> drawnFrame()
    {
        const std::vector<DescribedType> types = file_.types();
        const DescribedType *type = findType(types, RecordKind::frame, type_);
        const auto frame = std::make_unique<DcmFrameInfo>();
        Queries queries(file_);
        if (type == nullptr || !queries.run(*type, *frame)) {
            reportFailure();
            return std::nullopt;
        }
        std::vector<Fit> fits = fitsOf(options_);
        std::set<std::pair<uint32_t, uint32_t>> wanted;
        for (const Fit &fit : fits)
            wanted.emplace(fit.cardType, fit.mode);
        const DescribedCards cards(
            file_,
            [&](uint32_t typeId, uint32_t mode) {
                return wanted.count({typeId, mode}) != 0;
            },
            true);
        for (Fit &fit : fits) {
            fit.card = cards.find(fit.cardType, fit.mode);
            fit.name = fit.card != nullptr ? cardName(fit.card->card, fit.cardType) : hexadecimal(fit.cardType, 4);
        }
        const Places places(file_, type->element);
        FrameView view = {*frame, type_, places, cards.names()};
        const bool areFitted = fitCards(view, fits);
        for (const Fit &fit : fits)
            if (!fit.refusal.empty())
                std::fprintf(stderr, "dcm: %s refused: %s\n", fit.name.c_str(), fit.refusal.c_str());
        view.fits = std::move(fits);
        Drawing drawing = {drawFrame(view, ledStates_, metrics_), areFitted};
        mark(drawing, places, "frame-" + hexadecimal(type_));
        return drawing;
    }

    const DescriptionFile &file_;
    const Options &options_;
    uint32_t type_;
    uint32_t mode_;
    const Metrics &metrics_;
    LedStateSelection ledStates_;
};

// ---- The file -------------------------------------------------------------------------------------------------------

std::optional<std::string> contentOf(const Picture &picture, Format format)
{
    if (format == Format::text)
        return asText(picture);
    std::string content = asSvg(picture);
    if (format == Format::svg)
        return content;
    std::string fault;
    content = format == Format::png ? asPng(content, fault) : asPdf(content, fault);
    if (fault.empty())
        return content;
    std::fprintf(stderr, "dcm: %s\n", printable(fault).c_str());
    return std::nullopt;
}

Exit runDraw(const Options &options)
{
    if (!options.kind)
        throw UsageError("draw takes frame or card");
    if (!options.fits.empty() && *options.kind != RecordKind::frame)
        throw UsageError("--fit is for a frame");
    const Format format = formatOf(options.output);
    static_cast<void>(fitsOf(options));
    static_cast<void>(ledStatesOf(options));
    const OwnOutput output;
    const auto file = openDescription(options.file);
    if (file == nullptr)
        return kUnreadable;
    const auto drawing = Drawer(*file, options, format == Format::text ? kCells : kPixels).draw();
    if (!drawing)
        return kQueryFailed;
    const std::optional<std::string> content = contentOf(drawing->picture, format);
    if (!content)
        return kQueryFailed;
    const bool isWritten = options.output.empty() ? output.print(*content) : writeFile(options.output, *content);
    return isWritten && drawing->isComplete ? kSuccess : kQueryFailed;
}

Command kindCommand(RecordKind kind, const std::shared_ptr<Options> &options)
{
    const std::string name = kindName(kind);
    // The command one level up runs afterwards.
    const auto run = [options, kind] {
        options->kind = kind;
        return kSuccess;
    };
    const bool isFrame = kind == RecordKind::frame;
    Command command = {name,
                       isFrame ? "A chassis with its slots, fans and supplies"
                               : "The panel of a card in one of its modes",
                       {{"TYPE", "Type id of the " + name, &options->type}},
                       run};
    if (isFrame)
        command.arguments.push_back(
            {"--fit", "SLOT=CARD or SLOT=CARD:MODE puts a card into a slot; may be repeated", &options->fits, "FIT"});
    else
        command.arguments.push_back({"MODE", "Mode of the card [0]", &options->mode});
    return command;
}

} // namespace

Command drawCommand()
{
    const auto options = std::make_shared<Options>();
    return {
        "draw",
        "Draw the front of a chassis or card",
        {fileOption(options->file, ", - for standard input"),
         {"-o,--output", "File to write: .svg, .txt, .png or .pdf [text on standard output]", &options->output, "FILE"},
         {"--led", "TYPE=STATE or TYPE-ID=STATE shows LEDs in a state; may be repeated", &options->leds, "LED"},
         {"--check", "Mark what dcm check finds", &options->isChecked}},
        [options] { return runDraw(*options); },
        "",
        {kindCommand(RecordKind::frame, options), kindCommand(RecordKind::card, options)}};
}
