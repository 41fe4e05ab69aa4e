// The action request dialog end to end: the real program, clicked through XTest.
#include <gtest/gtest.h>

#include "tests/e2e/LiveProgram.h"

#include <X11/Xlib.h>

namespace {

TEST(ActionDialogFlows, TakeAll) {
    LiveProgram program;
    program.Start();
    program.Send({"action id=1 title=\"One\" text=\"first\"", "action id=2 title=\"Two\" text=\"second\""});
    const ActionDialogWindows dialog = program.WaitForActionDialog();
    program.ClickRow(dialog.list, 1);
    program.Click(dialog.take);
    EXPECT_TRUE(program.WaitFor("ActionTaken", 2));
    program.Click(dialog.takeAll);
    EXPECT_TRUE(program.WaitFor("ActionTaken", 1));
    EXPECT_EQ(program.CloseAndWait(), 0);
}

}  // namespace
