// The package's files: what they become on a phone of any size, and what is said of those that are wrong.

#include <gtest/gtest.h>

#include <algorithm>

#include "backend/headless/HeadlessBackend.h"
#include "png/PngWriter.h"
#include "runtime/package/Package.h"
#include "support/TemporaryFolder.h"

using host::LayoutControl;
using host::PixelRect;

namespace {

constexpr const char* kForm =
    R"(<Form name="IDF_A" design="720x1280"><Label name="IDC_L" bounds="0,0,9,9" text="IDS_A"/></Form>)";

struct Files {
    Files() {
        for (const char* folder : {"layouts", "strings", "images"}) std::filesystem::create_directory(folder_ / folder);
        folder_.Write("layouts/IDF_A.xml", kForm);
        folder_.Write(
            "strings/en.xml",
            R"(<strings language="en"><string id="IDS_A">One&#10;two &amp; three</string><string id="IDS_B">B</string></strings>)");
        folder_.Write("keys.xml", "<keys/>");
    }
    bool Load(const char* language = "en", host::PixelSize screen = {720, 1280}) {
        problem_.clear();
        package_ = host::Package();
        const auto problems =
            package_.Load(backend_->Parts().storage, backend_->Parts().painter, language, screen, console_);
        if (!problems.empty()) problem_ = problems.front();
        return problems.empty();
    }

    TemporaryFolder folder_;
    std::unique_ptr<host::Backend> backend_ = host::CreateHeadlessBackend({folder_.Path(), folder_.Path()});
    host::Console console_;
    host::Package package_;
    std::string problem_;
};

const LayoutControl& Child(const LayoutControl& parent, const std::string& name) {
    for (const LayoutControl& child : parent.children) {
        if (child.name == name) return child;
    }
    throw std::out_of_range(name);
}

}  // namespace

TEST(Layouts, FollowTheScreensSizeSoThatNeighboursMeetAndRoundThingsStayRound) {
    constexpr const char* kLayout = R"(<Form name="IDF_A" design="720x1280">
      <Panel name="panel" bounds="0,288,720,992">
        <Label name="left" bounds="0,0,239,300" text="IDS_A" text-size="30"/>
        <Label name="right" bounds="239,0,481,300"/>
        <Label name="round" bounds="400,400,101,101" shape="round" corner="10"/>
      </Panel>
    </Form>)";
    for (const host::PixelSize screen : {host::PixelSize{720, 1280}, {480, 800}, {1080, 1920}, {777, 1001}}) {
        Files files;
        files.folder_.Write("layouts/IDF_A.xml", kLayout);
        ASSERT_TRUE(files.Load("en", screen)) << files.problem_;
        const LayoutControl& form = *files.package_.FindLayout("IDF_A");
        const double scaleX = screen.width / 720.0;
        const double scaleY = screen.height / 1280.0;
        const double smaller = std::min(scaleX, scaleY);
        EXPECT_EQ((PixelRect{0, 0, screen.width, screen.height}), form.bounds);
        const LayoutControl& panel = Child(form, "panel");
        EXPECT_EQ(screen.height, panel.bounds.y + panel.bounds.height);
        const LayoutControl& left = Child(panel, "left");
        const LayoutControl& right = Child(panel, "right");
        EXPECT_EQ(right.bounds.x, left.bounds.x + left.bounds.width);
        EXPECT_EQ(screen.width, right.bounds.x + right.bounds.width);
        EXPECT_NEAR(239 * scaleX, right.bounds.x, 0.5);
        EXPECT_DOUBLE_EQ(30 * smaller, left.text.size);
        const LayoutControl& round = Child(panel, "round");
        EXPECT_EQ(round.bounds.width, round.bounds.height);
        EXPECT_NEAR(101 * smaller, round.bounds.width, 0.5);
        EXPECT_NEAR(450.5 * scaleX, round.bounds.x + round.bounds.width / 2.0, 1);
        EXPECT_NEAR((288 + 450.5) * scaleY, panel.bounds.y + round.bounds.y + round.bounds.height / 2.0, 1);
        EXPECT_DOUBLE_EQ(10 * smaller, round.box.corner);
    }
}

