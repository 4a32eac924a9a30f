#include "shapes/XmlReader.h"

#include <cstring>

// Makes expat declare its setting for entity expansion.
#ifndef XML_DTD
#define XML_DTD
#endif
#include <expat.h>

namespace orbel {

namespace {

constexpr std::size_t maxDepth = std::size_t{1} << 20;
// Bytes of names, attributes and text delivered, entities and default attributes expanded.
constexpr std::size_t maxBytes = std::size_t{128} << 20;
// Stricter than expat's own 100, with which 64 MiB of references keep a processor busy for minutes.
constexpr float maxAmplification = 10.0F;

std::size_t sizeOf(std::string_view name, XmlAttributes attributes) {
    std::size_t size = name.size() + 1;
    for (; *attributes != nullptr; ++attributes) {
        size += std::strlen(*attributes) + 1;
    }
    return size;
}

} // namespace

struct XmlHandlers {
    static XmlReader& of(void* user) { return *static_cast<XmlReader*>(user); }

    static void XMLCALL start(void* user, const XML_Char* name, const XML_Char** attributes) {
        XmlReader& reader = of(user);
        if (++reader.m_depth > maxDepth) {
            return reader.stop("elements are nested too deeply");
        }
        if (reader.charge(sizeOf(name, attributes))) {
            reader.deliver([&](XmlEvents& events) { events.startElement(name, attributes); });
        }
    }

    static void XMLCALL end(void* user, const XML_Char* name) {
        --of(user).m_depth;
        of(user).deliver([&](XmlEvents& events) { events.endElement(name); });
    }

    static void XMLCALL text(void* user, const XML_Char* text, int length) {
        const std::string_view view(text, static_cast<std::size_t>(length));
        if (of(user).charge(view.size())) {
            of(user).deliver([&](XmlEvents& events) { events.characterData(view); });
        }
    }
};

XmlReader::XmlReader(XmlEvents* events) : m_events(events), m_parser(XML_ParserCreate(nullptr)) {
    if (!valid()) {
        return;
    }
    XML_SetUserData(m_parser, this);
    XML_SetElementHandler(m_parser, XmlHandlers::start, XmlHandlers::end);
    XML_SetCharacterDataHandler(m_parser, XmlHandlers::text);
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(m_parser, maxAmplification);
}

XmlReader::~XmlReader() {
    XML_ParserFree(m_parser);
}

bool XmlReader::feed(std::span<const char> bytes, bool final) {
    const XML_Status status =
        XML_Parse(m_parser, bytes.data(), static_cast<int>(bytes.size()), final ? 1 : 0);
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
    return status == XML_STATUS_OK;
}

void XmlReader::stop(const char* reason) {
    if (m_stopReason == nullptr) {
        m_stopReason = reason;
        XML_StopParser(m_parser, XML_FALSE);
    }
}

const char* XmlReader::errorText() const {
    return XML_ErrorString(XML_GetErrorCode(m_parser));
}

int XmlReader::line() const {
    return static_cast<int>(XML_GetCurrentLineNumber(m_parser));
}

/// Hands an event on unless reading has been stopped: expat may have a last one to deliver.
template<typename Event>
void XmlReader::deliver(const Event& event) {
    if (m_stopReason != nullptr) {
        return;
    }
    try {
        event(*m_events);
    } catch (...) {
        m_failure = std::current_exception();
        stop("a handler failed");
    }
}

bool XmlReader::charge(std::size_t bytes) {
    m_bytes += bytes;
    if (m_bytes > maxBytes) {
        stop("the document expands to too much");
    }
    return m_stopReason == nullptr;
}

} // namespace orbel
