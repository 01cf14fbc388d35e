// The finger holes: their shape, what they report, and their deferred drawing.

#include <gtest/gtest.h>

#include <string>

#include "Tizen/App/UiApp.h"
#include "Tizen/Ui/Controls/Form.h"
#include "Tizen/Ui/Controls/Frame.h"
#include "play/JHole.h"
#include "shared/JLib.h"
#include "support/TestPhone.h"

namespace {

using Tizen::Graphics::Color;
using Tizen::Graphics::Point;
using Tizen::Graphics::Rectangle;
using Tizen::Ui::TouchEventInfo;
using Tizen::Ui::Controls::Form;

class HoleReports final : public JHoleListener {
public:
    void OnHolePressed(int holeIndex) override { log.append("+").append(std::to_string(holeIndex)); }
    void OnHoleReleased(int holeIndex) override { log.append("-").append(std::to_string(holeIndex)); }

    std::string log;
};

class CountedHole : public JHole {
public:
    result OnDraw() override {
        ++draws;
        return JHole::OnDraw();
    }

    int draws = 0;
};

void Press(JHole& hole) {
    hole.OnTouchPressed(hole, Point(), TouchEventInfo());
}

void Release(JHole& hole) {
    hole.OnTouchReleased(hole, Point(), TouchEventInfo());
}

}  // namespace

TEST(Hole, GrowsByThreeTenthsAboutItsCentreWhileItIsCovered) {
    struct Case {
        Rectangle open;
        Rectangle covered;
    };
    const TestPhone phone;
    for (const Case& each : {Case{Rectangle(10, 20, 101, 75), Rectangle(-5, 9, 131, 97)},
                             Case{Rectangle(10, 10, 100, 100), Rectangle(-5, -5, 130, 130)},
                             Case{Rectangle(10, 10, 90, 90), Rectangle(-3, -3, 116, 116)},
                             Case{Rectangle(0, 0, 0, 0), Rectangle(0, 0, 0, 0)}}) {
        JHole hole;
        hole.SetHoleBounds(each.open);
        EXPECT_EQ(each.open, hole.GetHoleEllipseBounds());
        Press(hole);
        EXPECT_EQ(each.covered, hole.GetHoleEllipseBounds());
        Release(hole);
        EXPECT_EQ(each.open, hole.GetHoleEllipseBounds());
    }
}

TEST(Hole, ReportsPressAndReleaseInTurnsWhateverTheFingersDo) {
    const TestPhone phone;
    HoleReports reports;
    JHole hole;
    Press(hole);
    Release(hole);
    hole.SetHoleIndex(2);
    hole.SetHoleListener(&reports);
    Release(hole);
    Press(hole);
    Press(hole);
    EXPECT_TRUE(hole.IsCovered());
    Release(hole);
    Release(hole);
    EXPECT_FALSE(hole.IsCovered());
    Press(hole);
    EXPECT_EQ("+2-2+2", reports.log);
}

TEST(Hole, IsDrawnOnceATickHoweverOftenItChanges) {
    TestPhone phone;
    CountedHole* pHole = nullptr;
    int before = 0;
    phone.At(0, [&] {
        auto* pForm = new Form;
        auto* pFrame = Tizen::App::UiApp::GetInstance()->GetAppFrame();
        pFrame->AddControl(*pForm);
        pFrame->SetCurrentForm(*pForm);
        pHole = new CountedHole;
        pHole->Construct(Rectangle(0, 0, 200, 200), pForm);
        pForm->AddControl(*pHole);
    });
    phone.At(500, [&] {
        before = pHole->draws;
        Press(*pHole);
        pHole->SetHoleColor(Color(1, 2, 3, 255));
        pHole->SetBackColor(Color(4, 5, 6, 255));
        EXPECT_EQ(before, pHole->draws);
    });
    // At most one tick and one frame of the display later.
    phone.At(560, [&] { EXPECT_EQ(before + 1, pHole->draws); });
    phone.At(1500, [&] { EXPECT_EQ(before + 1, pHole->draws); });
    phone.RunEmpty(1600);
}

TEST(SelectionFrame, IsAQuarterOfTheButtonsHeightAround) {
    const TestPhone phone;
    EXPECT_EQ(Rectangle(0, 0, 10, 10), JLib::GetInflatedBounds(nullptr, 0.25f));
    struct Case {
        Rectangle bounds;
        float ratio;
        Rectangle frame;
    };
    for (const Case& each : {Case{Rectangle(100, 200, 50, 40), 0.5f, Rectangle(80, 180, 90, 80)},
                             Case{Rectangle(100, 200, 50, 40), 0.25f, Rectangle(90, 190, 70, 60)},
                             Case{Rectangle(5, 5, 50, 3), 0.25f, Rectangle(5, 5, 50, 3)}}) {
        JHole control;
        control.SetBounds(each.bounds);
        EXPECT_EQ(each.frame, JLib::GetInflatedBounds(&control, each.ratio));
    }
}
