#include "tools/dcm/check/baseline.h"
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/fixer.h"
#include "tools/dcm/check/inputs.h"
#include "tools/dcm/check/output.h"
#include "tools/dcm/check/pages.h"
#include "tools/dcm/check/registry.h"
#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/input_file.h"
#include "tools/dcm/description/replace_file.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/process.h"
#include "tools/dcm/unified_diff.h"
#include "tools/dcm/uri.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

using namespace dcmtool;

namespace {

enum Format : uint32_t { kText, kGcc, kGithub, kCheckstyle, kJson, kSarif };
enum Colour : uint32_t { kAutomatic, kAlways, kNever };

struct Options {
    std::vector<std::string> files;
    std::vector<std::string> warnings;
    std::vector<std::string> only; // these checks
    uint32_t format = kText;
    uint32_t colour = kAutomatic;
    uint32_t jobs = 1;
    std::string fixed; // which fixes are applied; empty: none
    bool isDiff = false;
    bool areListed = false;
    bool hasInfos = false;
    std::string standardInput; // what it is called
    std::string baseline;
    bool isWithoutConfiguration = false;
    bool areAllShown = false;
    std::string explained;
};

// ---- Names of checks ------------------------------------------------------------------------------------------------

[[noreturn]] void refuseRule(const std::string &name)
{
    std::vector<std::string> names;
    for (const Rule *rule : allRules())
        names.emplace_back(rule->name);
    refuseWord(name, "name of a check", names, "dcm check --list-checks");
}

// Every check, with a prefix before its name.
void addChecks(const std::string &before, Candidates &candidates)
{
    for (const Rule *rule : allRules())
        candidates.push_back({before + rule->name, dcmtool::summaryOf(*rule)});
}

Candidates warningCandidates(const PartialLine & /*line*/)
{
    Candidates candidates = {{"error", "Makes errors of all warnings"}};
    addChecks("no-", candidates);
    addChecks("error=", candidates);
    return candidates;
}

Candidates ruleCandidates(const PartialLine & /*line*/)
{
    Candidates candidates;
    addChecks("", candidates);
    return candidates;
}

Candidates explainedCandidates(const PartialLine & /*line*/)
{
    Candidates candidates = {{"all", "Explains every check"}};
    addChecks("", candidates);
    return candidates;
}

// ---- -W -------------------------------------------------------------------------------------------------------------

// What is made of each check's findings, by the command line before the configuration of a file.
struct Warnings {
    std::set<const Rule *> off;
    std::set<const Rule *> errors;
    std::set<const Rule *> only; // empty for all
    bool areErrors = false;

    explicit Warnings(const Options &options)
    {
        for (const std::string &option : options.warnings)
            take(option);
        for (const std::string &name : options.only)
            only.insert(named(name));
        if (!only.empty())
            only.insert({&dcmtool::kNotXml, &dcmtool::kUnreadable});
    }

    bool isOff(const Rule *rule, const Configuration &configuration) const
    {
        if (off.count(rule) != 0 || (!only.empty() && only.count(rule) == 0))
            return true;
        const bool isNamed = errors.count(rule) != 0 || only.count(rule) != 0;
        const auto configured = configuration.severities.find(rule);
        return configured != configuration.severities.end() && !configured->second && !isNamed;
    }

    void apply(std::vector<Finding> &findings, const Configuration &configuration) const
    {
        const auto isLeftOut = [&](const Finding &finding) { return isOff(finding.rule, configuration); };
        findings.erase(std::remove_if(findings.begin(), findings.end(), isLeftOut), findings.end());
        for (Finding &finding : findings) {
            const auto configured = configuration.severities.find(finding.rule);
            if (configured != configuration.severities.end() && configured->second)
                finding.severity = *configured->second;
            if ((areErrors && finding.severity == Severity::warning) || errors.count(finding.rule) != 0)
                finding.severity = Severity::error;
        }
    }

private:
    static const Rule *named(const std::string &name)
    {
        if (const Rule *rule = findRule(name))
            return rule;
        refuseRule(name);
    }

