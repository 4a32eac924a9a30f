#pragma once

#include "studio/Message.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace orbel::studio {

/// What a server serves. Called by many threads at once.
class HttpService {
public:
    /// Looks at a head before anything of its body is read; an answer refuses the request.
    [[nodiscard]] virtual std::optional<Answer> refuse(const RequestHead& head) = 0;
    /// Bytes that the body may have. Larger ones are refused unread.
    [[nodiscard]] virtual std::uint64_t bodyLimit(const RequestHead& head) = 0;
    [[nodiscard]] virtual Answer answer(const Request& request) = 0;

protected:
    ~HttpService() = default;
};

/// What a server gives a connection before it is cut.
struct HttpLimits {
    std::size_t connections = 64; ///< at once
    std::chrono::milliseconds head{10'000};
    std::chrono::milliseconds idle{60'000}; ///< between two requests
    std::chrono::milliseconds body{60'000};
    std::chrono::milliseconds write{30'000}; ///< for each piece of an answer
};

/// Speaks HTTP/1.1 with this machine alone: listens on 127.0.0.1, one thread a connection. Heads,
/// bodies, connections and the time that anything takes are limited.
class HttpServer {
public:
    /// Takes a port, 0 any that is free. Throws std::system_error when it cannot be had.
    explicit HttpServer(std::uint16_t port, const HttpLimits& limits = {});
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;
    /// Cuts every connection and waits for what is being answered.
    ~HttpServer();

    [[nodiscard]] std::uint16_t port() const;
    /// Answers from now on, once. The service is borrowed.
    void serve(HttpService* service);

private:
    class Listener;

    std::unique_ptr<Listener> m_listener;
};

} // namespace orbel::studio
