#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/output.h"
#include "tools/dcm/command.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/process.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

using namespace dcmtool;

namespace {

enum class Format { text, json, sarif, markdown };
enum class Colour { automatic, always, never };

struct Options {
    std::vector<std::string> files;
    std::vector<std::string> warnings;
    Format format = Format::text;
    Colour colour = Colour::automatic;
    unsigned jobs = 1;
    bool areListed = false;
    std::string explained;
};

// ---- -W -------------------------------------------------------------------------------------------------------------

// What is made of each check's findings.
struct Warnings {
    std::set<const Check *> off;
    std::set<const Check *> errors;
    bool areErrors = false;

    explicit Warnings(const std::vector<std::string> &options)
    {
        for (const std::string &option : options)
            take(option);
    }

    void apply(std::vector<Finding> &findings) const
    {
        findings.erase(std::remove_if(findings.begin(), findings.end(),
                                      [&](const Finding &finding) { return off.count(finding.check) != 0; }),
                       findings.end());
        for (Finding &finding : findings)
            if (areErrors || errors.count(finding.check) != 0)
                finding.severity = Severity::error;
    }

private:
    static const Check *named(const std::string &name)
    {
        if (const Check *check = findCheck(name))
            return check;
        std::vector<std::string> names;
        for (const Checks &checks : allChecks())
            for (const Check &check : checks)
                names.emplace_back(check.name);
        const std::string meant = nearest(name, names);
        throw CLI::ValidationError("no such check: " + name +
                                   (meant.empty() ? " (see --list-checks)" : " (did you mean " + meant + "?)"));
    }

