#include "studio/HttpServer.h"

#include "studio/Headers.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/websocket.hpp>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

#include <sys/socket.h>

namespace orbel::studio {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
namespace websocket = boost::beast::websocket;
using Milliseconds = std::chrono::milliseconds;
using asio::ip::tcp;

constexpr std::uint32_t headLimit = 16U << 10;
constexpr Milliseconds drainTime{3000};

/// One connection: requests and answers in turn, each step within its time.
class Connection final : private BodySink {
public:
    Connection(asio::io_context& context, tcp::socket socket, HttpService* service,
               const HttpLimits& limits, const std::atomic<bool>& ending)
        : m_context(context),
          m_stream(std::move(socket)),
          m_service(service),
          m_limits(limits),
          m_ending(ending) {
        m_stream.socket().set_option(tcp::no_delay(true));
    }

    void serve() {
        while (exchange() && !m_ending) {
        }
        beast::error_code ignored;
        m_stream.socket().shutdown(tcp::socket::shutdown_both, ignored);
    }

    [[nodiscard]] int handle() { return m_stream.socket().native_handle(); }

private:
    using Parser = http::request_parser<http::string_body>;
    using Socket = websocket::stream<beast::tcp_stream&, false>; // nothing is compressed

    /// Waits for one asynchronous step, which is how each of them can have a limit of its own.
    template<typename Start>
    beast::error_code await(Milliseconds limit, const Start& start) {
        beast::error_code result;
        m_stream.expires_after(limit);
        start([&result](beast::error_code error, std::size_t /*bytes*/) { result = error; });
        m_context.restart();
        m_context.run();
        return result;
    }

    /// False when the connection is at its end.
    bool exchange() {
        Parser parser;
        parser.header_limit(headLimit);
        parser.body_limit(std::numeric_limits<std::uint64_t>::max());
        const Milliseconds patience =
            m_buffer.size() == 0 && m_used ? m_limits.idle : m_limits.head;
        m_used = true;
        if (const beast::error_code error = await(patience, [&](auto done) {
                http::async_read_header(m_stream, m_buffer, parser, done);
            })) {
            return refuseHead(error);
        }
        Request request;
        request.head = headOf(parser);
        m_head = parser.get().method() == http::verb::head;
        m_keepAlive = parser.keep_alive();
        if (const std::optional<Answer> refusal = m_service->refuse(request.head)) {
            return end(*refusal);
        }
        if (const std::optional<Answer> refusal = readBody(parser, request.head)) {
            return end(*refusal);
        }
        request.body = std::move(parser.get().body());
        request.isGone = [this] { return isGone(); };
        const Answer answer = m_service->answer(request);
        if (answer.stream && websocket::is_upgrade(parser.get())) {
            sendSocket(answer, parser.get());
            return false;
        }
        return send(answer) && m_keepAlive;
    }

    static RequestHead headOf(const Parser& parser) {
        const auto& message = parser.get();
        RequestHead head;
        head.method = std::string(message.method_string());
        head.target = std::string(message.target());
        for (const auto& field : message) {
            std::string name(field.name_string());
            std::transform(name.begin(), name.end(), name.begin(), [](char c) {
                return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
            });
            head.headers.push_back({std::move(name), std::string(field.value())});
        }
        return head;
    }

    bool refuseHead(beast::error_code error) {
        if (error == http::error::header_limit) {
            return end(answerOf(Refusal{431, "the request's head is too large", ""}));
        }
        if (error.category() == make_error_code(http::error::bad_version).category() &&
            error != http::error::end_of_stream && error != http::error::partial_message) {
            return end(answerOf(Refusal{400, "this is no request", ""}));
        }
        return false;
    }

    std::optional<Answer> readBody(Parser& parser, const RequestHead& head) {
        const std::uint64_t limit = m_service->bodyLimit(head);
        const Refusal tooLarge{413,
                               "this is larger than the " + std::to_string(limit >> 20) +
                                   " MiB that the studio takes",
                               "put it into the scene's folder yourself"};
        if (const auto length = parser.content_length(); length && *length > limit) {
            return answerOf(tooLarge);
        }
        parser.body_limit(limit);
        const beast::error_code error = await(
            m_limits.body, [&](auto done) { http::async_read(m_stream, m_buffer, parser, done); });
        if (error == http::error::body_limit) {
            return answerOf(tooLarge);
        }
        if (error) {
            return answerOf(Refusal{408, "the request did not arrive whole", "try again"});
        }
        return std::nullopt;
    }