// On a screen twice as wide and three times as high as the design, whose smaller scale is 2.
TEST(Layouts, HoldOnToTheSidesThatTheyName) {
    struct Case {
        const char* attributes;
        PixelRect expected;
    };
    const Case cases[] = {
        {"", {20, 60, 60, 120}},
        {R"(horizontal="left" vertical="top")", {20, 40, 60, 80}},
        {R"(horizontal="right" vertical="bottom")", {20, 140, 60, 80}},
        {R"(horizontal="center" vertical="middle")", {20, 90, 60, 80}},
        {R"(horizontal="sides" vertical="sides")", {20, 40, 60, 180}},
        {R"(shape="round")", {20, 80, 60, 80}},
        {R"(shape="circle")", {20, 90, 60, 60}},
        {R"(shape="circle" gravity="top")", {20, 60, 60, 60}},
        {R"(shape="circle" gravity="bottom" share="0.5")", {35, 135, 30, 30}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.attributes);
        Files files;
        files.folder_.Write("layouts/IDF_A.xml", std::string(R"(<Form name="IDF_A" design="100x100">)") +
                                                     R"(<Label name="a" bounds="10,20,30,40" )" + each.attributes +
                                                     "/></Form>");
        ASSERT_TRUE(files.Load("en", {200, 300})) << files.problem_;
        EXPECT_EQ(each.expected, Child(*files.package_.FindLayout("IDF_A"), "a").bounds);
    }
}

TEST(Layouts, AFormMayKeepTheProportionsOfWhatIsDrawnOnIt) {
    for (const PixelRect expected : {PixelRect{437, 0, 405, 720}, {0, 240, 1080, 1920}, {0, 0, 720, 1280}}) {
        Files files;
        files.folder_.Write("layouts/IDF_A.xml",
                            R"(<Form name="IDF_A" design="720x1280" client="0,0,720,1280" )"
                            R"(horizontal="center" vertical="middle"><Label name="a" bounds="0,0,720,1280"/></Form>)");
        const host::PixelSize screen{expected.x * 2 + expected.width, expected.y * 2 + expected.height};
        ASSERT_TRUE(files.Load("en", screen)) << files.problem_;
        const LayoutControl& form = *files.package_.FindLayout("IDF_A");
        const PixelRect whole{0, 0, screen.width, screen.height};
        EXPECT_EQ(expected, form.clientArea);
        EXPECT_EQ(whole, form.bounds);
        EXPECT_EQ(whole, Child(form, "a").bounds) << "the controls lie on the whole form";
    }
}

