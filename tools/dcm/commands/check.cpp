#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/fixer.h"
#include "tools/dcm/check/output.h"
#include "tools/dcm/check/pages.h"
#include "tools/dcm/check/registry.h"
#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/replace_file.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/process.h"
#include "tools/dcm/unified_diff.h"

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

enum Format : uint32_t { kText, kJson, kSarif };
enum Colour : uint32_t { kAutomatic, kAlways, kNever };

struct Options {
    std::vector<std::string> files;
    std::vector<std::string> warnings;
    uint32_t format = kText;
    uint32_t colour = kAutomatic;
    uint32_t jobs = 1;
    std::string fixed; // which fixes are applied; empty is none
    bool isDiff = false;
    bool areListed = false;
    bool hasInfos = false;
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

// Every check, with something in front of its name.
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

Candidates explainedCandidates(const PartialLine & /*line*/)
{
    Candidates candidates = {{"all", "Explains every check"}};
    addChecks("", candidates);
    return candidates;
}

// ---- -W -------------------------------------------------------------------------------------------------------------

// What is made of each check's findings.
struct Warnings {
    std::set<const Rule *> off;
    std::set<const Rule *> errors;
    bool areErrors = false;

    explicit Warnings(const std::vector<std::string> &options)
    {
        for (const std::string &option : options)
            take(option);
    }

    bool isOff(const Finding &finding) const { return off.count(finding.rule) != 0; }

    void apply(std::vector<Finding> &findings) const
    {
        findings.erase(
            std::remove_if(findings.begin(), findings.end(), [&](const Finding &finding) { return isOff(finding); }),
            findings.end());
        for (Finding &finding : findings)
            if ((areErrors && finding.severity == Severity::warning) || errors.count(finding.rule) != 0)
                finding.severity = Severity::error;
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
            throw UsageError(quoted(option) + " is not a valid value for -W; expected no-NAME, error or error=NAME");
    }
};

// ---- Progress -------------------------------------------------------------------------------------------------------

// Starts a thread; none when the system has no room for another.
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

// A line on a terminal for those who wait, shown from a thread of its own.
class Progress {
public:
    Progress(const std::vector<std::string> &files, bool isShown) : files_(files)
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

