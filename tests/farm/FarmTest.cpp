#include "farm/Chunk.h"
#include "scene/Diagnostics.h"
#include "tests/media/MediaFixtures.h"
#include "tests/support/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <filesystem>
#include <regex>
#include <thread>

namespace orbel {
namespace {

using test::Arguments;
using testing::HasSubstr;
namespace fs = std::filesystem;

/// A scene of seven small frames and the program that hands it in.
class Farm : public testing::Test {
protected:
    Farm() {
        writeBytes(m_folder / "scene.json", R"({"orbel": 1, "size": [48, 32], "frames": [3, 9],
            "parameters": {"Presets": "Basic Star", "Thickness": 5,
                           "End": {"keys": [[3, 20], [9, 100]]}}})");
    }

    /// The exit code of "orbel farm" with these words; what it said is kept.
    int farm(const std::string& line, const Arguments& more = {}) {
        const Arguments all =
            test::words({"env", "-u", "SBATCH_PARTITION",
                         "PATH=" + (m_folder / "bin") + ":/usr/bin:/bin", ORBEL_PROGRAM},
                        "farm " + line, more);
        const int code = test::Process(all, m_folder / "log", 120).wait();
        m_said = withoutFolder(readBytes(m_folder / "log"));
        return code;
    }
    [[nodiscard]] std::string withoutFolder(std::string text) const {
        const std::string folder = m_folder / "";
        for (std::size_t at = text.find(folder); at != std::string::npos; at = text.find(folder)) {
            text.replace(at, folder.size(), "@/");
        }
        return text;
    }
    [[nodiscard]] std::string film() const { return m_folder / "film.mkv"; }
    [[nodiscard]] std::string job() const { return film() + ".orbel"; }

    TestFolder m_folder;
    std::string m_said;
};

TEST_F(Farm, makesTheFilmOnThisMachineAlone) {
    const test::Process plain(
        {ORBEL_PROGRAM, "render", m_folder / "scene.json", "-q", "-o", m_folder / "one.mkv"},
        m_folder / "log");
    ASSERT_EQ(plain.wait(), EXIT_DONE);
    const Arguments order{
        m_folder / "scene.json", "-o", film(), "--engine", "local", "--program", ORBEL_PROGRAM};
    EXPECT_EQ(farm("submit --chunk 3 --dry-run", order), EXIT_DONE) << m_said;
    EXPECT_THAT(m_said, HasSubstr(" farm supervise @/film.mkv.orbel --list "
                                  "@/film.mkv.orbel/submission-0.list --nodes 1 --threads 0\n"));
    EXPECT_THAT(m_said, HasSubstr("\n3 tasks of 3 frames, 7 frames in all\ndisk: some 1 MB of "));
    EXPECT_FALSE(fs::exists(job()));
    EXPECT_EQ(farm("submit --chunk 3 --nodes 2 --threads 1", order), EXIT_DONE) << m_said;
    EXPECT_EQ(m_said, "3 tasks handed in; look with: orbel farm status @/film.mkv.orbel\n");
    nlohmann::json status = nlohmann::json::object();
    for (int i = 0; i < 300 && !status.value("film", false); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        EXPECT_EQ(farm("status --json", {job()}), EXIT_DONE);
        status = nlohmann::json::parse(m_said, nullptr, false);
    }
    EXPECT_TRUE(readBytes(m_folder / "one.mkv") == readBytes(film())) << status;
    EXPECT_EQ(status["chunks"], 3);
    EXPECT_EQ(status["done"], 3);
    EXPECT_EQ(status["frames"], 7);
    EXPECT_EQ(status["framesDone"], 7);
    EXPECT_EQ(status["lost"], 0);
    EXPECT_GT(status["framesPerSecond"], 0.0);
    EXPECT_EQ(farm("verify --sample 3", {job()}), EXIT_DONE);
    EXPECT_EQ(m_said, "3 chunks are sound, 3 frames were rendered again\n");
    EXPECT_EQ(farm("verify", {job()}), EXIT_DONE);
    EXPECT_EQ(m_said, "3 chunks are sound, 0 frames were rendered again\n");

    const std::string chunk = job() + "/chunks/000/000001.mkv";
    std::string bytes = readBytes(chunk);
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 4);
    writeBytes(chunk, bytes);
    fs::remove(job() + "/chunks/000/000002.mkv");
    bytes = readBytes(film());
    bytes.back() = static_cast<char>(bytes.back() ^ 4);
    writeBytes(film(), bytes);
    EXPECT_EQ(farm("verify --sample 3", {job()}), EXIT_RENDERING_FAILED);
    EXPECT_EQ(m_said, "chunk 1 is damaged\nchunk 2 is missing\nthe film @/film.mkv is damaged\n"
                      "1 chunks are sound, 0 frames were rendered again\n");
    fs::remove(film());
    EXPECT_EQ(farm("verify", {job()}), EXIT_RENDERING_FAILED);
    EXPECT_THAT(m_said, HasSubstr("the film @/film.mkv is missing\n"));
    EXPECT_EQ(farm("cancel", {job()}), EXIT_DONE);
}

