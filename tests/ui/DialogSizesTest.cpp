// Every dialog at scale 1 (the shipped app-defaults file) and 2 (its -hidpi
// customization): labels as wide as their texts, text boxes holding their lines.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "actions/PendingActions.h"
#include "protocol/ClientRequests.h"
#include "tests/support/ForkedCheck.h"
#include "tests/support/Xvfb.h"
#include "ui/ActionDetailsDialog.h"
#include "ui/ActionRequestDialog.h"
#include "ui/ConfirmationDialog.h"
#include "ui/DialogScale.h"
#include "ui/MessageDialog.h"
#include "ui/QuietModeDialog.h"
#include "ui/XGlobals.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Label.h>
#include <X11/Xaw/List.h>
#include <X11/Xaw/Text.h>
#include <X11/Xaw/Viewport.h>

extern "C" const char* __lsan_default_suppressions() { return "leak:_XawImInitialize\nleak:_XawImRegister\n"; }

namespace {

::testing::Environment* const xvfb = AddXvfbEnvironment();

// The boxes whose content is text: lines shown, pixel width (0: not the program's) and height at scale 1.
const struct {
    std::string name;
    int lines, width, height;
} kTextBoxes[] = {{"actiondesc", 4, 500, 70},     {"viewport", 5, 0, 100},           {"snoozeViewport", 2, 0, 40},
                  {"actiondetails", 7, 500, 100}, {"actionconfirmation", 5, 0, 100}, {"actionmessage", 5, 500, 100}};

template <class T>
T Get(Widget widget, const char* resource) {
    T value{};
    XtVaGetValues(widget, resource, &value, nullptr);
    return value;
}

// A list's row is as tall as its font's tallest glyph and its spacing, a text's
// line as its font's ascent and descent and one pixel.
int HeightOfLines(Widget box, int lines) {
    if (!XtIsSubclass(box, viewportWidgetClass)) {
        const XFontStruct* font = Get<XFontStruct*>(Get<Widget>(box, XtNtextSink), XtNfont);
        return lines * (font->ascent + font->descent + 1) + Get<Position>(box, XtNtopMargin) +
               Get<Position>(box, XtNbottomMargin);
    }
    const Widget list = Get<WidgetList>(box, XtNchildren)[Get<Cardinal>(box, XtNnumChildren) - 1];
    const XCharStruct& tallest = Get<XFontStruct*>(list, XtNfont)->max_bounds;
    return lines * (tallest.ascent + tallest.descent + Get<Dimension>(list, XtNrowSpacing)) +
           2 * Get<Dimension>(list, XtNinternalHeight);
}

void CheckSizes(Widget form, double scale) {
    EXPECT_EQ(Get<int>(form, XtNdefaultDistance), 8 * scale);  // the -hidpi file doubles the room
    for (Cardinal i = 0; i < Get<Cardinal>(form, XtNnumChildren); ++i) {
        const Widget child = Get<WidgetList>(form, XtNchildren)[i];
        const std::string name = XtName(child);
        SCOPED_TRACE(name);
        const int width = Get<Dimension>(child, XtNwidth), height = Get<Dimension>(child, XtNheight);
        if (XtIsSubclass(child, labelWidgetClass)) {
            const std::string label = Get<String>(child, XtNlabel);
            const int text = XTextWidth(Get<XFontStruct*>(child, XtNfont), label.c_str(), int(label.size()));
            const bool titleLine = name == "actiontitle" && XtNameToWidget(form, "actiondesc") != nullptr;  // 500 wide
            EXPECT_EQ(width, titleLine ? 500 * scale : text + 2 * Get<Dimension>(child, XtNinternalWidth));
        }
        for (const auto& box : kTextBoxes) {
            if (name != box.name) continue;
            EXPECT_EQ(height, scale > 1 ? HeightOfLines(child, box.lines) : box.height);
            EXPECT_GE(height, HeightOfLines(child, box.lines));
            EXPECT_TRUE(box.width == 0 || width == box.width * scale);
        }
    }
}

int ShowAndCheck(std::vector<const char*> arguments, double scale) {
    setenv("XFILESEARCHPATH", ZAM_SOURCE_DIR "/data/app-defaults/%N%C", 1);
    setenv("HOME", "/nonexistent", 1);
    XtToolkitInitialize();
    app_context = XtCreateApplicationContext();
    int argc = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    display = XtOpenDisplay(app_context, nullptr, nullptr, "XZAMClientUI", nullptr, 0, &argc,
                            const_cast<char**>(arguments.data()));
    ReadDialogScale(display);
    EXPECT_EQ(DialogScale(), scale);
    ActionRequest action;
    action.id = 1;
    action.title = action.shortDescription = "Update";
    action.preview = action.preActionMessage = SharedUString<UTF8>("Update");
    const EntryNumber entry = AppendAction(action);
    ActionRequestDialog::Show(false, TimeInterval(300000000), true);
    ActionDetailsDialog::Show(1, entry), ConfirmationDialog::Show(1, entry);
    QuietModeDialog::Show(Instant(), Instant()), MessageDialog::Show(MessageRequest{"Note", "Text", false, {}, 2}, {});
    XSync(display, False);
    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0, shells = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    for (unsigned i = 0; i < count; ++i) {
        if (const Widget shell = XtWindowToWidget(display, children[i])) {
            ++shells, CheckSizes(XtNameToWidget(shell, "form"), scale);
        }
    }
    XFree(children);
    EXPECT_EQ(shells, 5u);
    return ::testing::Test::HasFailure() ? 1 : 0;
}

TEST(DialogSizes, LabelsFitTheirTextsAndTextBoxesTheirLines) {
    const std::vector<const char*> hidpi = {"ZAMClientUI", "-xrm", "*customization: -hidpi", "-xrm", "*scale: 2"};
    EXPECT_EQ(RunInForkedChild([] { return ShowAndCheck({"ZAMClientUI"}, 1); }, std::chrono::seconds(30)), 0);
    EXPECT_EQ(RunInForkedChild([&] { return ShowAndCheck(hidpi, 2); }, std::chrono::seconds(30)), 0);
}

}  // namespace
