#pragma once

#include <libxml/tree.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orbel {

struct XmlTreeDeleter {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using XmlTree = std::unique_ptr<xmlDoc, XmlTreeDeleter>;

/// Reads a document, its own entities replaced, within the library's limits on entities, depth and
/// length. Nothing outside the text is opened. Null when it is not well-formed; `error` then says
/// why and where.
[[nodiscard]] XmlTree parseXmlTree(std::string_view text, std::string* error);

/// The document as UTF-8.
[[nodiscard]] std::string textOf(const XmlTree& tree);

/// The library's characters are unsigned.
[[nodiscard]] inline const xmlChar* xmlChars(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}
[[nodiscard]] inline bool isElement(const xmlNode* node) {
    return node->type == XML_ELEMENT_NODE;
}
[[nodiscard]] std::string_view nameOf(const xmlNode* node);
/// An element of this name; namespaces are not looked at.
[[nodiscard]] bool isNamed(const xmlNode* node, std::string_view name);

/// The value of an attribute, whatever its prefix.
[[nodiscard]] std::optional<std::string> attributeOf(const xmlNode* node, std::string_view name);
void setAttribute(xmlNode* node, const char* name, const std::string& value);
void removeAttribute(xmlNode* node, std::string_view name);
/// The text inside an element, white space at its ends taken off and inside made single spaces.
[[nodiscard]] std::string plainText(const xmlNode* node);

/// Calls `visit` with every element below and including `root`, in the order of the document. The
/// next one is found before the visit of the last one ends, by depth and without recursion, so
/// `visit` may change the element and what is inside, not what stands after it.
template<typename Visitor>
void forEachElement(xmlNode* root, const Visitor& visit) {
    for (xmlNode* node = root; node != nullptr;) {
        if (isElement(node)) {
            visit(node);
        }
        if (isElement(node) && node->children != nullptr) {
            node = node->children;
            continue;
        }
        while (node != root && node->next == nullptr) {
            node = node->parent;
        }
        node = node == root ? nullptr : node->next;
    }
}

} // namespace orbel