/// A cluster that is a few scripts: they keep what they are told and answer what the test says.
class Slurm : public Farm {
protected:
    Slurm() {
        fs::create_directory(m_folder / "bin");
        const std::string keep =
            "#!/bin/sh\ncd " + (m_folder / "") + "\necho \"${0##*/} $*\" >>calls\n";
        script("sbatch", keep + "cat >>scripts\n[ $(wc -l <calls) -lt \"$(cat fails)\" ] || { echo "
                                "'no room' >&2; exit 1; }\n"
                                "echo $(grep -c ^sbatch calls)';cluster'\n");
        script("scontrol", keep + "[ $1 != show ] || echo 'MaxArraySize = 4'\n");
        script("scancel", keep);
        script("squeue", keep + "cat queue\n");
        script("sinfo", keep + "case $* in *%P) echo fast slow\\*;; *%E*) echo 'n9|it burns';; "
                               "*) printf 'n1\\nn2\\nn3\\n';; esac\n");
        writeBytes(m_folder / "fails", "99");
        writeBytes(m_folder / "queue", "");
    }
    void script(const std::string& name, const std::string& text) const {
        writeBytes(m_folder / ("bin/" + name), text);
        fs::permissions(m_folder / ("bin/" + name), fs::perms::owner_all);
    }
    int submit(const std::string& options) {
        return farm("submit --chunk 2 " + options,
                    {m_folder / "scene.json", "-o", film(), "--program", "/my/orbel"});
    }
    /// What the cluster was told since the last time.
    std::string calls() {
        const std::string all = withoutFolder(readBytes(m_folder / "calls"));
        fs::remove(m_folder / "calls");
        return std::regex_replace(all, std::regex("@/film.mkv.orbel"), "JOB");
    }
    /// Lines of the queue: "12_3|RUNNING|reason".
    void queue(const std::vector<std::string>& tasks) const {
        std::string text = "12_9|RUNNING|None|/somebody/elses\n";
        for (const std::string& task : tasks) {
            text += task + "|" + job() + "\n";
        }
        writeBytes(m_folder / "queue", text);
    }
};