    /// The last answer of a connection. What the other side is still sending is taken for a moment,
    /// or it would never see the answer.
    bool end(const Answer& answer) {
        m_keepAlive = false;
        if (!send(answer)) {
            return false;
        }
        beast::error_code error;
        m_stream.socket().shutdown(tcp::socket::shutdown_send, error);
        const auto until = std::chrono::steady_clock::now() + drainTime;
        std::array<char, 65536> waste{};
        while (!error && std::chrono::steady_clock::now() < until) {
            error = await(Milliseconds(1000),
                          [&](auto done) { m_stream.async_read_some(asio::buffer(waste), done); });
        }
        return false;
    }

    template<typename Message>
    void fillHead(Message& message, const Answer& answer) const {
        message.result(static_cast<unsigned>(answer.status));
        message.set(http::field::content_type, answer.type);
        for (const auto& [name, value] : protectingHeaders()) {
            message.set(beast::string_view(name.data(), name.size()),
                        beast::string_view(value.data(), value.size()));
        }
        for (const Header& header : answer.headers) {
            message.set(header.name, header.value);
        }
        message.keep_alive(m_keepAlive);
    }

    bool send(const Answer& answer) {
        return answer.stream ? sendStream(answer) : sendWhole(answer);
    }

    bool sendWhole(const Answer& answer) {
        http::response<http::span_body<const char>> message;
        fillHead(message, answer);
        message.content_length(answer.body.size());
        if (!m_head) {
            message.body() = {answer.body.data(), answer.body.size()};
        }
        http::response_serializer<http::span_body<const char>> serializer(message);
        return !await(m_limits.write, [&](auto done) {
            if (m_head) {
                http::async_write_header(m_stream, serializer, done);
            } else {
                http::async_write(m_stream, serializer, done);
            }
        });
    }

    bool sendStream(const Answer& answer) {
        http::response<http::empty_body> message;
        fillHead(message, answer);
        m_chunked = !answer.length;
        m_streamed = 0;
        if (answer.length) {
            message.content_length(*answer.length);
        } else {
            message.chunked(true);
        }
        http::response_serializer<http::empty_body> serializer(message);
        m_sound = !await(m_limits.write,
                         [&](auto done) { http::async_write_header(m_stream, serializer, done); });
        if (m_sound && !m_head) {
            answer.stream(*this);
        }
        if (answer.length && !m_head) {
            m_sound =
                m_sound &&
                m_streamed == *answer.length; // or the next answer would be taken for its rest
        }
        if (m_sound && m_chunked && !m_head) {
            m_sound = !await(m_limits.write, [&](auto done) {
                asio::async_write(m_stream, http::make_chunk_last(), done);
            });
        }
        return m_sound;
    }

    /// A stream that is asked for as a socket: each piece is a message. Nothing is expected from
    /// the other side, so whatever it sends, its farewell most likely, ends it.
    void sendSocket(const Answer& answer, const Parser::value_type& request) {
        Socket socket(m_stream);
        socket.set_option(websocket::stream_base::decorator([](websocket::response_type& head) {
            for (const auto& [name, value] : protectingHeaders()) {
                head.set(beast::string_view(name.data(), name.size()),
                         beast::string_view(value.data(), value.size()));
            }
            head.set(http::field::sec_websocket_protocol, "orbel.events");
        }));
        m_sound = !await(m_limits.write, [&](auto done) {
            socket.async_accept(request, [done](beast::error_code error) { done(error, 0); });
        });
        m_socket = &socket;
        if (m_sound) {
            answer.stream(*this);
        }
        m_socket = nullptr;
    }

    bool write(std::string_view bytes) override {
        const asio::const_buffer buffer(bytes.data(), bytes.size());
        if (m_socket != nullptr) {
            m_sound = m_sound && !m_ending && !await(m_limits.write, [&](auto done) {
                          m_socket->async_write(buffer, done);
                      });
            return m_sound;
        }
        m_streamed += bytes.size();
        m_sound = m_sound && !m_ending && !await(m_limits.write, [&](auto done) {
                      if (m_chunked) {
                          asio::async_write(m_stream, http::make_chunk(buffer), done);
                      } else {
                          asio::async_write(m_stream, buffer, done);
                      }
                  });
        return m_sound;
    }

