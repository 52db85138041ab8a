/// enumerate FOLDER RUNS - finds the files of the folder, with sizes, in several ways in turns, and
/// prints the median of its own times beside that of each. Ends with 1 when the walk misses
/// its budget, with 2 when a way does not find as many files as find does.

#include "benchmarks/Table.h"
#include "helpers/fileEnum.h"
#include "platform/foundation/FilePath.h"

#include <QDirIterator>
#include <QElapsedTimer>

#include <dirent.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

// Of the time that find takes, by the number of processors.
constexpr double budgetOfOne = 1.1;
constexpr double budgetOfSeveral = 0.8;

using Way = std::function<size_t(const std::string &folder)>;

size_t byFind(const std::string &folder)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
        ::execlp("find", "find", folder.c_str(), "-printf", "%s %p\\n", nullptr);
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return 0; // it tells nobody
}

size_t byWalk(const std::string &folder)
{
    FileRecords records;
    fileEnum().enumAtPath(FilePath::decode(folder), &records);
    return records.size();
}

size_t byQt(const std::string &folder)
{
    FileRecords records;
    QDirIterator files(QString::fromStdString(folder),
                       QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QFileInfo file = files.nextFileInfo();
        records.push_back({file.filePath(), file.size()});
    }
    return records.size();
}

size_t byStandardLibrary(const std::string &folder)
{
    std::vector<std::pair<std::string, uintmax_t>> records;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_directory())
            records.emplace_back(entry.path().native(), entry.file_size());
    }
    return records.size();
}

/// The least that has to be asked of the system, and nothing done with it.
size_t bareFolder(int parent, const char *name, char *buffer)
{
    constexpr size_t bufferSize = 32768;
    size_t found = 0;
    const int folder = ::openat(parent, name, O_RDONLY | O_DIRECTORY);
    std::vector<std::string> folders;
    for (ssize_t count = 0; (count = ::getdents64(folder, buffer, bufferSize)) > 0;) {
        for (ssize_t position = 0; position < count;) {
            const auto *entry = reinterpret_cast<const dirent64 *>(buffer + position);
            position += entry->d_reclen;
            struct stat status;
            if (entry->d_type != DT_DIR)
                found += ::fstatat(folder, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0;
            else if (entry->d_name[0] != '.')
                folders.emplace_back(entry->d_name);
        }
    }
    for (const std::string &child : folders)
        found += bareFolder(folder, child.c_str(), buffer);
    ::close(folder);
    return found;
}

size_t byBareCalls(const std::string &folder)
{
    std::vector<char> buffer(32768);
    return bareFolder(AT_FDCWD, folder.c_str(), buffer.data());
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return (values[(values.size() - 1) / 2] + values[values.size() / 2]) / 2;
}

int processors()
{
    cpu_set_t set;
    return ::sched_getaffinity(0, sizeof set, &set) == 0 ? CPU_COUNT(&set) : 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fputs("usage: enumerate FOLDER RUNS\n", stderr);
        return 2;
    }
    const std::string folder = argv[1];
    const int runs = std::max(1, std::atoi(argv[2]));
    const std::pair<const char *, Way> ways[] = {
        {"find", byFind},
        {"Solvane", byWalk},
        {"bare system calls", byBareCalls},
        {"std::filesystem", byStandardLibrary},
        {"QDirIterator", byQt},
    };
    constexpr size_t count = std::size(ways);
    std::vector<double> times[count];
    size_t found[count] = {};
    // The first round only fills the caches.
    for (int run = 0; run <= runs; ++run) {
        for (size_t i = 0; i < count; ++i) {
            QElapsedTimer timer;
            timer.start();
            found[i] = ways[i].second(folder);
            if (run > 0)
                times[i].push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        }
    }
    const double budget = processors() > 1 ? budgetOfSeveral : budgetOfOne;
    const std::string what = "Finding " + std::to_string(found[1]) + " files, "
        + std::to_string(processors()) + (processors() > 1 ? " processors" : " processor");
    bool isKept = true;
    for (size_t i = 0; i < count; ++i) {
        if (i > 1 && found[i] != found[1])
            return 2;
        if (i == 1)
            continue;
        isKept &= tableRow(what, withUnit(median(times[1]), "ms"),
                           ways[i].first + (' ' + withUnit(median(times[i]), "ms")),
                           median(times[1]) / median(times[i]), i == 0 ? budget : 0);
    }
    return isKept ? 0 : 1;
}
