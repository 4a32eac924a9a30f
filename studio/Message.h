#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::studio {

/// A field of a request's or an answer's head.
struct Header {
    std::string name; ///< of a request: in small letters
    std::string value;
};

/// The head of a request as it came.
struct RequestHead {
    std::string method;
    std::string target;
    std::vector<Header> headers;

    /// How often the field is there; `name` in small letters.
    [[nodiscard]] std::size_t count(std::string_view name) const;
    /// The first field of this name; empty when there is none.
    [[nodiscard]] std::string_view value(std::string_view name) const;
};

struct Request {
    RequestHead head;
    std::string body;
    /// Whether nobody waits for the answer any more. Any thread.
    std::function<bool()> isGone;
};

/// Takes the body of an answer piece by piece.
class BodySink {
public:
    /// Waits until the piece is on its way; false when the other side is gone.
    virtual bool write(std::string_view bytes) = 0;

protected:
    ~BodySink() = default;
};

struct Answer {
    int status = 200;
    std::string type = "application/json";
    std::vector<Header> headers;
    std::string body;
    /// Writes the body instead of `body`, where it is made while it is sent.
    std::function<void(BodySink&)> stream;
    /// Bytes that `stream` writes; without it they are sent in chunks.
    std::optional<std::uint64_t> length;
};

/// What a request comes to that cannot be done: one sentence, and what helps.
struct Refusal {
    int status = 400;
    std::string error;
    std::string remedy;
};

/// `{"error", "remedy"}`
[[nodiscard]] Answer answerOf(const Refusal& refusal);

} // namespace orbel::studio
