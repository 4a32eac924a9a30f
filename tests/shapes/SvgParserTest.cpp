#include "shapes/SvgParser.h"

#include "tests/shapes/SvgText.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

namespace orbel {
namespace {

using test::noticesOf;
using test::Outline;
using test::outlinesOf;
using test::Vertices;
using Texts = std::vector<std::string>;

struct Case {
    const char* svg;
    bool open;
    Vertices vertices;
};

const Vertices rectangle{
    {1, 2, 1, 2, 4, 2}, {4, 2, 4, 2, 4, 7}, {4, 7, 4, 7, 1, 7}, {1, 7, 1, 7, 1, 2}};
const Vertices triangle{{0, 0, 0, 0, 4, 0}, {4, 0, 4, 0, 0, 3}, {0, 3, 0, 3, 0, 0}};
const Case elements[] = {
    {"<rect x='1' y='2' width='3' height='5'/>", false, rectangle},
    {"<rect width='3' y='2' fill='none' x='1' height='5px' rx='9' style='x:7'/>", false, rectangle},
    {"<rect x='1' y='2' width='0' height='5'/>", true, {}},
    {"<rect x='1' y='2' height='5'/>", true, {}},
    {"<rect width='-3' height='5' x='4' y='2'/>",
     false,
     {{4, 2, 4, 2, 1, 2}, {1, 2, 1, 2, 1, 7}, {1, 7, 1, 7, 4, 7}, {4, 7, 4, 7, 4, 2}}},
    {"<line x1='1' y1='2' x2='3' y2='4'/>", true, {{1, 2, 1, 2, 1, 2}, {3, 4, 3, 4, 3, 4}}},
    {"<line/>", true, {{0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0}}},
    {"<polygon points='0,0 4,0 0,3'/>", false, triangle},
    {"<polyline points='0 0,4 0 0 3' stroke='red'/>", false, triangle}, // closed too
    {"<polygon points='M 0 0 L 4 0 0 3'/>", false, triangle},
    {"<polygon points='0 3 4'/>", false, {{0, 3, 0, 3, 4, 0}, {4, 0, 4, 0, 0, 3}}},
    {"<polygon points='33 33'/>", false, {}},
    {"<polygon/>", false, {}},
    // The radius acts as a diameter, the controls stand at the corners of the box.
    {"<circle cx='10' cy='20' r='8'/>",
     false,
     {{6, 20, 6, 20, 6, 24}, {14, 24, 14, 20, 14, 16}, {6, 16, 6, 20, 6, 20}}},
    {"<ellipse cx='10' cy='20' rx='8' ry='4'/>",
     false,
     {{6, 20, 6, 20, 6, 22}, {14, 22, 14, 20, 14, 18}, {6, 18, 6, 20, 6, 20}}},
    {"<circle r='-2'/>", false, {{1, 0, 1, 0, 1, -1}, {-1, -1, -1, 0, -1, 1}, {1, 1, 1, 0, 1, 0}}},
    {"<path/>", true, {}},
    {"<path d='M 1 2 L 3 4' id='a'/>", true, {{1, 2, 1, 2, 1, 2}, {3, 4, 3, 4, 3, 4}}},
    {"<g transform='scale(2)'><g><path d='M 1 2 L 3 4'/></g></g>",
     true,
     {{1, 2, 1, 2, 1, 2}, {3, 4, 3, 4, 3, 4}}},
    {"<defs><symbol><path d='M 1 2 L 3 4'/></symbol></defs>",
     true,
     {{1, 2, 1, 2, 1, 2}, {3, 4, 3, 4, 3, 4}}},
};

TEST(SvgParser, everyElementBecomesOneOutline) {
    for (const Case& element : elements) {
        SCOPED_TRACE(element.svg);
        const std::vector<Outline> outlines = outlinesOf(element.svg);
        ASSERT_EQ(outlines.size(), 1U);
        EXPECT_EQ(outlines[0].isOpen, element.open);
        EXPECT_EQ(outlines[0].vertices, element.vertices);
    }
}

TEST(SvgParser, aRoundElementWithoutARadiusIsNothing) {
    EXPECT_TRUE(outlinesOf(R"(<circle cx="5"/><circle r="0"/><ellipse rx="3"/>
                              <ellipse ry="3" rx="0"/>)")
                    .empty());
}

TEST(SvgParser, aPathInsideAPathIsIgnoredUntilOneOfThemEnds) {
    EXPECT_EQ(outlinesOf("<path d='M 1 1 L 2 2'><path d='M 3 3 L 4 4'/></path>").size(), 1U);
    // The end of the inner path counts as that of the outer one: this is meant.
    EXPECT_EQ(outlinesOf("<path><path/><path/></path>").size(), 2U);
    EXPECT_EQ(outlinesOf("<path><rect/></path>").size(), 2U);
}

TEST(SvgParser, collectsTheTitle) {
    const auto titleOf = [](const std::string& text) {
        svg_parser parser;
        parser.parseBuffer(text);
        return parser.title();
    };
    EXPECT_EQ(titleOf("<svg>a<title>My\n\tstar &amp; <![CDATA[<moon>]]></title>b</svg>"),
              "My  star & <moon>");
    EXPECT_EQ(titleOf("<svg><title>" + std::string(5000, 'x') + "</title></svg>"),
              std::string(255, 'x'));
    EXPECT_EQ(titleOf("<svg><title>\xC3\xA9</title></svg>"), "\xC3\xA9");
}

TEST(SvgParser, anXmlErrorKeepsWhatWasComplete) {
    for (const char* end : {"<rect", "</g>", "<line/", "&nothing;", "\x01", ""}) {
        const std::string text = std::string("<svg>\n<path d='M 1 1 L 2 2'/>\n<g><line/>") + end;
        test::Notices notices;
        EXPECT_EQ(test::readSvg(text, &notices).outlines().size(), 2U) << end;
        ASSERT_EQ(notices.all.size(), 1U) << end;
        EXPECT_EQ(notices.all[0].issue, SvgIssue::XmlError);
        EXPECT_TRUE(notices.all[0].text.ends_with(" at line 3")) << notices.all[0].text;
    }
    EXPECT_TRUE(test::readSvg("", nullptr).outlines().empty());
}

TEST(SvgParser, tokensMaySpanChunks) {
    for (std::size_t padding = 980; padding != 1060; ++padding) {
        const auto outlines = outlinesOf(std::string(padding, ' ') + "<path d='M 1 2 L 3 4 5 6'/>");
        ASSERT_EQ(outlines.size(), 1U);
        EXPECT_EQ(outlines[0].vertices, (Vertices{{1, 2, 1, 2, 3, 4}, {3, 4, 3, 4, 5, 6}}));
    }
}

TEST(SvgParser, transformsAreScannedAndNotApplied) {
    struct Scan {
        const char* transform;
        Texts functions;
    };
    for (const Scan& scan : {
             Scan{"matrix(1 0 0 1 5 5) translate(3,4), translate(1)",
                  {"matrix", "translate", "translate"}},
             Scan{"translate(9) rotate(1) translate(3)", {"translate", "rotate"}},
             Scan{"scale(2)", {"scale"}},
             Scan{"skewX(2)", {"skewX"}},
             Scan{"skewY(2) matrix(1)", {"skewY"}},
             Scan{"MATRIX(1) what(2) translate(1 2 3 4 5)", {"translate"}},
             Scan{"matrix matrix(", {"matrix"}},
             Scan{"rotate", {"rotate"}},
             Scan{"", {}},
         }) {
        for (const std::string name : {"transform=\"", "style=\" fill : red; transform : "}) {
            const std::string line = "<line x2='1' " + name + scan.transform + "\"/>";
            Texts expected;
            for (const std::string& function : scan.functions) {
                expected.push_back("2: transform \"" + function + "\" is not applied");
            }
            EXPECT_EQ(noticesOf(line), expected) << line;
            EXPECT_EQ(outlinesOf(line)[0].vertices[1], (Vx_PathVertex{1, 0, 1, 0, 1, 0}));
        }
    }
}

TEST(SvgParser, stylesOfAnyFormAreTaken) {
    for (const char* style : {"", ";", ":", ";;:;", "fill", "fill:", ":red", " fill : none ; ",
                              "fill:red;stroke-width:2;stroke:none;stroke-linecap:round;"
                              "stroke-linejoin:bevel;stroke-miterlimit:4;stroke-opacity:.5;"
                              "fill-opacity:1;stroke:blue",
                              "style:style:style:x"}) {
        const auto outlines = outlinesOf("<line x2='1' style='" + std::string(style) + "'/>");
        ASSERT_EQ(outlines.size(), 1U);
        EXPECT_EQ(outlines[0].vertices[1].x, 1);
    }
}

TEST(SvgParser, tellsTheObserverWhatItSkips) {
    struct Skip {
        const char* svg;
        Texts texts;
    };
    for (const Skip& skip : {
             Skip{"<title>t</title><desc/><metadata/><g/>", {}},
             Skip{"<text>x</text>\n<use/>",
                  {"2: element \"text\" is ignored", "3: element \"use\" is ignored"}},
             Skip{"<path><path/></path>", {"2: a path inside a path is ignored"}},
             Skip{"<path d='M 0 0 A 1 2 3 4 5 6 7 a 1 2 3 4 5 6 7'/>",
                  {"2: arcs (A) are ignored, draw them as cubics"}},
             // Once for each outline.
             Skip{"<path d='M 0 0 A 1 2 3 4 5 6 7'/>\n<path d='A 1 2 3 4 5 6 7'/>",
                  {"2: arcs (A) are ignored, draw them as cubics",
                   "3: arcs (A) are ignored, draw them as cubics"}},
             Skip{"\n\n<path d='M 0 0 1 1 2 2 L 3 3'/>",
                  {"4: further pairs after M are moves, not lines"}},
             Skip{"<path d='M 0 0 L 1 1 M 2 2 L 3 3 M 4 4'/>",
                  {"2: a path is one outline, it goes on after a further M: use one path for each",
                   "2: an open path of lines loses its last one: draw it as cubics"}},
             Skip{"<path d='M 0 0 L 1 1 Z L 3 3 Z'/>",
                  {"2: a path is one outline, it goes on after a further Z: use one path for each",
                   "2: a closed path of lines goes back in a bent line: draw it as cubics"}},
             Skip{"<path d='M 0 0 L 1 1 P'/>", {"2: parse_path: Invalid Command P"}},
             Skip{"<path d='M 0'/>", {"2: parse_path: Command M: bad or missing parameters"}},
             Skip{"<polygon points='1;2'/>", {"2: path_tokenizer::next : Invalid Character ;"}},
         }) {
        EXPECT_EQ(noticesOf(skip.svg), skip.texts) << skip.svg;
    }
}

TEST(SvgParser, tellsTheObserverWhatBecomesSomethingElse) {
    struct Loss {
        const char* svg;
        std::vector<SvgIssue> issues;
    };
    using enum SvgIssue;
    for (const Loss& loss : {
             Loss{"<circle r='3'/><ellipse rx='1' ry='2'/>", {Oval, Oval}},
             Loss{"<rect width='9' height='9' rx='2'/><rect width='9' height='9' ry='0'/>",
                  {RoundedCorners}},
             Loss{"<polyline points='1 2 3 4'/><polygon points='1 2 3 4'/>", {ClosedPolyline}},
             Loss{"<rect width='5mm' height='5px'/><line x2='50%'/>", {Unit, Unit}},
             Loss{"<path d='M1 1Q2 2 3 3T4 4T5 5'/>", {Quadratic}},
             Loss{"<path d='M1 1L2 2C3 3 4 4 5 5'/><path d='M1 1C3 3 4 4 5 5H7'/>",
                  {MixedCommands, MixedCommands}},
             Loss{"<path d='M1 1C3 3 4 4 5 5'/><path d='M1 1S3 3 4 4Z'/>", {LoneCubic, LoneCubic}},
             Loss{"<path d='M1 1L3 3V8'/><path d='M1 1h3v8z'/>", {LastLineLost, BentClosing}},
             Loss{"<polygon points='1e-2 2 3 4'/><polygon points='1e2 .5.5 3E+1'/>",
                  {Exponent, TwoPoints, Exponent}},
             Loss{"<g transform='rotate(3)'><path d='M1 1L3 3'/></g>", {Transform}},
             Loss{"<path d='M1 1C1 2 3 4 5 6S1 2 3 4Z'/><rect x='-1.5' width='1e1' height='2'/>",
                  {}},
         }) {
        test::Notices notices;
        static_cast<void>(test::readSvg("<svg>" + std::string(loss.svg) + "</svg>", &notices));
        std::vector<SvgIssue> issues;
        for (const SvgNotice& notice : notices.all) {
            issues.push_back(notice.issue);
            EXPECT_EQ(notice.text.find('%'), notice.text.rfind("%\"")) << notice.text;
        }
        EXPECT_EQ(issues, loss.issues) << loss.svg;
    }
}

TEST(SvgParser, afterAThousandNoticesItIsSilent) {
    std::string many;
    for (int i = 0; i != 1500; ++i) {
        many += "<x/>";
    }
    EXPECT_EQ(noticesOf(many).size(), 1000U);
}

TEST(SvgParser, whatAnObserverThrowsComesThrough) {
    class Thrower final : public SvgReaderObserver {
        void notice(const SvgNotice& notice) override { throw std::runtime_error(notice.text); }
    };
    Thrower thrower;
    EXPECT_THROW(test::readSvg("<svg><unknown/><line/></svg>", &thrower), std::runtime_error);
}

class SvgFile : public testing::Test {
protected:
    Texts parse(const std::string& path, PluginPath_Impl& shape) {
        test::Notices notices;
        svg_parser parser;
        parser.setPath(&shape);
        parser.setObserver(&notices);
        parser.parse(path.c_str());
        return notices.texts();
    }