TEST(PackageProblems, AreOneLineWithFileAndLine) {
    struct Case {
        const char* file;
        std::string content;
        const char* problem;  ///< behind the file's name
    };
    const char* const layout = "layouts/IDF_A.xml";
    const auto form = [](const std::string& inside) {
        return R"(<Form name="IDF_A" design="9x9">)" + inside + "</Form>";
    };
    const auto label = [&](const std::string& more) {
        return form(R"(<Label name="l" bounds="0,0,1,1" )" + more + "/>");
    };
    const Case cases[] = {
        {layout, "<Form name=\"IDF_A\" design=\"720x1280\">\n<Label\n</Form>", ":3: Error parsing start element tag"},
        {layout, "", ":1: No document element found"},
        {layout, "<Panel name=\"IDF_A\"/>", ":1: the root element must be <Form> or <Popup>"},
        {layout, "<Form name=\"IDF_A\"/>",
         ":1: design of <Form> is missing: it is the size of the screen it was drawn for, like "
         "720x1280"},
        {layout, "<Form name=\"B\" design=\"9x9\"/>", ":1: the layout is named B, unlike its file"},
        {layout, form("\n<Slider name=\"s\" bounds=\"0,0,1,1\"/>"), ":2: unknown control <Slider>"},
        {layout, form("\n\n<Label name=\"s\" bounds=\"0,0,1,1\" colour=\"red\"/>"),
         ":3: unknown attribute colour of <Label>"},
        {layout, "<Form name=\"IDF_A\" design=\"9x9\" bounds=\"0,0,9,9\"/>", ":1: unknown attribute bounds of <Form>"},
        {layout, form(R"(<Label bounds="0,0,1,1"/>)"), ":1: a <Label> without a name"},
        {layout, form(R"(<Label name="IDF_A" bounds="0,0,1,1"/>)"), ":1: a second control named IDF_A"},
        {layout, form(R"(<Label name="l"/>)"), ":1: bounds of <Label> is missing: it is x,y,width,height"},
        {layout, form(R"(<Label name="l" bounds="0,0,1e3,1"/>)"),
         ":1: bounds of <Label> is x,y,width,height, not \"0,0,1e3,1\""},
        {layout, form(R"(<Label name="l" bounds="0,0,0,1"/>)"),
         ":1: bounds of <Label> is x,y,width,height, not \"0,0,0,1\""},
        {layout, "<Form name=\"IDF_A\" design=\"9x9\" background=\"#12345G\"/>",
         ":1: background of <Form> is #RRGGBB or #RRGGBBAA, not \"#12345G\""},
        {layout, label(R"(align="top")"), ":1: align of <Label> is left or center or right, not \"top\""},
        {layout, label(R"(text-size="-1")"), ":1: text-size of <Label> is a number that is not negative, not \"-1\""},
        {layout, label(R"(text="IDS_C")"), ":1: no text has the id IDS_C"},
        {layout, label(R"(picture="../keys.xml")"), ":1: there is no picture ../keys.xml"},
        {layout, form("<Label name=\"l\" bounds=\"0,0,1,1\">\n<Label name=\"m\" bounds=\"0,0,1,1\"/></Label>"),
         ":2: a <Label> contains nothing"},
        {layout, form(R"(<Form name="l"/>)"), ":1: a <Form> lies in nothing else"},
        {"strings/en.xml", "<strings language=\"fr\"/>",
         ":1: language of <strings> is \"en\", as the file's name says"},
        {"strings/en.xml", "<strings language=\"en\">\n<string id=\"A\"/>\n<string id=\"A\"/></strings>",
         ":3: a second text with the id A"},
        {"strings/en.xml", "<strings language=\"en\"><string id=\"A\"><b/></string></strings>",
         ":1: a <string> holds nothing but text"},
        {"keys.xml", "<keys>\n<key code=\"KeyA\" phone=\"home\"/></keys>",
         ":2: phone of <key> is back or volume-up or volume-down"},
        {"keys.xml", "<keys><key code=\"KeyA\" touch=\"IDC_L\" at=\"0.5,1.5\"/></keys>",
         ":1: at of <key> is two numbers of 0 to 1, like 0.25,0.75"},
        {"keys.xml", "<keys><key code=\"KeyA\" touch=\"IDC_X\"/></keys>", ":1: no layout has a control IDC_X"},
        {"keys.xml", "<keys><key code=\"KeyA\" breath=\"2\"/></keys>", ":1: breath of <key> is a number of 0 to 1"},
        {"keys.xml", "<keys><key code=\"KeyA\" breath=\"1\" phone=\"back\"/></keys>",
         ":1: a <key> has one of touch (with at), breath and phone"},
        {"keys.xml", "<keys><key code=\"KeyA\" breath=\"1\"/>\n<key code=\"KeyA\" breath=\"1\"/></keys>",
         ":2: a second <key> with the code KeyA"},
    };
    for (const Case& each : cases) {
        Files files;
        files.folder_.Write(each.file, each.content);
        EXPECT_FALSE(files.Load()) << each.problem;
        EXPECT_EQ(files.folder_ / each.file + each.problem, files.problem_);
    }
    Files files;
    std::filesystem::remove(files.folder_ / "keys.xml");
    EXPECT_FALSE(files.Load());
    EXPECT_EQ(files.folder_ / "keys.xml: it is missing", files.problem_);
}

