#include "studio/ExportQueue.h"

#include "media/OutputTarget.h"
#include "media/PendingFile.h"
#include "media/SequencePattern.h"
#include "studio/Stage.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include <sys/resource.h>
#include <unistd.h>

namespace orbel::studio {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t mostJobs = 200;
constexpr std::chrono::milliseconds tellInterval{200};
constexpr std::chrono::milliseconds handInterval{10};
constexpr std::chrono::milliseconds longFrame{100};

/// The first of the files that a film would be written over.
std::optional<std::string> takenName(const std::string& path, bool isSequence,
                                     const FrameRange& frames) {
    std::error_code error;
    if (!isSequence) {
        return fs::exists(path, error) ? std::optional(path) : std::nullopt;
    }
    const SequencePattern pattern(path);
    for (long frame = frames.first; frame <= frames.last; ++frame) {
        if (std::string file = pattern.pathOf(frame); fs::exists(file, error)) {
            return file;
        }
    }
    return std::nullopt;
}

Refusal nameTaken(const std::string& path) {
    return {409, inQuotes(fs::path(path).filename().string()) + " exists already",
            "choose another name, or overwrite it"};
}

/// Reading and coding, too, leave the processors to whoever waits for a picture. Threads take this
/// over from the one that makes them.
void stepBack() {
#ifdef __linux__
    constexpr int niceness = 10;
    static_cast<void>(setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), niceness));
#endif
}

/// How long after the last frame the next one, which takes so long, lets the hand go first.
std::chrono::steady_clock::duration patience(std::chrono::steady_clock::duration frame) {
    return std::max<std::chrono::steady_clock::duration>(frame * 20, handInterval);
}

/// Beside the film and with its ending, hidden until it is whole.
std::string partialName(const fs::path& film, long number) {
    return (film.parent_path() / (".orbel-" + std::to_string(getpid()) + "-" +
                                  std::to_string(number) + "-" + film.filename().string()))
        .string();
}

} // namespace

ExportQueue::ExportQueue(SceneFolder* folder, EventHub* events, Conversions* conversions,
                         const Preview* preview)
    : m_folder(folder),
      m_events(events),
      m_conversions(conversions),
      m_preview(preview),
      m_thread([this] { work(); }) {}

ExportQueue::~ExportQueue() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
        for (Job& job : m_jobs) {
            job.cancelled = true;
        }
        m_changed.notify_all();
    }
    m_thread.join();
}

long ExportQueue::add(const Scene& scene, const ExportWish& wish) {
    const fs::path path = m_folder->pathOf(wish.name);
    Problems problems;
    FilmRequest request;
    request.outputs.file = path.string();
    request.convertShape = m_conversions->until({});
    request.frames = wish.frames;
    request.size = wish.size;
    const std::optional<ScenePlan> plan = planFilm(scene, request, &problems);
    if (!plan) {
        throw BadScene{problems};
    }
    const OutputTarget target = checkOutput(path.string(), plan->frames.count());
    if (wish.overwrite == Overwrite::No) {
        if (const auto taken = takenName(path.string(), target.isSequence, plan->frames)) {
            throw nameTaken(*taken);
        }
    }
    const std::lock_guard lock(m_mutex);
    if (m_jobs.size() >= mostJobs) {
        throw Refusal{429, "too many films are waiting", "wait for some, or cancel them"};
    }
    Job& job = m_jobs.emplace_back();
    job.number = ++m_lastNumber;
    job.name = wish.name;
    job.result = target.isSequence ? SequencePattern(path.string()).pathOf(plan->frames.first)
                                   : path.string();
    if (target.isFilm) {
        job.partial = partialName(path, job.number);
        request.outputs.file = job.partial;
    }
    job.overwrite = wish.overwrite;
    job.request = request;
    job.total = plan->frames.count();
    job.scene = scene;
    m_changed.notify_all();
    return job.number;
}

bool ExportQueue::cancel(long number) {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_jobs.begin(), m_jobs.end(),
                                    [&](const Job& job) { return job.number == number; });
    if (found == m_jobs.end()) {
        return false;
    }
    found->cancelled = true;
    if (found->state == State::Waiting) {
        found->state = State::Cancelled;
        tell();
    }
    return true;
}

json ExportQueue::list() {
    const std::lock_guard lock(m_mutex);
    return listLocked();
}

std::string ExportQueue::resultOf(long number) {
    const std::lock_guard lock(m_mutex);
    for (const Job& job : m_jobs) {
        if (job.number == number && job.state == State::Done) {
            return job.result;
        }
    }
    return "";
}

void ExportQueue::work() {
    stepBack();
    while (Job* const job = takeNext()) {
        make(job);
    }
}