    const test::TestFolder m_folder;
};

TEST_F(SvgFile, isReadWhole) {
    std::string svg = "<svg>";
    for (int i = 0; i != 500; ++i) {
        svg += "<line x1='" + std::to_string(i) + "'/>\n";
    }
    const std::string path = m_folder.file("lines.svg", svg + "</svg>");
    PluginPath_Impl shape;
    EXPECT_TRUE(parse(path, shape).empty());
    ASSERT_EQ(shape.outlines().size(), 500U);
    EXPECT_EQ(shape.outlines()[499].vertices[0].x, 499);
}

TEST_F(SvgFile, thatCannotBeReadLeavesTheShapeEmpty) {
    const std::string huge = m_folder.file("huge.svg", "<svg><line/></svg>");
    std::filesystem::resize_file(huge, svg_parser::maxFileBytes + 1);
    const std::string missing = m_folder / "missing.svg";
    PluginPath_Impl shape;
    EXPECT_EQ(parse(missing, shape), (Texts{"0: Couldn't open file " + missing}));
    const std::string folder = m_folder.path();
    EXPECT_EQ(parse(folder, shape), (Texts{"0: Couldn't open file " + folder}));
    EXPECT_EQ(parse("/dev/null", shape), (Texts{"0: Couldn't open file /dev/null"}));
    EXPECT_EQ(parse(huge, shape), (Texts{"0: " + huge + " is larger than 64 MiB and is not read"}));
    EXPECT_TRUE(shape.outlines().empty());
}

} // namespace
} // namespace orbel