TEST_F(Slurm, isHandedArraysThatWaitForACheck) {
    const std::string ask =
        "scontrol ping\nsinfo -h -o %P\nsinfo -h -N -t idle,mix,alloc,comp -o %N -p slow\n";
    const std::string common =
        "sbatch --parsable --requeue --open-mode=append --chdir=JOB --output=";
    EXPECT_EQ(submit("--nodes 2 --threads 5"), EXIT_DONE) << m_said;
    EXPECT_EQ(m_said, "4 tasks handed in; look with: orbel farm status @/film.mkv.orbel\n");
    EXPECT_EQ(calls(),
              ask + common +
                  "/dev/null --job-name=orbel-film.mkv --hold --nodes=1-3 --spread-job\n"
                  "scontrol show config\n" +
                  common +
                  "JOB/logs/task-%A-%a-%N.log --job-name=orbel-film.mkv --dependency=afterok:1 "
                  "--kill-on-invalid-dep=yes --array=0-2%2 --cpus-per-task=5\n" +
                  common +
                  "JOB/logs/task-%A-%a-%N.log --job-name=orbel-film.mkv --dependency=afterok:1 "
                  "--kill-on-invalid-dep=yes --array=0-0%2 --cpus-per-task=5\n" +
                  common +
                  "JOB/logs/join-%j.log --job-name=orbel-film.mkv "
                  "--dependency=afterok:1,afterany:2:3 --kill-on-invalid-dep=yes\n"
                  "scontrol release 1\n");
    const std::string scripts = withoutFolder(readBytes(m_folder / "scripts"));
    for (const char* const part :
         {"job=@/film.mkv.orbel\nmost=", "\nprogram=/my/orbel\nbad=''\n",
          "\nindex=$((SLURM_ARRAY_TASK_ID + 0))\n", "\nindex=$((SLURM_ARRAY_TASK_ID + 3))\n",
          "\n/my/orbel farm task \"$job\" --list \"$list\" --index $index --threads 5 ",
          "\n/my/orbel farm join \"$job\"\n", "list=@/film.mkv.orbel/submission-0.list\n"}) {
        EXPECT_THAT(scripts, HasSubstr(part));
    }
    EXPECT_EQ(readBytes(job() + "/submission-0.list"), "0\n1\n2\n3\n");

    // Those that wait are not handed in twice; then with fewer chunks, and without a machine.
    queue({"2_1|PENDING|Priority"});
    EXPECT_EQ(farm("resume", {job()}), EXIT_TRY_AGAIN);
    EXPECT_THAT(m_said, HasSubstr("tasks of this job still wait or run"));
    queue({});
    fs::create_directories(job() + "/failures");
    for (const char* const failure : {"0@n2", "1@n2", "2@unknown"}) {
        writeBytes(job() + "/failures/" + failure, "burnt");
    }
    writeBytes(m_folder / "calls", "");
    EXPECT_EQ(farm("resume --program /my/orbel", {job()}), EXIT_DONE) << m_said;
    const std::string again = calls();
    EXPECT_THAT(again, HasSubstr("--exclude=n2 --hold --nodes=1-3 "));
    EXPECT_THAT(again, HasSubstr("--array=0-2\n"));
    EXPECT_THAT(withoutFolder(readBytes(m_folder / "scripts")), HasSubstr("bad=' n2'\n"));
    EXPECT_TRUE(fs::exists(job() + "/submission-1.list"));
    for (const char* const machine :
         {"0@n1", "0@n3"}) { // all of them: better one of these than none
        writeBytes(job() + "/failures/" + machine, "burnt");
    }
    EXPECT_EQ(farm("resume", {job()}), EXIT_DONE);
    EXPECT_THAT(calls(), Not(HasSubstr("--exclude")));
}

TEST_F(Slurm, takesBackWhatItRefusesHalfOf) {
    writeBytes(m_folder / "fails", "8");
    queue({"2_0|PENDING|x", "2_1|PENDING|x", "3_0|RUNNING|x", "1|PENDING|x", "77|COMPLETED|x"});
    EXPECT_EQ(submit(""), EXIT_TRY_AGAIN);
    EXPECT_THAT(m_said, HasSubstr("Slurm (sbatch): it refuses: no room; look at the cluster"));
    const std::string told = calls();
    EXPECT_THAT(told, HasSubstr("squeue -h -r -o %i|%T|%r|%Z -j 1,2,3\nscancel 1 2 3 77\n"));
    EXPECT_THAT(told, Not(HasSubstr("release")));
    script("sbatch", "#!/bin/sh\nexit 1\n");
    EXPECT_EQ(submit("--restart"), EXIT_TRY_AGAIN);
    EXPECT_THAT(m_said, HasSubstr("(sbatch): it fails without a word; "));
}

