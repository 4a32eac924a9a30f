#pragma once

#include <cstddef>
#include <exception>
#include <span>
#include <string_view>

struct XML_ParserStruct;

namespace orbel {

/// Attributes as they come from expat: name, value, name, value, ..., null.
using XmlAttributes = const char* const*;

/// Receives the events of one document. What it throws leaves through `XmlReader::feed`.
class XmlEvents {
public:
    virtual void startElement(std::string_view name, XmlAttributes attributes) = 0;
    virtual void endElement(std::string_view name) = 0;
    /// A piece of text; one text may come in several pieces.
    virtual void characterData(std::string_view text) = 0;

protected:
    XmlEvents() = default;
    XmlEvents(const XmlEvents&) = default;
    XmlEvents& operator=(const XmlEvents&) = default;
    ~XmlEvents() = default;
};

/// One pass of expat over one document, with bounds on what a hostile document can ask for.
class XmlReader {
public:
    /// `events` is borrowed.
    explicit XmlReader(XmlEvents* events);
    ~XmlReader();
    XmlReader(const XmlReader&) = delete;
    XmlReader& operator=(const XmlReader&) = delete;

    /// False when expat could not be set up; nothing else may be called then.
    [[nodiscard]] bool valid() const { return m_parser != nullptr; }
    /// Reads the next bytes, `final` when they are the last. False when reading has ended early, by
    /// an error or by `stop`.
    bool feed(std::span<const char> bytes, bool final);
    /// Ends reading; the reason must outlive this object. May be called from an event.
    void stop(const char* reason);

    /// Why reading was stopped; null when it was not.
    [[nodiscard]] const char* stopReason() const { return m_stopReason; }
    /// What expat says about the error.
    [[nodiscard]] const char* errorText() const;
    /// The line, from 1, of the event or error at hand.
    [[nodiscard]] int line() const;

private:
    friend struct XmlHandlers;

    template<typename Event>
    void deliver(const Event& event);
    bool charge(std::size_t bytes);

    XmlEvents* m_events;
    XML_ParserStruct* m_parser;
    std::exception_ptr m_failure; // thrown by an event, on its way past expat's own frames
    const char* m_stopReason = nullptr;
    std::size_t m_depth = 0;
    std::size_t m_bytes = 0;
};

} // namespace orbel
