#pragma once

#include "drawing/XmlTree.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// What a drawing states about the look of its elements: presentation attributes, style sheets of
/// types, classes, identifiers, attributes and their combinations, and `style` attributes, weighed
/// as browsers do. Knows no property by itself: values come as they are written.
class Cascade {
public:
    /// Reads every `style` element of the document, which is borrowed.
    explicit Cascade(xmlNode* root);

    /// What is stated for this element alone.
    [[nodiscard]] std::optional<std::string> declared(const xmlNode* node,
                                                      std::string_view property) const;
    /// What is stated for the element or the nearest one around it.
    [[nodiscard]] std::optional<std::string> inherited(const xmlNode* node,
                                                       std::string_view property) const;
    /// Whether a rule counts elements or asks for their neighbours.
    [[nodiscard]] bool looksAtSiblings() const { return m_looksAtSiblings; }

    /// An attribute that is there, or compared: '=', or the character before it.
    struct Attribute {
        std::string name;
        char comparison = '\0';
        std::string value;
    };
    /// A place among the children of one element, or those of one type: step n + offset, from 1.
    struct Position {
        bool ofType = false;
        bool fromEnd = false;
        int step = 0;
        int offset = 1;
    };
    struct Compound {
        char combinator = ' '; ///< to the compound before: ' ', '>', '+' or '~'
        std::string type;      ///< empty for any
        std::vector<std::string> ids;
        std::vector<std::string> classes;
        std::vector<Attribute> attributes;
        std::vector<Position> positions;
        bool unknown = false; ///< matches nothing
    };
    struct Declaration {
        std::string property;
        std::string value;
        bool important = false;
    };
    struct Rule {
        std::vector<Compound> selector;
        int specificity = 0;
        std::vector<Declaration> declarations;
    };

private:
    void readSheet(std::string_view text);
    void addRules(std::string_view selectors, std::string_view body);

    std::vector<Rule> m_rules;
    bool m_looksAtSiblings = false;
};

/// The declarations of a `style` attribute or of a rule's body.
[[nodiscard]] std::vector<Cascade::Declaration> readDeclarations(std::string_view text);

/// A word without white space at its ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

} // namespace orbel