    static const Rule *silenced(const std::string &name)
    {
        const Rule *rule = named(name);
        if (!rule->canBeSilenced())
            throw UsageError(name + " cannot be left out: the query of such a description fails");
        return rule;
    }

    void take(const std::string &option)
    {
        if (option == "error")
            areErrors = true;
        else if (option.compare(0, 6, "error=") == 0)
            errors.insert(named(option.substr(6)));
        else if (option.compare(0, 3, "no-") == 0)
            off.insert(silenced(option.substr(3)));
        else
            throw UsageError(inQuotes(option) + " is not a valid value for -W; expected no-NAME, error or error=NAME");
    }
};

// ---- Progress -------------------------------------------------------------------------------------------------------

// Starts a thread; none if the system cannot start another one.
template <class Work> std::thread startThread(const Work &work)
{
    try {
        return std::thread([work] {
            prepareThread();
            work();
        });
    } catch (const std::system_error &) {
        return {};
    }
}

// A progress line on a terminal, printed by a thread of its own.
class Progress {
public:
    Progress(const std::vector<Input> &files, bool isShown) : files_(files)
    {
        if (isShown)
            thread_ = startThread([this] { show(); });
    }
    ~Progress()
    {
        if (!thread_.joinable())
            return;
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            done_ = files_.size();
        }
        isOver_.notify_one();
        thread_.join();
    }
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    // Updates the number of files. At the end, the line is removed, because the findings follow.
    void advance(size_t done)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        done_ = done;
        clear();
    }

private:
    void show()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        while (!isOver_.wait_for(lock, std::chrono::milliseconds(400), [this] { return done_ == files_.size(); })) {
            std::fprintf(stderr, "\r\x1b[Kchecking %s (%zu of %zu)", printable(files_[done_].name).c_str(), done_ + 1,
                         files_.size());
            isThere_ = true;
        }
        clear();
    }
    void clear()
    {
        if (isThere_)
            std::fputs("\r\x1b[K", stderr);
        isThere_ = false;
    }

    const std::vector<Input> &files_;
    std::mutex mutex_;
    std::condition_variable isOver_;
    size_t done_ = 0;
    bool isThere_ = false;
    std::thread thread_;
};

// ---- Fixing ---------------------------------------------------------------------------------------------------------

constexpr char kCertain[] = "certain";
constexpr char kAll[] = "all";

// A file before the options are applied to its findings.
struct CheckedFile {
    FileReport report;
    FixedFile fixed;
    const Configuration *configuration = nullptr;
    std::string fault; // why nothing has been fixed
    bool isWritten = true;
};

FixedFile fixesOf(const CheckedFile &checked, const Options &options, const Warnings &warnings)
{
    const std::vector<Finding> &findings = checked.report.findings;
    const bool areAll = options.fixed == kAll;
    const auto isWanted = [&](const Finding &finding, const Fix &fix) {
        return (areAll || fix.confidence == Confidence::certain) &&
               !warnings.isOff(finding.rule, *checked.configuration);
    };
    const auto hasWanted = [&](const Finding &finding) {
        return std::any_of(finding.fixes.begin(), finding.fixes.end(),
                           [&](const Fix &fix) { return isWanted(finding, fix); });
    };
    if (std::none_of(findings.begin(), findings.end(), hasWanted))
        return {};
    // That of the result takes the same memory: new pages would cost as much as parsing.
    checked.report.file->dropTree();
    return applyFixes(*checked.report.file, findings, isWanted, &checked.configuration->knownNames);
}