// What is wrong in a layout takes away as little as can be.
TEST(Layouts, KeepWhatIsWholeOfABrokenOne) {
    Files files;
    std::string deep;
    for (int i = 0; i < 40'000; ++i) deep += "<Panel name=\"p" + std::to_string(i) + "\" bounds=\"0,0,9,9\">";
    for (int i = 0; i < 40'000; ++i) deep += "</Panel>";
    files.folder_.Write("layouts/IDF_A.xml",
                        R"(<Form name="IDF_A" design="9x9">
<Label name="text" bounds="0,0,1,1" text="IDS_C"/>
<Label name="picture" bounds="0,0,1,1" picture="none.png"/>
<Label name="huge" bounds="0,0,2147483647,1"/>
<Label name="far" bounds="1e15,0,1,1"/>
<Panel name="wide" bounds="0,0,32767,32767"/>
<Label name="whole" bounds="0,0,1,1"/>
<Label name="away" bounds="9999,0,1,1"/>
<Label name="large" bounds="0,0,90,90"/>
)" + deep + "</Form>");
    const auto problems = files.package_.Load(files.backend_->Parts().storage, files.backend_->Parts().painter, "en",
                                              {720, 1280}, files.console_);
    std::vector<std::string> ends;
    for (const std::string& problem : problems) ends.push_back(problem.substr(files.folder_.Path().size()));
    EXPECT_EQ((std::vector<std::string>{
                  "layouts/IDF_A.xml:2: no text has the id IDS_C", "layouts/IDF_A.xml:3: there is no picture none.png",
                  ("layouts/IDF_A.xml:4: bounds of <Label> is of numbers no further than 10000 from 0, not "
                   "\"0,0,2147483647,1\""),
                  "layouts/IDF_A.xml:5: bounds of <Label> is x,y,width,height, not \"1e15,0,1,1\"",
                  ("layouts/IDF_A.xml:6: bounds of <Panel> is of numbers no further than 10000 from 0, not "
                   "\"0,0,32767,32767\""),
                  "layouts/IDF_A.xml:8: the <Label> lies too far from the screen",
                  ("layouts/IDF_A.xml:9: the controls of a layout cover at most 64 screens together, which this "
                   "<Label> exceeds"),
                  "layouts/IDF_A.xml:10: controls lie at most 64 deep in each other"}),
              ends);
    const LayoutControl* form = files.package_.FindLayout("IDF_A");
    ASSERT_NE(nullptr, form);
    std::vector<std::string> names;
    for (const LayoutControl& child : form->children) names.push_back(child.name);
    EXPECT_EQ((std::vector<std::string>{"text", "picture", "whole", "p0"}), names);
}

TEST(Strings, ComeInTheChosenLanguageAndElseInEnglish) {
    Files files;
    files.folder_.Write("strings/ko.xml", R"(<strings language="ko"><string id="IDS_A">하나</string></strings>)");
    ASSERT_TRUE(files.Load("ko")) << files.problem_;
    EXPECT_EQ("하나", *files.package_.FindString("IDS_A"));
    EXPECT_EQ("B", *files.package_.FindString("IDS_B"));
    EXPECT_EQ("하나", files.package_.FindLayout("IDF_A")->children[0].text.text);
    EXPECT_EQ(nullptr, files.package_.FindString("IDS_C"));
    for (const char* language : {"xx", "../ko", ""}) {
        ASSERT_TRUE(files.Load(language)) << files.problem_;
        EXPECT_EQ("One\ntwo & three", *files.package_.FindString("IDS_A")) << language;
    }
}

TEST(Pictures, AreSharedAndComeFromTheImagesAlone) {
    Files files;
    const std::vector<std::byte> png = host::EncodePng({{3, 2}, std::vector<host::Rgba>(6)});
    const std::string bytes(reinterpret_cast<const char*>(png.data()), png.size());
    files.folder_.Write("images/a.png", bytes);
    files.folder_.Write("outside.png", bytes);
    files.folder_.Write("images/broken.png", bytes.substr(0, 40));
    ASSERT_TRUE(files.Load()) << files.problem_;
    const auto picture = files.package_.FindPicture("a.png");
    ASSERT_NE(nullptr, picture);
    EXPECT_EQ((host::PixelSize{3, 2}), picture->Size());
    EXPECT_EQ(picture, files.package_.FindPicture("a.png"));
    for (const char* name : {"", ".", "..", "../outside.png", "/etc/passwd", "b.png", "broken.png"}) {
        EXPECT_EQ(nullptr, files.package_.FindPicture(name)) << name;
    }
}
