// The action request dialog end to end: the real program, clicked through XTest.
#include <gtest/gtest.h>

#include "tests/e2e/LiveProgram.h"

#include <X11/Xlib.h>

namespace {

TEST(ActionDialogFlows, TakeAll) {
    LiveProgram program;
    program.Start();
    program.Send({"action id=1 title=\"One\" text=\"first\"", "action id=2 title=\"Two\" text=\"second\""});
    const std::vector<Window> shells = program.WaitForTopLevelWindows("Action Requests");
    ASSERT_EQ(shells.size(), 1u);
    ASSERT_TRUE(program.WaitUntil([&] { return program.IsMapped(shells[0]); }));
    const std::vector<Window> form = program.Children(shells[0]);
    ASSERT_EQ(form.size(), 1u);
    const std::vector<Window> widgets = program.Children(form[0]);
    ASSERT_EQ(widgets.size(), 11u);
    program.Click(widgets[4]);  // "takeAllActions"
    EXPECT_TRUE(program.WaitFor("ActionTaken", 1));
    EXPECT_TRUE(program.WaitFor("ActionTaken", 2));
    EXPECT_EQ(program.CloseAndWait(), 0);
}

}  // namespace