// Whether the file has changed, and its findings then.
void fix(CheckedFile &checked, const Options &options, const Warnings &warnings)
{
    const DescriptionFile &file = *checked.report.file;
    // A file that is not well-formed has a finding.
    if (file.state() == DescriptionFile::State::parsed)
        checked.fault = faultOfEditing(file);
    if (!checked.fault.empty()) {
        checked.fault = "nothing is fixed: " + checked.fault;
        return;
    }
    checked.fixed = fixesOf(checked, options, warnings);
    if (checked.fixed.file == nullptr || options.isDiff)
        return;
    FileReport &report = checked.report;
    const std::string fault = replaceFile(report.file->name(), report.file->text(), checked.fixed.file->text());
    checked.isWritten = fault.empty();
    if (!checked.isWritten) {
        checked.fault = "cannot be written: " + fault;
        return;
    }
    report.file = std::move(checked.fixed.file);
    report.findings = std::move(checked.fixed.findings);
    report.allowed = std::move(checked.fixed.allowed);
    report.fixed = checked.fixed.count;
}

std::string diffOf(const CheckedFile &checked)
{
    const DescriptionFile &file = *checked.report.file;
    if (checked.fixed.file == nullptr)
        return "";
    return unifiedDiff(printable(file.name()), file.text(), checked.fixed.file->text());
}

// Reports on standard error the fixes that were not applied.
std::string unfixedText(const CheckedFile &checked)
{
    const std::string name = printable(checked.report.file->name());
    std::string text;
    for (const DroppedFix &dropped : checked.fixed.dropped)
        text += name + ":" + std::to_string(dropped.place.line) + ":" + std::to_string(dropped.place.column) +
                ": not fixed: " + printable(dropped.title) + ": " + dropped.reason + "\n";
    if (!checked.fixed.isComplete)
        text += "dcm: " + name + ": there is more to fix: run the command again\n";
    if (!checked.fault.empty())
        text += "dcm: " + name + ": " + checked.fault + "\n";
    return text;
}

// ---- Checking -------------------------------------------------------------------------------------------------------

CheckedFile check(const Input &input, const Options &options, const Warnings &warnings)
{
    CheckedFile checked;
    checked.configuration = input.configuration;
    checked.report.file = input.open();
    checked.report.findings =
        checkFile(*checked.report.file, &checked.report.allowed, &input.configuration->knownNames);
    if (!options.fixed.empty())
        fix(checked, options, warnings);
    warnings.apply(checked.report.findings, *input.configuration);
    warnings.apply(checked.report.allowed, *input.configuration);
    return checked;
}

// Checks files, several at once, and returns the reports in the order of the files.
class Workers {
public:
    Workers(const std::vector<Input> &inputs, const Options &options, const Warnings &warnings)
        : inputs_(inputs), options_(options), warnings_(warnings), files_(inputs.size()), isDone_(inputs.size())
    {
        const size_t wanted = options.jobs > 1 ? std::min<size_t>(options.jobs, files_.size()) : 0;
        threads_.reserve(wanted);
        while (threads_.size() < wanted) {
            std::thread thread = startThread([this] { work(); });
            // The threads that could be started do all the work; without any, take() does it.
            if (!thread.joinable())
                break;
            threads_.push_back(std::move(thread));
        }
    }
    ~Workers()
    {
        next_ = files_.size();
        for (std::thread &thread : threads_)
            thread.join();
    }
    Workers(const Workers &) = delete;
    Workers &operator=(const Workers &) = delete;

    CheckedFile take(size_t index)
    {
        if (threads_.empty())
            return check(inputs_[index], options_, warnings_);
        std::unique_lock<std::mutex> lock(mutex_);
        hasBeenDone_.wait(lock, [&] { return isDone_[index]; });
        return std::move(files_[index]);
    }

private:
    void work()
    {
        for (size_t index = next_++; index < files_.size(); index = next_++) {
            CheckedFile checked = check(inputs_[index], options_, warnings_);
            const std::lock_guard<std::mutex> lock(mutex_);
            files_[index] = std::move(checked);
            isDone_[index] = true;
            hasBeenDone_.notify_one();
        }
    }

    const std::vector<Input> &inputs_;
    const Options &options_;
    const Warnings &warnings_;
    std::atomic<size_t> next_{0};
    std::mutex mutex_;
    std::condition_variable hasBeenDone_;
    std::vector<CheckedFile> files_;
    std::vector<bool> isDone_;
    std::vector<std::thread> threads_;
};