    [[nodiscard]] bool isGone() {
        char byte = 0;
        const auto got = recv(handle(), &byte, 1, MSG_PEEK | MSG_DONTWAIT);
        return m_ending || got == 0 || (got > 0 && m_socket != nullptr) ||
               (got < 0 && errno != EAGAIN && errno != EINTR);
    }

    asio::io_context& m_context;
    beast::tcp_stream m_stream;
    HttpService* m_service;
    const HttpLimits& m_limits;
    const std::atomic<bool>& m_ending;
    beast::flat_buffer m_buffer;
    Socket* m_socket = nullptr; // while a stream is sent as messages
    bool m_used = false;
    bool m_head = false; // the request asked for the head alone
    bool m_keepAlive = false;
    bool m_chunked = false;
    std::uint64_t m_streamed = 0;
    bool m_sound = true; // everything of a stream so far went out
};

} // namespace

/// Takes connections and keeps book of them.
class HttpServer::Listener {
public:
    Listener(std::uint16_t port, const HttpLimits& limits)
        : m_limits(limits),
          m_acceptor(m_context, tcp::endpoint(asio::ip::address_v4::loopback(), port)) {}
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    ~Listener() {
        m_ending = true;
        m_context.stop();
        if (m_thread.joinable()) {
            m_thread.join();
        }
        std::unique_lock lock(m_mutex);
        for (const int handle : m_handles) {
            ::shutdown(handle, SHUT_RDWR);
        }
        m_none.wait(lock, [this] { return m_connections == 0; });
    }

    [[nodiscard]] std::uint16_t port() const { return m_acceptor.local_endpoint().port(); }

    void serve(HttpService* service) {
        m_service = service;
        accept();
        m_thread = std::thread([this] { m_context.run(); });
    }

private:
    void accept() {
        if (m_next == nullptr) {
            m_next = std::make_unique<asio::io_context>(1);
        }
        m_acceptor.async_accept(*m_next, [this](beast::error_code error, tcp::socket socket) {
            if (!error) {
                begin(std::move(socket));
            } else {
                // Out of handles, most likely: others will be closed soon.
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            }
            if (!m_ending) {
                accept();
            }
        });
    }

    void begin(tcp::socket socket) {
        const std::lock_guard lock(m_mutex);
        if (m_connections == m_limits.connections) {
            return; // closes it
        }
        // The context must outlive its socket, so both go into the thread together.
        std::thread([this, context = std::move(m_next), taken = std::move(socket)]() mutable {
            handle(*context, std::move(taken));
        }).detach();
        ++m_connections;
    }

    void handle(asio::io_context& context, tcp::socket socket) {
        {
            beast::error_code ignored;
            Connection connection(context, std::move(socket), m_service, m_limits, m_ending);
            const int handle = connection.handle();
            note(handle, true);
            connection.serve();
            note(handle, false);
        }
        const std::lock_guard lock(m_mutex);
        --m_connections;
        m_none.notify_all();
    }

    void note(int handle, bool open) {
        const std::lock_guard lock(m_mutex);
        if (open) {
            m_handles.insert(handle);
        } else {
            m_handles.erase(handle);
        }
        if (open && m_ending) {
            ::shutdown(handle, SHUT_RDWR);
        }
    }

    HttpLimits m_limits;
    HttpService* m_service = nullptr;
    // Of the connection that comes next. What waits for it in the context below holds a socket of
    // it, so it goes after that.
    std::unique_ptr<asio::io_context> m_next;
    asio::io_context m_context{1};
    tcp::acceptor m_acceptor;
    std::thread m_thread;
    std::atomic<bool> m_ending = false;
    std::mutex m_mutex;
    std::condition_variable m_none;
    std::set<int> m_handles;
    std::size_t m_connections = 0;
};

HttpServer::HttpServer(std::uint16_t port, const HttpLimits& limits) {
    try {
        m_listener = std::make_unique<Listener>(port, limits);
    } catch (const boost::system::system_error& error) {
        throw std::system_error(error.code().value(), std::system_category());
    }
}

HttpServer::~HttpServer() = default;

std::uint16_t HttpServer::port() const {
    return m_listener->port();
}

void HttpServer::serve(HttpService* service) {
    m_listener->serve(service);
}

} // namespace orbel::studio