    void take(const std::string &option)
    {
        if (option == "error")
            areErrors = true;
        else if (option.compare(0, 6, "error=") == 0)
            errors.insert(named(option.substr(6)));
        else if (option.compare(0, 3, "no-") == 0)
            off.insert(named(option.substr(3)));
        else
            throw CLI::ValidationError("-W takes no-NAME, error or error=NAME, not " + option);
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

// ---- Checking -------------------------------------------------------------------------------------------------------

FileReport reportOn(const std::string &name, const Warnings &warnings)
{
    FileReport report;
    report.file = DescriptionFile::open(name);
    report.findings = checkFile(*report.file);
    warnings.apply(report.findings);
    return report;
}

// Checks files, several at once, and hands out the reports in the order of the files.
class Workers {
public:
    Workers(const std::vector<std::string> &files, unsigned jobs, const Warnings &warnings)
        : files_(files), warnings_(warnings), reports_(files.size()), isDone_(files.size())
    {
        const size_t wanted = jobs > 1 ? std::min<size_t>(jobs, files.size()) : 0;
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

    FileReport take(size_t index)
    {
        if (threads_.empty())
            return reportOn(files_[index], warnings_);
        std::unique_lock<std::mutex> lock(mutex_);
        hasBeenDone_.wait(lock, [&] { return isDone_[index]; });
        return std::move(reports_[index]);
    }

private:
    void work()
    {
        for (size_t index = next_++; index < files_.size(); index = next_++) {
            FileReport report = reportOn(files_[index], warnings_);
            const std::lock_guard<std::mutex> lock(mutex_);
            reports_[index] = std::move(report);
            isDone_[index] = true;
            hasBeenDone_.notify_one();
        }
    }

    const std::vector<std::string> &files_;
    const Warnings &warnings_;
    std::atomic<size_t> next_{0};
    std::mutex mutex_;
    std::condition_variable hasBeenDone_;
    std::vector<FileReport> reports_;
    std::vector<bool> isDone_;
    std::vector<std::thread> threads_;
};

Exit exitOf(const Totals &totals)
{
    if (totals.unread > 0)
        return kUnreadable;
    if (totals.errors > 0)
        return kErrors;
    return totals.warnings > 0 ? kWarnings : kSuccess;
}

bool isColoured(const Options &options, const OwnOutput &output)
{
    return options.colour == Colour::automatic ? output.isTerminal() && std::getenv("NO_COLOR") == nullptr
                                               : options.colour == Colour::always;
}

// What is printed behind the last file's findings as text, or in their place.
std::string endOf(Format format, const std::vector<FileReport> &reports, const Totals &totals)
{
    return format == Format::text ? summaryOf(totals) : format == Format::json ? asJson(reports) : asSarif(reports);
}

Exit runCheck(const Options &options)
{
    const Warnings warnings(options.warnings);
    OwnOutput output;
    const bool areColoured = isColoured(options, output);
    Progress progress(options.files, isatty(STDERR_FILENO) == 1);
    Totals totals;
    // What is left at the end goes with the process: to take trees apart costs a tenth of all.
    static std::vector<FileReport> &reports = *new std::vector<FileReport>;
    Workers workers(options.files, options.jobs, warnings);
    for (size_t i = 0; i < options.files.size(); i++) {
        const bool isLast = i + 1 == options.files.size();
        FileReport report = workers.take(i);
        totals.add(report);
        std::string text = options.format == Format::text ? asText(report, areColoured) : "";
        if (options.format != Format::text || isLast)
            reports.push_back(std::move(report));
        if (isLast)
            text += endOf(options.format, reports, totals);
        progress.advance(i + 1);
        if (!output.print(text))
            return kErrors;
    }
    return exitOf(totals);
}

// ---- What there is to check -----------------------------------------------------------------------------------------

std::string explained(const Options &options)
{
    if (options.explained == "all" && options.format == Format::markdown)
        return documentationOfChecks();
    std::string text;
    for (const Checks &checks : allChecks())
        for (const Check &check : checks)
            if (options.explained == check.name || options.explained == "all")
                text += (text.empty() ? "" : "\n") + explanationOf(check);
    if (text.empty())
        throw CLI::ValidationError("no such check: " + options.explained + " (see --list-checks)");
    return text;
}

Exit run(const Options &options)
{
    if (options.areListed || !options.explained.empty()) {
        const std::string text = options.areListed ? listOfChecks() : explained(options);
        return OwnOutput().print(text) ? kSuccess : kErrors;
    }
    if (options.files.empty())
        throw CLI::RequiredError("FILE");
    if (options.format == Format::markdown)
        throw CLI::ValidationError("markdown is a format of --explain all");
    return runCheck(options);
}

} // namespace

void addCheckCommand(CLI::App &app, Exit &exit)
{
    CLI::App *command = app.add_subcommand("check", "Find what is wrong in descriptions");
    const auto options = std::make_shared<Options>();
    const std::map<std::string, Format> formats = {
        {"text", Format::text}, {"json", Format::json}, {"sarif", Format::sarif}, {"markdown", Format::markdown}};
    const std::map<std::string, Colour> colours = {
        {"auto", Colour::automatic}, {"always", Colour::always}, {"never", Colour::never}};
    command->add_option("FILE", options->files, "Descriptions to check, - for standard input")->type_name("");
    command
        ->add_option("-W", options->warnings,
                     "no-NAME leaves a check out, error=NAME makes its findings errors, error those of all")
        ->type_name("WHAT")
        ->allow_extra_args(false);
    command->add_option("--format", options->format, "text, json or sarif [text]")
        ->type_name("FORMAT")
        ->transform(CLI::Transformer(formats).description(""));
    command->add_option("--color", options->colour, "auto, always or never [auto]")
        ->type_name("WHEN")
        ->transform(CLI::Transformer(colours).description(""));
    command->add_option("-j,--jobs", options->jobs, "How many files to check at once [1]")
        ->type_name("N")
        ->check(CLI::Range(1U, 256U, "1 to 256"));
    command->add_flag("--list-checks", options->areListed, "List the checks");
    command->add_option("--explain", options->explained, "Explain a check: why it matters, and examples; or all")
        ->type_name("NAME");
    command->footer("Exit status: 0 nothing found, 1 warnings, 2 errors, 64 wrong usage,\n"
                    "66 a file cannot be read or is no XML, 71 out of memory.");
    command->callback([options, &exit] { exit = run(*options); });
}
