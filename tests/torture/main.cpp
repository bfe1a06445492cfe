// `torture`: injects faults into tessellarctl and judges by laws what came of them.

#include "torture/trials.h"

#include <QFile>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
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
    QByteArray only; ///< cases that begin like this
    QByteArray one;  ///< this case alone
    QString from;    ///< a file of cases, a line each, instead of all
    bool lists = false;
};

constexpr auto usage =
    R"(torture [--minutes N] [--count N] [--seed N] [--jobs N] [--only PREFIX] [--case CASE] [--list]

Runs every command that writes with a system call that fails, killed around each change, with a disk that is
full, limits, damaged files and other commands at once; and judges by laws what came of it. In the time given,
cases are drawn evenly from all, always the same for a seed.
  --count N      no more than so many, however fast the machine is
  --only PREFIX  of the cases, such as "kill" or "call:rename:"
  --case CASE    that one, and say what came of it
  --from FILE    those that the file names, a line each
  --list         the cases, in their order
Exit status 1 says that a law was broken; 77 that calls cannot be traced here.
)";

std::optional<Options> read(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const QByteArray name = argv[i];
        if (name == "--list") {
            options.lists = true;
            continue;
        }
        if (i + 1 == argc)
            return std::nullopt;
        const QByteArray value = argv[++i];
        bool isRight = true;
        if (name == "--minutes")
            options.minutes = value.toDouble(&isRight);
        else if (name == "--count")
            options.count = value.toLongLong(&isRight);
        else if (name == "--seed")
            options.seed = value.toUInt(&isRight);
        else if (name == "--jobs")
            options.jobs = std::max(1u, value.toUInt(&isRight));
        else if (name == "--only")
            options.only = value;
        else if (name == "--case")
            options.one = value;
        else if (name == "--from")
            options.from = QString::fromLocal8Bit(value);
        else
            isRight = false;
        if (!isRight)
            return std::nullopt;
    }
    return options;
}

QByteArray folder(unsigned job) {
    return "/tmp/torture-" + QByteArray::number(::getpid()) + '-' + QByteArray::number(job);
}

/// All cases that begin as wished; nothing, and why, where a command fails without a fault.
std::optional<QList<Case>> allCases(const Options& options, QByteArray& why) {
    Trials trials(folder(0));
    if (const auto failure = trials.mac().failure()) {
        why = "the Mac cannot be built: " + *failure;
        return std::nullopt;
    }
    const auto isWanted = [&](const QByteArray& row) {
        const qsizetype length = std::min(row.size(), options.only.size());
        return row.first(length) == options.only.first(length);
    };
    CaseList list(options.seed);
    for (const Command& command : commands()) {
        const QByteArray name = command.name;
        if (isWanted("call:" + name + ':') || isWanted("kill:" + name + ':')) {
            const auto sites = trials.sites(command);
            if (!sites) {
                why =
                    name + " fails without a fault: " + trials.mac().run(command.line).error.trimmed();
                return std::nullopt;
            }
            list.addCalls(command, *sites);
        }
        for (const auto& [row, phase] : {std::pair("served", Trials::Phase::serving),
                                         std::pair("started", Trials::Phase::starting)}) {
            if (!isWanted(row + QByteArray(":") + name + ':'))
                continue;
            const auto sites = trials.servedSites(command, phase);
            if (!sites) {
                why = name + " fails without a fault beside a launcher";
                return std::nullopt;
            }
            list.addServed(row, command, *sites);
        }
        list.addLimits(command, trials.mac().hasDisk());
    }
    const QMap<QByteArray, QByteArray>& files = trials.mac().builtFiles();
    for (auto file = files.begin(); file != files.end(); ++file) {
        if (file.key().startsWith(SmallMac::applicationFolder) || file.key() == SmallMac::settingsFile)
            list.addDamage(withoutStamps(file.key()), file->size());
    }
    list.addTogether();
    QList<Case> drawn = list.drawn();
    drawn.removeIf([&](const Case& one) { return !one.startsWith(options.only); });
    if (options.count > 0)
        drawn.resize(std::min(drawn.size(), options.count));
    return drawn;
}

/// Those that a file names.
std::optional<QList<Case>> listedCases(const QString& path, QByteArray& why) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        why = path.toUtf8() + " cannot be read";
        return std::nullopt;
    }
    QList<Case> cases = file.readAll().split('\n');
    cases.removeIf([](const Case& one) { return one.isEmpty() || one.startsWith('#'); });
    return cases;
}

/// What a job tells of the cases that it has tried.
struct Tally {
    struct Row {
        int tries = 0;
        int unreached = 0;
        int faults = 0;
    };
    QMap<QByteArray, Row> rows;
    QByteArrayList faults; ///< "CASE\tLAW"
};

