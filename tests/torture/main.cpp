// `torture`: injects faults into tessellarctl and judges by laws what came of them.

#include "torture/trials.h"

#include <CLI/CLI.hpp>
#include <QFile>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <expected>
#include <thread>

#if defined(__SANITIZE_ADDRESS__)
// It cannot look for leaks in a process that is traced.
extern "C" const char* __asan_default_options() { return "detect_leaks=0"; }
#endif

namespace tessellar::torture {
namespace {

using Time = std::chrono::steady_clock;

struct Options {
    double minutes = 10;
    qsizetype count = 0; ///< of cases; all where it is 0
    unsigned seed = 1;
    unsigned jobs = std::max(1u, std::thread::hardware_concurrency());
    std::string only; ///< cases that begin like this
    std::string one;  ///< this case alone
    std::string from; ///< a file of cases, a line each, instead of all
    bool lists = false;
};

constexpr auto description =
    R"(Runs every command that writes with a system call that fails, killed around each change, on damaged files and
with other commands at once; and judges by laws what came of it. In the time given, cases are drawn evenly from
all, always the same for a seed. Exit status 1 says that a law was broken; 77 that calls cannot be traced here.)";

void declare(CLI::App& app, Options& options) {
    app.add_option("--minutes", options.minutes, "for so long")->capture_default_str();
    app.add_option("--count", options.count, "no more than so many, however fast the machine is");
    app.add_option("--seed", options.seed, "of the order of the cases")->capture_default_str();
    app.add_option("--jobs", options.jobs, "at once")->check(CLI::PositiveNumber);
    app.add_option("--only", options.only, "of the cases, such as \"kill\" or \"call:rename:\"");
    app.add_option("--case", options.one, "that one, and say what came of it");
    app.add_option("--from", options.from, "those that the file names, a line each");
    app.add_flag("--list", options.lists, "the cases, in their order");
}

QByteArray folder(unsigned job) {
    return "/tmp/torture-" + QByteArray::number(::getpid()) + '-' + QByteArray::number(job);
}

using Cases = std::expected<QList<Case>, QByteArray>; ///< or why there are none

/// All cases that begin as wished, unless a command fails without a fault.
Cases allCases(const Options& options) {
    Trials trials(folder(0));
    if (const auto failure = trials.mac().failure())
        return std::unexpected("the Mac cannot be built: " + *failure);
    const QByteArray only = QByteArray::fromStdString(options.only);
    const auto isWanted = [&](const QByteArray& row) {
        return row.startsWith(only) || only.startsWith(row);
    };
    CaseList list(options.seed);
    for (const Command& command : commands()) {
        const QByteArray name = command.name;
        if (isWanted("call:" + name + ':') || isWanted("kill:" + name + ':')) {
            const auto sites = trials.sites(command);
            if (!sites)
                return std::unexpected(
                    name + " fails without a fault: " + trials.mac().run(command.line).error.trimmed());
            list.addCalls("call", command, *sites);
        }
        for (const auto& [row, phase] : {std::pair("served", Trials::Phase::serving),
                                         std::pair("started", Trials::Phase::starting)}) {
            if (!isWanted(row + QByteArray(":") + name + ':'))
                continue;
            const auto sites = trials.servedSites(command, phase);
            if (!sites)
                return std::unexpected(name + " fails without a fault beside a launcher");
            list.addCalls(row, command, *sites);
        }
    }
    const QMap<QByteArray, QByteArray>& files = trials.mac().builtFiles();
    for (auto file = files.begin(); file != files.end(); ++file) {
        if (file.key().startsWith(SmallMac::applicationFolder) || file.key() == SmallMac::settingsFile)
            list.addDamage(withoutStamps(file.key()), file->size());
    }
    list.addTogether();
    QList<Case> drawn = list.drawn();
    drawn.removeIf([&](const Case& one) { return !one.startsWith(only); });
    if (options.count > 0)
        drawn.resize(std::min(drawn.size(), options.count));
    return drawn;
}

/// Those that a file names.
Cases listedCases(const std::string& path) {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
        return std::unexpected(QByteArray::fromStdString(path) + " cannot be read");
    QList<Case> cases = file.readAll().split('\n');
    cases.removeIf([](const Case& one) { return one.isEmpty() || one.startsWith('#'); });
    return cases;
}

struct Tally {
    struct Row {
        int tries = 0;
        int unreached = 0;
        int faults = 0;
    };
    QMap<QByteArray, Row> rows;
    QByteArrayList faults; ///< "CASE\tLAW"
};

/// Tries each of the `jobs`th cases until the time is over, and writes a line for each:
/// "CASE\tunreached\tLAW". What is broken it says at once, too.
int work(const Options& options, const QList<Case>& cases, unsigned job, Time::time_point end,
         int live) {
    Trials trials(folder(job + 1));
    for (qsizetype i = job; i < cases.size() && Time::now() < end; i += options.jobs) {
        if (trials.mac().failure())
            return 1;
        const Case& one = cases[i];
        Verdict verdict = trials.judge(one);
        // A case that was chosen and tests nothing any more is to be chosen anew; but the threads of a
        // launcher do not go the same way twice, and its calls have other numbers.
        const bool isOfLauncher = one.startsWith("served:") || one.startsWith("started:");
        if (!verdict.wasReached && !options.from.empty() && !isOfLauncher && verdict.fault.isEmpty())
            verdict.fault = "the call was not met";
        const QByteArray fault = verdict.fault.simplified();
        if (!fault.isEmpty())
            ::dprintf(live, "%s\n    %s\n", one.constData(), fault.constData());
        std::printf("%s\t%s\t%s\n", one.constData(), verdict.wasReached ? "" : "unreached",
                    fault.constData());
        std::fflush(stdout);
    }
    return 0;
}

Tally tryAll(const Options& options, const QList<Case>& cases) {
    const std::chrono::duration<double> time(options.minutes * 60);
    const auto end = Time::now() + std::chrono::duration_cast<Time::duration>(time);
    const int live = ::dup(STDERR_FILENO);
    Programs programs;
    std::vector<pid_t> jobs;
    for (unsigned job = 0; job < options.jobs; ++job)
        jobs.push_back(programs.start([&, job] { return work(options, cases, job, end, live); }));
    Tally tally;
    for (const pid_t job : jobs) {
        constexpr int mostForACase = 900;
        const Ending ending = programs.waitFor(job, static_cast<int>(time.count()) + mostForACase);
        for (const QByteArray& line : ending.out.split('\n')) {
            const QByteArrayList parts = line.split('\t');
            if (parts.size() != 3)
                continue;
            Tally::Row& row = tally.rows[parts[0].first(parts[0].indexOf(':'))];
            ++row.tries;
            row.unreached += parts[1].isEmpty() ? 0 : 1;
            row.faults += parts[2].isEmpty() ? 0 : 1;
            if (!parts[2].isEmpty())
                tally.faults.append(parts[0] + '\t' + parts[2]);
        }
    }
    return tally;
}

int report(const Options& options, qsizetype count, const Tally& tally) {
    int tries = 0;
    std::printf("%-10s %8s %10s %8s\n", "", "tries", "not met", "broken");
    for (auto row = tally.rows.begin(); row != tally.rows.end(); ++row) {
        std::printf("%-10s %8d %10d %8d\n", row.key().constData(), row->tries, row->unreached,
                    row->faults);
        tries += row->tries;
    }
    std::printf("%d of %lld cases, seed %u\n", tries, static_cast<long long>(count), options.seed);
    if (tries == 0)
        return 1;
    if (tally.faults.isEmpty())
        return 0;
    const QByteArrayList first = tally.faults.first().split('\t');
    std::printf("The first law that was broken: %s\n    ./dev torture --case '%s'\n",
                first[1].constData(), first[0].constData());
    return 1;
}

int torture(int argc, char** argv) {
    Options options;
    CLI::App app{description, "torture"};
    declare(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
#if defined(__SANITIZE_THREAD__)
    const bool canTrace = false; // it does not bear threads in a fork
#else
    const bool canTrace = Programs::canTrace();
#endif
    if (!canTrace) {
        std::puts("The system calls of programs cannot be traced here.");
        return 77;
    }
    // Disks of its own, which go with it.
    if (::unshare(CLONE_NEWNS) == 0)
        ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
    if (!options.one.empty()) {
        Trials trials(folder(0));
        const Verdict verdict = trials.mac().failure()
                                    ? Verdict{*trials.mac().failure()}
                                    : trials.judge(QByteArray::fromStdString(options.one));
        std::printf("%s%s\n", verdict.wasReached ? "" : "The call was not met. ",
                    verdict.fault.isEmpty() ? "All laws were kept." : verdict.fault.constData());
        return verdict.fault.isEmpty() ? 0 : 1;
    }
    const Cases cases = options.from.empty() ? allCases(options) : listedCases(options.from);
    if (!cases) {
        std::fprintf(stderr, "torture: %s\n", cases.error().constData());
        return 1;
    }
    if (options.lists) {
        for (const Case& one : *cases)
            std::puts(one.constData());
        return 0;
    }
    return report(options, cases->size(), tryAll(options, *cases));
}

} // namespace
} // namespace tessellar::torture

int main(int argc, char** argv) { return tessellar::torture::torture(argc, argv); }