ExportQueue::Job* ExportQueue::takeNext() {
    std::unique_lock lock(m_mutex);
    auto next = m_jobs.end();
    m_changed.wait(lock, [&] {
        next = std::find_if(m_jobs.begin(), m_jobs.end(),
                            [](const Job& job) { return job.state == State::Waiting; });
        return m_ending || next != m_jobs.end();
    });
    if (m_ending) {
        return nullptr;
    }
    next->state = State::Running;
    next->begin = Clock::now();
    tell();
    return &*next;
}

// What waits holds no files open; it may have to wait for hours.
void ExportQueue::make(Job* job) {
    FilmCallbacks callbacks;
    callbacks.interrupted = [job] { return job->cancelled.load(); };
    callbacks.frameWritten = [this, job](long /*frame*/) { frameWritten(job); };
    callbacks.beforeFrame = [this, job] { waitForHand(*job); };
    callbacks.giveWay = [this] { return givesWay(); };
    m_frameBegin = Clock::now();
    Problems problems;
    FilmResult result;
    if (std::optional<ScenePlan> plan = planFilm(job->scene, job->request, &problems)) {
        result = renderFilm(&*plan, job->request, callbacks);
    } else {
        result.end = FilmEnd::Refused;
        result.problem = problems.items().front();
    }
    finish(job, result);
}

/// Waits while pictures are wanted, but no longer than many frames take: a film goes on while
/// somebody plays, too, in a small part of the time.
void ExportQueue::waitForHand(const Job& job) {
    if (!m_gaveWay) {
        m_drawn = Clock::now();
        m_frameDuration = m_drawn - m_frameBegin;
    }
    m_gaveWay = false;
    while (m_preview->isBusy() && !job.cancelled &&
           Clock::now() - m_drawn < patience(m_frameDuration)) {
        std::this_thread::sleep_for(handInterval);
    }
    m_frameBegin = Clock::now();
}

/// A short frame is drawn to its end; a long one would keep the hand waiting.
bool ExportQueue::givesWay() {
    const Clock::time_point now = Clock::now();
    const Clock::duration sofar = now - m_frameBegin;
    if (sofar <= longFrame) {
        return false;
    }
    m_gaveWay = now - m_drawn < patience(std::max(m_frameDuration, sofar)) && m_preview->isBusy();
    if (m_gaveWay) {
        m_frameDuration = std::max(m_frameDuration, sofar * 2); // a guess, to try seldom
    }
    return m_gaveWay;
}

void ExportQueue::frameWritten(Job* job) {
    const std::lock_guard lock(m_mutex);
    ++job->done;
    if (Clock::now() - m_told >= tellInterval) {
        tell();
    }
}

void ExportQueue::finish(Job* job, const FilmResult& result) {
    const std::lock_guard lock(m_mutex);
    try {
        if (result.end == FilmEnd::Done) {
            put(job);
            job->state = State::Done;
        } else if (result.end == FilmEnd::Interrupted) {
            job->state = State::Cancelled;
        } else {
            const Problem problem = result.problem.value_or(Problem{});
            throw Refusal{500, problem.message, problem.remedy};
        }
    } catch (const Refusal& refusal) {
        job->state = State::Failed;
        job->error = refusal.error;
        job->remedy = refusal.remedy;
    }
    if (!job->partial.empty()) {
        unlink(job->partial.c_str());
    }
    tell();
}

/// Gives a whole film its name, and never writes over what came there in the meantime unasked.
void ExportQueue::put(Job* job) {
    if (job->partial.empty()) {
        return;
    }
    const Existing existing =
        job->overwrite == Overwrite::Yes ? Existing::Replaced : Existing::Kept;
    if (publishFile(job->partial, job->result, existing)) {
        return;
    }
    if (errno == EEXIST) {
        throw nameTaken(job->result);
    }
    throw Refusal{500, std::generic_category().message(errno), "check the folder"};
}

void ExportQueue::tell() {
    m_told = Clock::now();
    m_events->tell({{"event", "jobs"}, {"jobs", listLocked()}});
}

json ExportQueue::listLocked() const {
    json jobs = json::array();
    for (const Job& job : m_jobs) {
        jobs.push_back(jobJson(job));
    }
    return jobs;
}

const char* ExportQueue::wordOf(State state) {
    switch (state) {
    case State::Waiting:
        return "waiting";
    case State::Running:
        return "running";
    case State::Done:
        return "done";
    case State::Failed:
        return "failed";
    default:
        return "cancelled";
    }
}

json ExportQueue::jobJson(const Job& job) {
    json item{{"job", job.number},  {"name", job.name},    {"state", wordOf(job.state)},
              {"done", job.done},   {"total", job.total},  {"secondsLeft", nullptr},
              {"error", job.error}, {"remedy", job.remedy}};
    if (job.state == State::Running && job.done > 0) {
        const std::chrono::duration<double> spent = Clock::now() - job.begin;
        item["secondsLeft"] = spent.count() / static_cast<double>(job.done) *
                              static_cast<double>(job.total - job.done);
    }
    return item;
}

} // namespace orbel::studio