/// Tries each of the `jobs`th cases until the time is over, and writes a line for each.
void work(const Options& options, const QList<Case>& cases, unsigned job, Time::time_point end,
          int out) {
    Trials trials(folder(job + 1));
    if (trials.mac().failure())
        return;
    for (qsizetype i = job; i < cases.size() && Time::now() < end; i += options.jobs) {
        const Verdict verdict = trials.judge(cases[i]);
        const QByteArray line = cases[i] + '\t' + (verdict.wasReached ? "" : "unreached") + '\t' +
                                verdict.fault.simplified() + '\n';
        if (::write(out, line.constData(), static_cast<std::size_t>(line.size())) < 0)
            return;
    }
}

Tally tryAll(const Options& options, const QList<Case>& cases) {
    const auto end = Time::now() + std::chrono::duration_cast<Time::duration>(
                                       std::chrono::duration<double>(options.minutes * 60));
    std::vector<pid_t> jobs;
    int ends[2];
    if (::pipe(ends) != 0)
        return {};
    for (unsigned job = 0; job < options.jobs; ++job) {
        std::fflush(nullptr);
        const pid_t child = ::fork();
        if (child == 0) {
            ::close(ends[0]);
            work(options, cases, job, end, ends[1]);
            ::_exit(0);
        }
        jobs.push_back(child);
    }
    ::close(ends[1]);
    Tally tally;
    std::FILE* lines = ::fdopen(ends[0], "r");
    char* line = nullptr;
    std::size_t capacity = 0;
    while (::getline(&line, &capacity, lines) > 0) {
        QByteArrayList parts = QByteArray(line).trimmed().isEmpty()
                                   ? QByteArrayList()
                                   : QByteArray(line).replace('\n', "").split('\t');
        if (parts.size() != 3)
            continue;
        Tally::Row& row = tally.rows[parts[0].first(parts[0].indexOf(':'))];
        ++row.tries;
        row.unreached += parts[1].isEmpty() ? 0 : 1;
        // A case that was chosen and tests nothing any more is to be chosen anew; but the threads of a
        // launcher do not go the same way twice, and its calls have other numbers.
        const bool isOfLauncher = parts[0].startsWith("served:") || parts[0].startsWith("started:");
        if (!parts[1].isEmpty() && !options.from.isEmpty() && parts[2].isEmpty() && !isOfLauncher)
            parts[2] = "the call was not met";
        if (parts[2].isEmpty())
            continue;
        ++row.faults;
        tally.faults.append(parts[0] + '\t' + parts[2]);
        std::fprintf(stderr, "%s\n    %s\n", parts[0].constData(), parts[2].constData());
    }
    std::free(line);
    std::fclose(lines);
    for (const pid_t job : jobs)
        ::waitpid(job, nullptr, 0);
    return tally;
}

int report(const Options& options, qsizetype count, const Tally& tally) {
    static const QMap<QByteArray, const char*> titles{
        {"call", "a system call fails"},
        {"kill", "killed before or after a call"},
        {"served", "the same in a launcher that serves the command"},
        {"started", "the same while such a launcher starts"},
        {"full", "a disk that is nearly full"},
        {"limit", "few descriptors, small files, little memory"},
        {"bits", "a bit of a file is wrong"},
        {"cut", "a file is cut short"},
        {"together", "commands at once"}};
    int tries = 0;
    std::printf("%-48s %8s %10s %8s\n", "", "tries", "not met", "broken");
    for (auto row = tally.rows.begin(); row != tally.rows.end(); ++row) {
        std::printf("%-48s %8d %10d %8d\n", titles.value(row.key(), row.key().constData()), row->tries,
                    row->unreached, row->faults);
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
    const auto options = read(argc, argv);
    if (!options) {
        std::fputs(usage, argc == 2 && QByteArray(argv[1]) == "--help" ? stdout : stderr);
        return 2;
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
    if (!options->one.isEmpty()) {
        Trials trials(folder(0));
        const Verdict verdict =
            trials.mac().failure() ? Verdict{*trials.mac().failure()} : trials.judge(options->one);
        std::printf("%s%s\n", verdict.wasReached ? "" : "The call was not met. ",
                    verdict.fault.isEmpty() ? "All laws were kept." : verdict.fault.constData());
        return verdict.fault.isEmpty() ? 0 : 1;
    }
    QByteArray why;
    const auto cases =
        options->from.isEmpty() ? allCases(*options, why) : listedCases(options->from, why);
    if (!cases) {
        std::fprintf(stderr, "torture: %s\n", why.constData());
        return 1;
    }
    if (options->lists) {
        for (const Case& one : *cases)
            std::puts(one.constData());
        return 0;
    }
    return report(*options, cases->size(), tryAll(*options, *cases));
}

} // namespace
} // namespace tessellar::torture

int main(int argc, char** argv) { return tessellar::torture::torture(argc, argv); }
