// `torture`: injects faults into tessellarctl and judges by laws what came of them.

#include "torture/trials.h"

#include <CLI/CLI.hpp>
#include <QFile>

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <stdexcept>
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
    app.add_option("--seed", options.seed, "of the order of the cases")->capture_default_str();
    app.add_option("--jobs", options.jobs, "at once")->check(CLI::PositiveNumber);
    app.add_option("--only", options.only, "of the cases, such as \"kill\" or \"call:rename:\"");
    app.add_option("--case", options.one, "that one, and say what came of it");
    app.add_option("--from", options.from, "those that the file names, a line each");
    app.add_flag("--list", options.lists, "the cases, in their order");
}

/// All cases that begin as wished. Throws where a command fails without a fault.
QList<Case> allCases(const Options& options) {
    Trials trials;
    CaseList list(options.seed);
    for (const Command& command : commands())
        for (const char* row : {"call", "served", "started"})
            list.addCalls(row, command, trials.sites(row, command));
    for (const auto& [path, bytes] : trials.mac().builtFiles().asKeyValueRange())
        if (path.startsWith(SmallMac::applicationFolder) || path == SmallMac::settingsFile)
            list.addDamage(withoutStamps(path), bytes.size());
    list.addTogether();
    QList<Case> drawn = list.drawn();
    drawn.removeIf(
        [&](const Case& one) { return !one.startsWith(QByteArray::fromStdString(options.only)); });
    return drawn;
}

/// Those that a file names.
QList<Case> listedCases(const std::string& path) {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(path + " cannot be read");
    QList<Case> cases = file.readAll().split('\n');
    cases.removeIf([](const Case& one) { return one.isEmpty() || one.startsWith('#'); });
    return cases;
}

/// Tries each of the `jobs`th cases until the time is over, and writes a line for each:
/// "CASE\tunreached\tLAW". What is broken it says at once, too.
int work(const Options& options, const QList<Case>& cases, unsigned job, Time::time_point end,
         int live) {
    Trials trials;
    for (qsizetype i = job; i < cases.size() && Time::now() < end; i += options.jobs) {
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

/// What the jobs have written, a line for each case.
QByteArrayList tryAll(const Options& options, const QList<Case>& cases) {
    const std::chrono::duration<double> time(options.minutes * 60);
    const auto end = Time::now() + std::chrono::duration_cast<Time::duration>(time);
    const int live = ::dup(STDERR_FILENO);
    Programs programs;
    std::vector<pid_t> jobs;
    for (unsigned job = 0; job < options.jobs; ++job)
        jobs.push_back(programs.start([&, job] { return work(options, cases, job, end, live); }));
    QByteArrayList lines;
    for (const pid_t job : jobs) {
        constexpr int mostForACase = 900;
        const Ending ending = programs.waitFor(job, static_cast<int>(time.count()) + mostForACase);
        if (ending.status != 0)
            throw std::runtime_error("a job did not end well: " + ending.error.toStdString());
        lines += ending.out.split('\n');
    }
    return lines;
}

int report(const Options& options, qsizetype count, const QByteArrayList& lines) {
    struct Row {
        int tries = 0;
        int unreached = 0;
        int faults = 0;
    };
    QMap<QByteArray, Row> rows;
    Row all;
    for (const QByteArray& line : lines) {
        const QByteArrayList parts = line.split('\t');
        if (parts.size() != 3)
            continue;
        for (Row* row : {&rows[parts[0].first(parts[0].indexOf(':'))], &all}) {
            ++row->tries;
            row->unreached += parts[1].isEmpty() ? 0 : 1;
            row->faults += parts[2].isEmpty() ? 0 : 1;
        }
        if (all.faults == 1 && !parts[2].isEmpty())
            std::printf("The first law that was broken: %s\n    ./dev torture --case '%s'\n",
                        parts[2].constData(), parts[0].constData());
    }
    std::printf("%-10s %8s %10s %8s\n", "", "tries", "not met", "broken");
    for (const auto& [name, row] : rows.asKeyValueRange())
        std::printf("%-10s %8d %10d %8d\n", name.constData(), row.tries, row.unreached, row.faults);
    std::printf("%d of %lld cases, seed %u\n", all.tries, static_cast<long long>(count), options.seed);
    return all.tries > 0 && all.faults == 0 ? 0 : 1;
}

QList<Case> wantedCases(const Options& options) {
    if (!options.one.empty())
        return {QByteArray::fromStdString(options.one)};
    return options.from.empty() ? allCases(options) : listedCases(options.from);
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
    const QList<Case> cases = wantedCases(options);
    if (!options.lists)
        return report(options, cases.size(), tryAll(options, cases));
    for (const Case& one : cases)
        std::puts(one.constData());
    return 0;
}

} // namespace
} // namespace tessellar::torture

int main(int argc, char** argv) {
    try {
        return tessellar::torture::torture(argc, argv);
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "torture: %s\n", error.what());
        return 1;
    }
}
