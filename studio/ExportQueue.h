#pragma once

#include "film/Film.h"
#include "studio/EventHub.h"
#include "studio/Preview.h"
#include "studio/SceneFolder.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
#include <string>
#include <thread>

namespace orbel::studio {

/// A film that a page wants.
struct ExportWish {
    std::string name; ///< in the scene's folder: film.mp4, still.png or still-%04d.png
    std::optional<FrameRange> frames;
    std::optional<FrameSize> size;
    Overwrite overwrite = Overwrite::No;
};

/// Makes films one after the other, each just as the command line would; gives way to the pictures
/// that a person waits for. Any thread.
class ExportQueue {
public:
    /// Borrows everything.
    ExportQueue(SceneFolder* folder, EventHub* events, Conversions* conversions,
                const Preview* preview);
    ExportQueue(const ExportQueue&) = delete;
    ExportQueue& operator=(const ExportQueue&) = delete;
    /// Cancels what is left.
    ~ExportQueue();

    /// Looks at everything that a film needs and puts it at the end of the queue; gives its number.
    /// Throws a Refusal, 409 for a name that is taken, and BadScene.
    long add(const Scene& scene, const ExportWish& wish);
    /// False for a number that is unknown.
    bool cancel(long number);
    /// `[{job, name, state, done, total, secondsLeft, error, remedy}]`, the oldest first.
    [[nodiscard]] json list();
    /// Where the result of a finished job starts; empty for any other.
    [[nodiscard]] std::string resultOf(long number);

private:
    using Clock = std::chrono::steady_clock;
    enum class State { Waiting, Running, Done, Failed, Cancelled };

    struct Job {
        long number = 0;
        std::string name;
        std::string result;  ///< path of the film, or of the first picture
        std::string partial; ///< where a film is written until it is whole; empty for pictures
        Overwrite overwrite = Overwrite::No;
        FilmRequest request;
        Scene scene;
        State state = State::Waiting;
        long done = 0;
        long total = 0;
        Clock::time_point begin;
        std::string error;
        std::string remedy;
        std::atomic<bool> cancelled = false;
    };

    void work();
    Job* takeNext();
    void make(Job* job);
    void waitForHand(const Job& job);
    [[nodiscard]] bool givesWay();
    void frameWritten(Job* job);
    void finish(Job* job, const FilmResult& result);
    static void put(Job* job);
    void tell();
    [[nodiscard]] json listLocked() const;
    static json jobJson(const Job& job);
    static const char* wordOf(State state);

    SceneFolder* m_folder;
    EventHub* m_events;
    Conversions* m_conversions;
    const Preview* m_preview;
    // Of the thread that draws.
    Clock::time_point m_drawn;         ///< when the last frame was
    Clock::time_point m_frameBegin;    ///< of the one in the making
    Clock::duration m_frameDuration{}; ///< of the last one; more where this one takes longer
    bool m_gaveWay = false;            ///< the one in the making was dropped
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::list<Job> m_jobs;
    long m_lastNumber = 0;
    Clock::time_point m_told;
    bool m_ending = false;
    std::thread m_thread; ///< last, as it uses everything else
};

} // namespace orbel::studio
