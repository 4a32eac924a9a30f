#include "drawing/XmlTree.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>

#include <climits>
#include <cstring>

namespace orbel {

namespace {

const char* chars(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}
xmlParserInput* openNothing(const char* /*url*/, const char* /*id*/, xmlParserCtxt* /*context*/) {
    return nullptr;
}

std::string errorText(xmlParserCtxt* context) {
    const xmlError* const error = xmlCtxtGetLastError(context);
    if (error == nullptr || error->message == nullptr) {
        return "it holds no XML";
    }
    std::string text = error->message;
    while (!text.empty() && (text.back() == '\n' || text.back() == '.')) {
        text.pop_back();
    }
    return text + " at line " + std::to_string(error->line);
}

} // namespace

XmlTree parseXmlTree(std::string_view text, std::string* error) {
    if (text.size() > INT_MAX) {
        *error = "it is too long";
        return nullptr;
    }
    xmlSetExternalEntityLoader(openNothing);
    xmlParserCtxt* const context = xmlNewParserCtxt();
    if (context == nullptr) {
        throw std::bad_alloc();
    }
    constexpr int options =
        XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    XmlTree tree(xmlCtxtReadMemory(context, text.data(), static_cast<int>(text.size()), nullptr,
                                   nullptr, options));
    if (tree == nullptr) {
        *error = errorText(context);
    }
    xmlFreeParserCtxt(context);
    return tree;
}

std::string textOf(const XmlTree& tree) {
    xmlChar* bytes = nullptr;
    int size = 0;
    xmlDocDumpMemoryEnc(tree.get(), &bytes, &size, "UTF-8");
    if (bytes == nullptr) {
        throw std::bad_alloc();
    }
    std::string text(chars(bytes), static_cast<std::size_t>(size));
    xmlFree(bytes);
    return text;
}

std::string_view nameOf(const xmlNode* node) {
    return chars(node->name);
}

bool isNamed(const xmlNode* node, std::string_view name) {
    return isElement(node) && nameOf(node) == name;
}

std::optional<std::string> attributeOf(const xmlNode* node, std::string_view name) {
    for (const xmlAttr* attribute = node->properties; attribute != nullptr;
         attribute = attribute->next) {
        const std::string_view full = chars(attribute->name);
        const std::size_t colon = full.rfind(':'); // there without a declaration of the prefix
        if ((colon == std::string_view::npos ? full : full.substr(colon + 1)) == name) {
            xmlChar* const value = xmlNodeListGetString(node->doc, attribute->children, 1);
            std::string result = value == nullptr ? "" : chars(value);
            xmlFree(value);
            return result;
        }
    }
    return std::nullopt;
}

void setAttribute(xmlNode* node, const char* name, const std::string& value) {
    xmlSetProp(node, xmlChars(name), xmlChars(value.c_str()));
}

void removeAttribute(xmlNode* node, std::string_view name) {
    for (xmlAttr* attribute = node->properties; attribute != nullptr;) {
        xmlAttr* const next = attribute->next;
        const std::string_view full = chars(attribute->name);
        const std::size_t colon = full.rfind(':');
        if ((colon == std::string_view::npos ? full : full.substr(colon + 1)) == name) {
            xmlRemoveProp(attribute);
        }
        attribute = next;
    }
}

std::string plainText(const xmlNode* node) {
    xmlChar* const content = xmlNodeGetContent(node);
    std::string result;
    bool space = false;
    for (const char* at = chars(content); at != nullptr && *at != '\0'; ++at) {
        if (std::strchr(" \t\r\n", *at) != nullptr) {
            space = !result.empty();
            continue;
        }
        result += space ? " " : "";
        space = false;
        result += *at;
    }
    xmlFree(content);
    return result;
}

} // namespace orbel