TEST_F(Slurm, tellsHowFarTheJobIs) {
    ASSERT_EQ(submit(""), EXIT_DONE) << m_said;
    struct Row {
        std::vector<std::string> queue;
        const char* said;
    };
    const std::string none = "0 of 4 chunks done (0 of 7 frames), ";
    const Row rows[] = {
        {{},
         "0 tasks running, 0 waiting, 4 chunks lost\nnothing runs for it: type \"orbel farm resume "
         "@/film.mkv.orbel\"\n"},
        {{"2_0|RUNNING|x", "2_1|COMPLETING|x", "2_2|PENDING|x", "3_0|CONFIGURING|x", "4|PENDING|x"},
         "2 tasks running, 3 waiting, 0 chunks lost\nn9 (it burns) takes no tasks\n"},
        {{"2_0|RUNNING|x", "4|COMPLETED|x"}, "1 tasks running, 0 waiting, 3 chunks lost\n"},
        {{"2_0|PENDING|JobHeldUser"},
         "0 tasks running, 1 waiting, 3 chunks lost\n1 task is held (JobHeldUser): type \"orbel "
         "farm resume "
         "@/film.mkv.orbel\"\nn9 (it burns) takes no tasks\n"},
        {{"2_0|REQUEUE_HOLD|launch failed requeued held", "2_1|PENDING|JobHeldAdmin"},
         "0 tasks running, 2 waiting, 2 chunks lost\n2 tasks are held (JobHeldAdmin): type \"orbel "
         "farm resume "
         "@/film.mkv.orbel\"\nn9 (it burns) takes no tasks\n"},
    };
    for (const Row& row : rows) {
        queue(row.queue);
        EXPECT_EQ(farm("status", {job()}), EXIT_DONE);
        EXPECT_EQ(m_said, none + row.said);
    }
    fs::create_directories(job() + "/checks");
    writeBytes(job() + "/checks/n2", "it is too old\n");
    queue({"2_0|PENDING|x"});
    EXPECT_EQ(farm("status", {job()}), EXIT_DONE);
    EXPECT_THAT(m_said, HasSubstr("n2 cannot make this film: it is too old\nno machine can, so "
                                  "that no task has begun\n"));
    writeBytes(job() + "/checks/n1", "ok\n");
    EXPECT_EQ(farm("status --json", {job()}), EXIT_DONE);
    const auto status = nlohmann::json::parse(m_said);
    EXPECT_EQ(status["unfit"], nlohmann::json({{"n2", "it is too old"}}));
    EXPECT_EQ(status["waiting"], 1);
    EXPECT_EQ(status["running"], 0);
    EXPECT_EQ(status["held"], 0);
    EXPECT_EQ(status["away"], nlohmann::json::array({"n9 (it burns)"}));
    EXPECT_EQ(status["secondsLeft"], nullptr);
    EXPECT_EQ(status["film"], false);
    EXPECT_EQ(farm("status", {job()}), EXIT_DONE);
    EXPECT_THAT(m_said, Not(HasSubstr("no machine can")));

    script("squeue",
           "#!/bin/sh\necho 'slurm_load_jobs error: Invalid job id specified' >&2; exit 1\n");
    EXPECT_EQ(farm("status", {job()}), EXIT_DONE);
    EXPECT_THAT(m_said, HasSubstr("0 tasks running, 0 waiting, 4 chunks lost"));
    script("squeue", "#!/bin/sh\necho 'trying again\nUnable to contact' >&2; exit 1\n");
    EXPECT_EQ(farm("status", {job()}), EXIT_DONE);
    EXPECT_EQ(m_said, "0 of 4 chunks done (0 of 7 frames)\nSlurm (squeue): it refuses: Unable to "
                      "contact; look at the "
                      "cluster (sinfo, scontrol ping), then try again\n");
}

TEST_F(Slurm, letsHeldTasksGoAndEndsOthers) {
    ASSERT_EQ(submit(""), EXIT_DONE) << m_said;
    queue({"2_0|PENDING|JobHeldUser", "2_1|RUNNING|x", "2_2|PENDING|held", "3_0|PENDING|x"});
    calls();
    EXPECT_EQ(farm("resume", {job()}), EXIT_DONE);
    EXPECT_EQ(m_said,
              "2 tasks were held and may go on; look with: orbel farm status @/film.mkv.orbel\n");
    EXPECT_THAT(calls(), HasSubstr("\nscontrol release 2_0\nscontrol release 2_2\n"));
    EXPECT_EQ(farm("cancel", {job()}), EXIT_DONE);
    EXPECT_THAT(m_said, HasSubstr("cancelled; what is complete stays"));
    EXPECT_THAT(calls(), HasSubstr("\nscancel 2 3\n"));
    queue({"2_0|COMPLETED|x"});
    EXPECT_EQ(farm("cancel", {job()}), EXIT_DONE);
    EXPECT_THAT(calls(), Not(HasSubstr("scancel")));
}

} // namespace
} // namespace orbel