    // So many files are done: the line goes, for what was found takes its place.
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
            std::fprintf(stderr, "\r\x1b[Kchecking %s (%zu of %zu)", printable(files_[done_]).c_str(), done_ + 1,
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

    const std::vector<std::string> &files_;
    std::mutex mutex_;
    std::condition_variable isOver_;
    size_t done_ = 0;
    bool isThere_ = false;
    std::thread thread_;
};

// ---- Fixing ---------------------------------------------------------------------------------------------------------

constexpr char kCertain[] = "certain";
constexpr char kAll[] = "all";

// A file before its findings are what the options make of them.
struct CheckedFile {
    FileReport report;
    FixedFile fixed;
    std::string fault; // why nothing has been fixed
    bool isWritten = true;
};

FixedFile fixesOf(const CheckedFile &checked, const Options &options, const Warnings &warnings)
{
    const bool areAll = options.fixed == kAll;
    return applyFixes(*checked.report.file, checked.report.findings, [&](const Finding &finding, const Fix &fix) {
        return (areAll || fix.confidence == Confidence::certain) && !warnings.isOff(finding);
    });
}

// Has the file changed, and what is found in it then.
void fix(CheckedFile &checked, const Options &options, const Warnings &warnings)
{
    const DescriptionFile &file = *checked.report.file;
    // What is not well-formed is a finding.
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
    report.fixed = checked.fixed.count;
}

std::string diffOf(const CheckedFile &checked)
{
    const DescriptionFile &file = *checked.report.file;
    if (checked.fixed.file == nullptr)
        return "";
    return unifiedDiff(printable(file.name()), file.text(), checked.fixed.file->text());
}

// What standard error says of that which could be fixed and is not.
std::string whatIsNotFixed(const CheckedFile &checked)
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

CheckedFile check(const std::string &name, const Options &options, const Warnings &warnings)
{
    CheckedFile checked;
    checked.report.file = DescriptionFile::open(name);
    checked.report.findings = checkFile(*checked.report.file);
    if (!options.fixed.empty())
        fix(checked, options, warnings);
    warnings.apply(checked.report.findings);
    return checked;
}

// Checks files, several at once, and hands out the reports in the order of the files.
class Workers {
public:
    Workers(const Options &options, const Warnings &warnings)
        : options_(options), warnings_(warnings), files_(options.files.size()), isDone_(options.files.size())
    {
        const size_t wanted = options.jobs > 1 ? std::min<size_t>(options.jobs, files_.size()) : 0;
        threads_.reserve(wanted);
        while (threads_.size() < wanted) {
            std::thread thread = startThread([this] { work(); });
            // Those that are there do the work of all; without any, take() does it.
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
            return check(options_.files[index], options_, warnings_);
        std::unique_lock<std::mutex> lock(mutex_);
        hasBeenDone_.wait(lock, [&] { return isDone_[index]; });
        return std::move(files_[index]);
    }

private:
    void work()
    {
        for (size_t index = next_++; index < files_.size(); index = next_++) {
            CheckedFile checked = check(options_.files[index], options_, warnings_);
            const std::lock_guard<std::mutex> lock(mutex_);
            files_[index] = std::move(checked);
            isDone_[index] = true;
            hasBeenDone_.notify_one();
        }
    }

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

// What is printed behind the last file's findings as text, or in their place.
std::string endOf(uint32_t format, const std::vector<FileReport> &reports, const Totals &totals, const TextStyle &style)
{
    return format == kText ? summaryOf(totals, style) : format == kJson ? asJson(reports) : asSarif(reports);
}

Exit runCheck(const Options &options)
{
    const Warnings warnings(options.warnings);
    OwnOutput output;
    const TextStyle style = {isColoured(options, output), options.hasInfos, options.areAllShown};
    Progress progress(options.files, isatty(STDERR_FILENO) == 1);
    Totals totals;
    // What is left at the end goes with the process: to take trees apart costs a tenth of all.
    static std::vector<FileReport> &reports = *new std::vector<FileReport>;
    bool isWritten = true;
    Workers workers(options, warnings);
    for (size_t i = 0; i < options.files.size(); i++) {
        const bool isLast = i + 1 == options.files.size();
        CheckedFile checked = workers.take(i);
        FileReport &report = checked.report;
        totals.add(report);
        isWritten = isWritten && checked.isWritten;
        const std::string complaints = whatIsNotFixed(checked);
        std::string text = options.isDiff ? diffOf(checked) : options.format == kText ? asText(report, style) : "";
        if (options.format != kText || isLast)
            reports.push_back(std::move(report));
        if (isLast && !options.isDiff)
            text += endOf(options.format, reports, totals, style);
        progress.advance(i + 1);
        std::fputs(complaints.c_str(), stderr);
        if (!(options.isDiff ? output.printFile(text) : output.print(text)))
            return kCannotWrite;
    }
    return isWritten ? exitOf(totals) : kCannotWrite;
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
    return runCheck(options);
}

} // namespace

Command checkCommand()
{
    const auto options = std::make_shared<Options>();
    const Words formats = {{"text", kText}, {"json", kJson}, {"sarif", kSarif}};
    const Words colours = {{"auto", kAutomatic}, {"always", kAlways}, {"never", kNever}};
    return {"check",
            "Find what is wrong in descriptions",
            {{"FILE", "Descriptions to check, - for standard input", &options->files},
             {"-f,--file", "The same as FILE", &options->files, "FILE"},
             {"-W",
              "no-NAME leaves a check out, error=NAME makes its findings errors, error all warnings",
              &options->warnings,
              "WHAT",
              {},
              {},
              warningCandidates},
             {"--info", "Show also what is probably not meant, and works", &options->hasInfos},
             {"--all", "Show each of many equal findings", &options->areAllShown},
             {"--format", "text, json or sarif [text]", &options->format, "FORMAT", formats},
             {"--color", "auto, always or never [auto]", &options->colour, "WHEN", colours},
             {"-j,--jobs", "How many files to check at once [1]", &options->jobs, "N", {}, {1, 256}},
             {"--fix",
              "Fix what is certain, or with --fix=all also what is probable",
              &options->fixed,
              "",
              {},
              {},
              {},
              kCertain},
             {"--diff", "Only show what --fix would change", &options->isDiff},
             {"--list-checks", "List the checks", &options->areListed},
             {"--explain",
              "Explain a check: why it matters, and examples; or all",
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
            "Exit status: 0 nothing found, 1 warnings, 2 errors, 64 wrong usage,\n"
            "66 a file cannot be read or is not well-formed XML, 71 out of memory,\n"
            "74 the output cannot be written."};
}
