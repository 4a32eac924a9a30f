#include "drawing/Cascade.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

/// The identifiers of the elements of one drawing that a style sheet fills with red, in order.
std::string filledBy(const std::string& sheet) {
    std::string error;
    const XmlTree tree = parseXmlTree(
        "<svg><g id='a' class='x y'><rect id='b' class='xy' lang='en-GB'/><rect id='c' "
        "data-k='one two'/><circle id='d'/></g><rect id='e' class='y'/><g id='f'><g id='g'>"
        "<rect id='h'/></g></g><style>" +
            sheet + "</style></svg>",
        &error);
    xmlNode* const root = xmlDocGetRootElement(tree.get());
    const Cascade cascade(root);
    std::string ids;
    forEachElement(root, [&](const xmlNode* node) {
        if (cascade.declared(node, "fill") == "red") {
            ids += attributeOf(node, "id").value_or("");
        }
    });
    return ids;
}

TEST(Cascade, findsWhatSelectorsMean) {
    const std::pair<const char*, const char*> rows[] = {
        {"*", "abcdefgh"},
        {"rect", "bceh"},
        {"g rect", "bch"},
        {"svg&gt;g > rect", "bc"},
        {"svg > rect", "e"},
        {"g g rect", "h"},
        {"svg rect", "bceh"},
        {"rect + rect", "c"},
        {"rect ~ circle", "d"},
        {"rect+circle", "d"},
        {"circle + rect", ""},
        {"g+rect", "e"},
        {"g~g", "f"},
        {"g+g", ""},
        {"#c", "c"},
        {"rect#c", "c"},
        {"circle#c", ""},
        {".x", "a"},
        {".y", "ae"},
        {".x.y", "a"},
        {".x.xy", ""},
        {"[lang]", "b"},
        {"[ lang = 'en-GB' ]", "b"},
        {"[lang=en]", ""},
        {"[lang|=en]", "b"},
        {"[lang|=e]", ""},
        {"[data-k~=two]", "c"},
        {"[data-k~=tw]", ""},
        {"[data-k^='one']", "c"},
        {"[data-k^='']", ""},
        {"[data-k$=two]", "c"},
        {"[data-k$=one]", ""},
        {"[data-k*=\"e t\"]", "c"},
        {"[data-k*=x]", ""},
        {":first-child", "abgh"},
        {":last-child", "dgh"},
        {"rect:nth-child(2)", "ce"},
        {":nth-child(odd)", "abdfgh"},
        {":nth-child(even)", "ce"},
        {":nth-child( -n + 2 )", "abcegh"},
        {":nth-child(n+3)", "df"},
        {":nth-child(3n)", "df"},
        {":nth-child(x)", ""},
        {":nth-last-child(2)", "cf"},
        {"rect:first-of-type", "beh"},
        {"rect:last-of-type", "ceh"},
        {"rect:nth-of-type(2)", "c"},
        {"rect:nth-last-of-type(2n)", "b"},
        {"rect:hover", ""},
        {"rect, circle", "bcdeh"},
        {"rect%", ""},
        {"/* rect, */ circle /*", ""},
        {"/* rect, */ circle", "d"},
        {"@import url(x); circle", "d"},
        {"@media print { rect { fill: red } } circle", "d"},
        {"rect { fill: blue } circle", "d"},
    };
    for (const auto& [selectors, ids] : rows) {
        EXPECT_EQ(filledBy(std::string(selectors) + " { fill: red }"), ids) << selectors;
    }
}

/// Of the fill of one element: `attributes` are its own.
std::string weighed(const std::string& sheet, const std::string& attributes) {
    std::string error;
    const XmlTree tree = parseXmlTree("<svg fill='grey'><style>" + sheet +
                                          "</style><g fill='black'><rect id='i' class='k' " +
                                          attributes + "/></g></svg>",
                                      &error);
    xmlNode* const root = xmlDocGetRootElement(tree.get());
    const Cascade cascade(root);
    std::string value;
    forEachElement(root, [&](const xmlNode* node) {
        value = cascade.inherited(node, "fill").value_or("nothing");
    });
    return value;
}

TEST(Cascade, weighsWhatIsStated) {
    struct Row {
        const char* sheet;
        const char* attributes;
        const char* value;
    };
    const Row rows[] = {
        {"", "", "black"},
        {"", "fill='inherit'", "black"},
        {"g{fill:inherit}", "", "grey"},
        {"", "fill='green'", "green"},
        {"rect{fill:red}", "fill='green'", "red"},
        {"*{fill:red}", "fill='green'", "red"},
        {".k{fill:red} rect{fill:blue}", "", "red"},
        {"#i{fill:red} .k{fill:blue} rect{fill:green}", "", "red"},
        {"rect.k{fill:red} .k{fill:blue}", "", "red"},
        {"[id]{fill:red} g rect{fill:blue}", "", "red"},
        {"rect:first-child{fill:red} g rect{fill:blue}", "", "red"},
        {".k{fill:red} #i{stroke:blue}", "", "red"},
        {"rect{fill:red} rect{fill:blue}", "", "blue"},
        {"rect{fill:red;fill:blue}", "", "blue"},
        {"rect{fill:red ! important} #i{fill:blue}", "", "red"},
        {"#i{fill:red}", "style='fill:blue'", "blue"},
        {"rect{fill:red!important}", "style='fill:blue'", "red"},
        {"rect{fill:red!important}", "style='fill:blue!important'", "blue"},
        {"", "style='; fill ; fill : a!b ;'", "a!b"},
        {"rect{fill:red", "", "red"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(weighed(row.sheet, row.attributes), row.value) << row.sheet << row.attributes;
    }
}

TEST(Cascade, knowsWhetherARuleLooksAtSiblings) {
    const std::pair<const char*, bool> rows[] = {
        {"g > rect .k", false}, {"g + rect", true}, {"g ~ rect", true}, {"rect:first-child", true}};
    for (const auto& [selector, looks] : rows) {
        std::string error;
        const XmlTree tree = parseXmlTree(std::string("<svg><style>") + selector +
                                              "{fill:red} g{fill:red}</style></svg>",
                                          &error);
        EXPECT_EQ(Cascade(xmlDocGetRootElement(tree.get())).looksAtSiblings(), looks) << selector;
    }
}

} // namespace
} // namespace orbel
