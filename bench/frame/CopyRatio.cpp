#include "bench/frame/CopyRatio.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace orbel::bench {

namespace {

constexpr int WARM_UP = 3;

// More than any processor keeps to one core.
constexpr std::size_t FOREIGN_BYTES = std::size_t{32} << 20;

template<typename Work>
double secondsOf(const Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Fills the caches with something else.
class Distraction {
public:
    void run() {
        for (std::size_t i = 0; i < m_bytes.size(); i += 64) {
            m_bytes[i] = static_cast<unsigned char>(m_bytes[i] + 1);
        }
    }

private:
    std::vector<unsigned char> m_bytes = std::vector<unsigned char>(FOREIGN_BYTES);
};

} // namespace

CopyRatio measure(Subject& subject, int runs) {
    Distraction distraction;
    const std::vector<unsigned char> from(subject.bytes(), 1);
    std::vector<unsigned char> to(subject.bytes());
    std::vector<double> copies;
    std::vector<double> times;
    for (int i = -WARM_UP; i < runs; ++i) {
        subject.prepare();
        distraction.run();
        const double copy = secondsOf([&] { std::memcpy(to.data(), from.data(), from.size()); });
        distraction.run();
        const double time = secondsOf([&] { subject.run(); });
        if (i >= 0) {
            copies.push_back(copy);
            times.push_back(time);
        }
    }
    return {median(times), *std::min_element(times.begin(), times.end()), median(copies),
            *std::min_element(copies.begin(), copies.end())};
}

} // namespace orbel::bench