Exit exitOf(const Totals &totals)
{
    if (totals.unread > 0)
        return Exit::kUnreadable;
    if (totals.errors > 0)
        return kErrors;
    return totals.warnings > 0 ? kWarnings : kSuccess;
}

bool isColoured(const Options &options, const OwnOutput &output)
{
    return options.colour == kAutomatic ? output.isTerminal() && std::getenv("NO_COLOR") == nullptr
                                        : options.colour == kAlways;
}

// What is printed of each file.
std::string partOf(const CheckedFile &checked, const Options &options, const TextStyle &style)
{
    if (options.isDiff)
        return diffOf(checked);
    switch (options.format) {
    case kText:
        return asText(checked.report, style);
    case kGcc:
        return asGcc(checked.report, style);
    case kGithub:
        return asGithub(checked.report, style);
    default:
        return "";
    }
}

// The text after the last file's findings, or instead of them.
std::string endOf(const Options &options, const std::vector<FileReport> &reports, const Totals &totals,
                  const TextStyle &style)
{
    if (options.isDiff)
        return "";
    switch (options.format) {
    case kText:
        return summaryOf(totals, style);
    case kCheckstyle:
        return asCheckstyle(reports, style);
    case kJson:
        return asJson(reports);
    case kSarif:
        return asSarif(reports, uriOfRulePages());
    default:
        return "";
    }
}

// Whether the format is one document, in which nothing is printed before the last file has been checked.
bool isDocument(uint32_t format)
{
    return format >= kCheckstyle;
}

// The files of the command line and those in its folders.
std::vector<Input> inputsOf(const Options &options, Configurations &configurations)
{
    std::vector<Input> inputs;
    for (const std::string &name : options.files) {
        const std::string fault = addInputs(name, options.standardInput, configurations, inputs);
        if (!fault.empty())
            throw UsageError(fault);
    }
    return inputs;
}

Exit runCheck(const Options &options, Baseline &baseline)
{
    const Warnings warnings(options);
    Configurations configurations(!options.isWithoutConfiguration);
    const std::vector<Input> inputs = inputsOf(options, configurations);
    OwnOutput output;
    const TextStyle style = {isColoured(options, output), options.hasInfos, options.areAllShown};
    Progress progress(inputs, isatty(STDERR_FILENO) == 1);
    Totals totals;
    // The last report is not destroyed: that would cost a tenth of the run.
    static std::vector<FileReport> &reports = *new std::vector<FileReport>;
    bool isWritten = true;
    Workers workers(inputs, options, warnings);
    if (inputs.empty() && !output.print(endOf(options, reports, totals, style)))
        return kCannotWrite;
    for (size_t i = 0; i < inputs.size(); i++) {
        const bool isLast = i + 1 == inputs.size();
        CheckedFile checked = workers.take(i);
        FileReport &report = checked.report;
        baseline.apply(report.file->name(), report.findings);
        totals.add(report);
        isWritten = isWritten && checked.isWritten;
        const std::string complaints = unfixedText(checked);
        std::string text = partOf(checked, options, style);
        if (isDocument(options.format) || isLast)
            reports.push_back(std::move(report));
        if (isLast)
            text += endOf(options, reports, totals, style);
        progress.advance(i + 1);
        std::fputs(complaints.c_str(), stderr);
        if (!(options.isDiff ? output.printFile(text) : output.print(text)))
            return kCannotWrite;
    }
    return isWritten ? exitOf(totals) : kCannotWrite;
}

// Whether the findings of an earlier run could be read; standard error says why not.
bool read(const std::string &name, Baseline &baseline)
{
    std::string text;
    std::string fault = readInput(name, text);
    if (fault.empty() && !baseline.take(text))
        fault = "not the output of 'dcm check --format json'";
    if (!fault.empty())
        std::fprintf(stderr, "dcm: %s: %s\n", printable(name).c_str(), fault.c_str());
    return fault.empty();
}

