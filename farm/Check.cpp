#include "farm/Check.h"

#include "farm/Task.h"
#include "media/PendingFile.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace orbel {

namespace {

namespace fs = std::filesystem;

constexpr const char* fine = "ok";

std::string checkFolder(const Job& job) {
    return job.folder + "/checks";
}

void remember(const Job& job, const std::string& words) {
    fs::create_directories(checkFolder(job));
    writeWholeFile(checkFolder(job) + "/" + machineName(), words + "\n");
}

} // namespace

std::string machineName() {
    std::array<char, 256> host{};
    gethostname(host.data(), host.size() - 1);
    const char* const node = std::getenv("SLURMD_NODENAME");
    return node != nullptr ? node : host.data();
}

FilmResult runCheck(const Job& job, int threads) {
    FilmResult film;
    film.frames = job.frames;
    try {
        static_cast<void>(planJob(job, threads, job.chunkRange(0)));
        remember(job, fine);
    } catch (const MediaError& error) {
        film.end = FilmEnd::Refused;
        film.problem = problemOf(error);
        film.passing = error.isPassing();
        remember(job, sentence(*film.problem));
    }
    return film;
}

std::vector<MachineCheck> checksOf(const Job& job) {
    std::vector<MachineCheck> checks;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(checkFolder(job), error)) {
        std::ifstream stream(entry.path());
        std::string words;
        std::getline(stream, words);
        const std::string machine = entry.path().filename().string();
        if (entry.path().extension() != ".part") {
            checks.push_back({machine, words == fine ? "" : words});
        }
    }
    std::sort(checks.begin(), checks.end(),
              [](const MachineCheck& a, const MachineCheck& b) { return a.machine < b.machine; });
    return checks;
}

void forgetChecks(const Job& job) {
    fs::remove_all(checkFolder(job));
    fs::create_directories(checkFolder(job));
}

} // namespace orbel
