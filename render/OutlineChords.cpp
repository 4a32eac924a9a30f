#include "render/OutlineChords.h"

namespace orbel {

namespace {

// An outline's place among the others, the node that holds it included.
constexpr std::size_t ENTRY_BYTES = sizeof(OutlineChords) + 128;

} // namespace

OutlineChords::OutlineChords(PluginHost_API* host, void* const* effectRef, void* path,
                             long numSegments, double targetLength, OutlineMemory* memory)
    : m_host(host),
      m_memory(memory),
      m_targetLength(targetLength),
      m_sampler(host, effectRef, path, numSegments, memory),
      m_bytes(m_sampler.keptBytes()),
      m_frontier(host, &m_sampler, targetLength),
      m_begin(m_frontier.end()) {}

OutlineChords::~OutlineChords() {
    if (m_memory != nullptr) {
        m_memory->giveBack(m_bytes);
    }
}

bool OutlineChords::keepOneMore() {
    if (m_ended || m_memory == nullptr || !m_memory->take(sizeof(Chord))) {
        return false;
    }
    m_bytes += sizeof(Chord);
    m_ended = !m_frontier.next();
    if (!m_ended) {
        m_kept.push_back(lastChord(m_frontier));
    }
    return !m_ended;
}

int OutlineChords::measure(double* length) {
    if (!m_length) {
        ChordReader chords(this);
        if (const int abort = sumChords(m_host, numSegments(), &chords, length); abort != 0) {
            return abort;
        }
        m_length = *length;
    }
    *length = *m_length;
    return 0;
}

bool OutlineChords::areSameAs(const OutlineChords& other) const {
    return m_targetLength == other.m_targetLength && m_sampler.isSameCurve(other.m_sampler);
}

bool ChordReader::readOn() {
    if (m_next < m_outline->m_kept.size() || m_outline->keepOneMore()) {
        m_chord = m_outline->m_kept[m_next++];
        return true;
    }
    if (m_outline->m_ended) {
        m_chord.evaluations = m_outline->m_frontier.evaluations();
        return false;
    }
    m_beyond = m_outline->m_frontier;
    return goOn();
}

OutlineChords* FrameChords::enter(unsigned long id, void* path, double targetLength) {
    PluginPath_API* const paths = m_host->getPathAPI();
    long segments = 0;
    bool open = false;
    if (paths->PathNumSegments(nullptr, path, &segments) != 0 || segments <= 0 ||
        paths->PathIsOpen(nullptr, path, &open) != 0) {
        m_outlines.erase(id);
        return nullptr;
    }
    auto known = m_outlines.find(id);
    if (known == m_outlines.end()) {
        if (!m_memory.take(ENTRY_BYTES)) {
            return nullptr;
        }
        known = m_outlines.emplace(id, nullptr).first;
    }
    auto fresh =
        std::make_unique<OutlineChords>(m_host, nullptr, path, segments, targetLength, &m_memory);
    if (known->second == nullptr || !known->second->areSameAs(*fresh)) {
        known->second = std::move(fresh);
    }
    return known->second.get();
}

OutlineChords* FrameChords::find(unsigned long id, void* path) {
    const auto found = m_outlines.find(id);
    if (found == m_outlines.end() || found->second == nullptr) {
        return nullptr;
    }
    found->second->setPath(path);
    return found->second.get();
}

} // namespace orbel