// ---- What there is to check -----------------------------------------------------------------------------------------

std::string explained(const Options &options)
{
    std::string text;
    for (const Rule *rule : allRules())
        if (options.explained == rule->name || options.explained == "all")
            text += (text.empty() ? "" : "\n") + pageAsText(*rule);
    if (text.empty())
        refuseRule(options.explained);
    return text;
}

Exit run(const Options &options)
{
    if (options.areListed || !options.explained.empty()) {
        const std::string text = options.areListed ? listOfRules() : explained(options);
        return OwnOutput().print(text) ? kSuccess : kCannotWrite;
    }
    if (options.files.empty())
        throw UsageError("FILE is missing");
    if (!options.fixed.empty() && options.fixed != kCertain && options.fixed != kAll)
        refuseWord(options.fixed, "value for --fix", {kCertain, kAll});
    const bool hasInput = std::find(options.files.begin(), options.files.end(), "-") != options.files.end();
    if (!options.fixed.empty() && !options.isDiff && hasInput)
        throw UsageError("--fix changes files; standard input goes with --diff");
    if (!options.standardInput.empty() && !hasInput)
        throw UsageError("--stdin-filename names standard input, which is the FILE -");
    if (!options.fixed.empty() && !options.baseline.empty())
        throw UsageError("--baseline leaves out findings, which --fix and --diff would fix");
    Baseline baseline;
    if (!options.baseline.empty() && !read(options.baseline, baseline))
        return Exit::kUnreadable;
    return runCheck(options, baseline);
}

} // namespace

Command checkCommand()
{
    const auto options = std::make_shared<Options>();
    const Words formats = {{"text", kText}, {"gcc", kGcc},    {"github", kGithub}, {"checkstyle", kCheckstyle},
                           {"json", kJson}, {"sarif", kSarif}};
    const Words colours = {{"auto", kAutomatic}, {"always", kAlways}, {"never", kNever}};
    return {"check",
            "Check descriptions for mistakes",
            {{"FILE", "Descriptions to check, folders of them, - for standard input", &options->files},
             {"-f,--file", "The same as FILE", &options->files, "FILE"},
             {"-W",
              "no-NAME leaves a check out, error=NAME makes its findings errors, error all warnings",
              &options->warnings,
              "WHAT",
              {},
              {},
              warningCandidates},
             {"--only", "Only do this check", &options->only, "NAME", {}, {}, ruleCandidates},
             {"--info", "Show also what is probably not meant, and works", &options->hasInfos},
             {"--all", "Show each of many equal findings", &options->areAllShown},
             {"--format", "text, gcc, github, checkstyle, json or sarif [text]", &options->format, "FORMAT", formats},
             {"--color", "auto, always or never [auto]", &options->colour, "WHEN", colours},
             {"--baseline", "Leave out the findings of an earlier run, which is its JSON output", &options->baseline,
              "FILE"},
             {"--no-config", "Do without the file .dcm-check", &options->isWithoutConfiguration},
             {"--stdin-filename", "What standard input is called", &options->standardInput, "FILE"},
             {"-j,--jobs", "How many files to check at once [1]", &options->jobs, "N", {}, {1, 256}},
             {"--fix",
              "Apply certain fixes, or with --fix=all also probable ones",
              &options->fixed,
              "",
              {},
              {},
              {},
              kCertain},
             {"--diff", "Only show what --fix would change", &options->isDiff},
             {"--list-checks", "List the checks", &options->areListed},
             {"--explain",
              "Explain a check, with examples; all explains every check",
              &options->explained,
              "NAME",
              {},
              {},
              explainedCandidates}},
            [options] {
                if (options->isDiff && options->fixed.empty())
                    options->fixed = kCertain;
                return run(*options);
            },
            "Exit status: 0 nothing found, 1 warnings, 2 errors, 64 wrong usage or configuration,\n"
            "66 a file cannot be read or is not well-formed XML, 71 out of memory,\n"
            "74 the output cannot be written."};
}
