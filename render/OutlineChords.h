#pragma once

#include "render/BezierPath.h"

#include <deque>
#include <map>
#include <memory>
#include <optional>

namespace orbel {

/// One chord of a walk; it begins where the one before it ends.
struct Chord {
    BezierSampler::Point end;
    double length;
    double parameter; ///< path parameter at its end
    long evaluations; ///< of the path, since the walk began
};

/// The chord that a walk has come to.
[[nodiscard]] inline Chord lastChord(const ChordWalk& walk) {
    return {walk.end(), walk.length(), walk.parameter(), walk.evaluations()};
}

/// The chords of one outline, found once and read by the measurement and by every draw. Grows as
/// far as somebody reads, within the memory given; whoever reads on walks by himself from there.
class OutlineChords {
public:
    /// For a checked-out outline with at least one segment. A null `memory` keeps nothing.
    OutlineChords(PluginHost_API* host, void* const* effectRef, void* path, long numSegments,
                  double targetLength, OutlineMemory* memory);
    OutlineChords(const OutlineChords&) = delete;
    OutlineChords& operator=(const OutlineChords&) = delete;
    ~OutlineChords();

    /// As `GetBezierPathLen`; what was measured once is known. 0, or the host's answer when it
    /// wants no more.
    int measure(double* length);
    /// Whether the walk of another outline would find the very same chords.
    [[nodiscard]] bool areSameAs(const OutlineChords& other) const;
    /// Goes on with another handle of the same outline.
    void setPath(void* path) { m_sampler.setPath(path); }
    [[nodiscard]] double targetLength() const { return m_targetLength; }
    [[nodiscard]] long numSegments() const { return m_sampler.numSegments(); }

private:
    friend class ChordReader;
    [[nodiscard]] bool keepOneMore();

    PluginHost_API* m_host;
    OutlineMemory* m_memory;
    double m_targetLength;
    BezierSampler m_sampler;
    std::size_t m_bytes;  // taken from the memory
    ChordWalk m_frontier; // after the last chord kept
    BezierSampler::Point m_begin;
    std::deque<Chord> m_kept;
    bool m_ended = false; // the frontier has found the last chord
    std::optional<double> m_length;
};

/// Reads the chords of an outline in order, from the first. Once it walks by itself it goes on so,
/// even when more chords can be kept by then.
class ChordReader {
public:
    using Point = BezierSampler::Point;

    explicit ChordReader(OutlineChords* outline)
        : m_outline(outline), m_begin(outline->m_begin), m_chord{outline->m_begin, 0.0, 0.0, 0} {}

    /// Goes on to the next chord; false when no further chord can be found.
    bool next() {
        m_begin = m_chord.end;
        return m_beyond ? goOn() : readOn();
    }
    [[nodiscard]] Point begin() const { return m_begin; }
    [[nodiscard]] Point end() const { return m_chord.end; }
    [[nodiscard]] double length() const { return m_chord.length; }
    /// Path parameter reached.
    [[nodiscard]] double parameter() const { return m_chord.parameter; }
    /// Evaluations of the path so far, those of a search in vain included.
    [[nodiscard]] long evaluations() const { return m_chord.evaluations; }

private:
    bool readOn();
    bool goOn() {
        if (!m_beyond->next()) {
            m_chord.evaluations = m_beyond->evaluations();
            return false;
        }
        m_chord = lastChord(*m_beyond);
        return true;
    }

    OutlineChords* m_outline;
    Point m_begin;
    Chord m_chord;
    std::size_t m_next = 0;
    std::optional<ChordWalk> m_beyond; // of what is kept
};

/// The chords of all outlines of a frame. An outline that is the same at the next sample of the
/// frame is not walked again.
class FrameChords {
public:
    explicit FrameChords(PluginHost_API* host) : m_host(host), m_memory(KEPT_BYTES) {}

    /// The chords of an outline that was just checked out under `id`; null when it has none or when
    /// there is no memory left to remember it.
    OutlineChords* enter(unsigned long id, void* path, double targetLength);
    /// What `enter` gave last, for the outline checked out once more; may be null.
    OutlineChords* find(unsigned long id, void* path);

private:
    static constexpr std::size_t KEPT_BYTES = std::size_t{4} << 20;

    PluginHost_API* m_host;
    OutlineMemory m_memory;
    std::map<unsigned long, std::unique_ptr<OutlineChords>> m_outlines;
};

} // namespace orbel
