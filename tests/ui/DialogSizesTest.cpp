// Every dialog at scale 1 under the shipped app-defaults file and at scale 2
// under its -hidpi customization, on the test program's own Xvfb: labels are
// as wide as their texts in their fonts, and each box whose content is text
// holds its lines of the font in use (at scale 1 in its fixed pixel size).

#include <stdlib.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "actions/PendingActions.h"
#include "app/Settings.h"
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
extern "C" const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }

namespace {

::testing::Environment* const xvfb = AddXvfbEnvironment();
const Instant kNow(1795348800LL * 1000000);

// The boxes whose content is text: the lines they show, and their pixel
// width (0: taken from elsewhere) and height at scale 1.
struct TextBox {
    const char* name;
    int lines;
    int width;
    int height;
};
constexpr TextBox kTextBoxes[] = {
    {"actiondesc", 4, 500, 70},       {"viewport", 5, 0, 100},      {"snoozeViewport", 2, 0, 40},
    {"actiondetails", 7, 500, 100},   {"actionconfirmation", 5, 0, 100}, {"actionmessage", 5, 500, 100},
};
// The one label the program gives a width: the action dialog's title line.
constexpr int kActionTitleWidth = 500;

// A list draws a row as tall as the font's tallest glyph; a text spaces its
// lines by the font's ascent and descent and one pixel between them.
int RowHeight(XFontStruct* font) { return font->max_bounds.ascent + font->max_bounds.descent; }
int LineHeight(XFontStruct* font) { return font->ascent + font->descent + 1; }

template <class T>
T Get(Widget widget, const char* resource) {
    T value{};
    XtVaGetValues(widget, resource, &value, nullptr);
    return value;
}

// The rows or lines shown by `box` and the margins around them, from its font.
int HeightOfLines(Widget box, int lines) {
    if (XtIsSubclass(box, viewportWidgetClass)) {
        Widget list = nullptr;
        for (Cardinal i = 0; i < Get<Cardinal>(box, XtNnumChildren); ++i) {
            const Widget child = Get<WidgetList>(box, XtNchildren)[i];
            if (XtIsSubclass(child, listWidgetClass)) list = child;
        }
        const int row = RowHeight(Get<XFontStruct*>(list, XtNfont)) + Get<Dimension>(list, XtNrowSpacing);
        return lines * row + 2 * Get<Dimension>(list, XtNinternalHeight);
    }
    const int line = LineHeight(Get<XFontStruct*>(Get<Widget>(box, XtNtextSink), XtNfont));
    return lines * line + Get<Position>(box, XtNtopMargin) + Get<Position>(box, XtNbottomMargin);
}

void CheckSizes(Widget shell, double scale) {
    const Widget form = XtNameToWidget(shell, "form");
    ASSERT_NE(form, nullptr);
    const bool actionDialog = XtNameToWidget(form, "actiondesc") != nullptr;
    for (Cardinal i = 0; i < Get<Cardinal>(form, XtNnumChildren); ++i) {
        const Widget child = Get<WidgetList>(form, XtNchildren)[i];
        const std::string name = XtName(child);
        SCOPED_TRACE(name);
        const Dimension width = Get<Dimension>(child, XtNwidth);
        const Dimension height = Get<Dimension>(child, XtNheight);
        if (XtIsSubclass(child, labelWidgetClass)) {
            const char* label = Get<String>(child, XtNlabel);
            const int text = XTextWidth(Get<XFontStruct*>(child, XtNfont), label, static_cast<int>(std::strlen(label)));
            const int wide = text + 2 * Get<Dimension>(child, XtNinternalWidth);
            if (actionDialog && name == "actiontitle") {
                EXPECT_EQ(width, kActionTitleWidth * scale);
                EXPECT_GE(width, wide);
            } else {
                EXPECT_EQ(width, wide);
            }
        }
        for (const TextBox& box : kTextBoxes) {
            if (name != box.name) continue;
            const int lines = HeightOfLines(child, box.lines);
            if (scale > 1) {
                EXPECT_EQ(height, lines);
            } else {
                EXPECT_EQ(height, box.height);
                EXPECT_GE(height, lines);
            }
            if (box.width != 0) {
                EXPECT_EQ(width, box.width * scale);
            }
        }
    }
}

// Shows every dialog on a display opened with `arguments` and the checkout's
// app-defaults files, and checks them.
int ShowAndCheck(std::vector<const char*> arguments, double scale) {
    setenv("XFILESEARCHPATH", ZAM_SOURCE_DIR "/data/app-defaults/%N%C", 1);
    setenv("XUSERFILESEARCHPATH", "/nonexistent/%N", 1);
    setenv("HOME", "/nonexistent", 1);
    unsetenv("XENVIRONMENT");
    XtToolkitInitialize();
    app_context = XtCreateApplicationContext();
    arguments.insert(arguments.begin(), "ZAMClientUI");
    int argc = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    display = XtOpenDisplay(app_context, nullptr, nullptr, "XZAMClientUI", nullptr, 0, &argc,
                            const_cast<char**>(arguments.data()));
    if (display == nullptr) return 2;
    ReadDialogScale(display);
    EXPECT_EQ(DialogScale(), scale);

    ActionRequest action;
    action.id = 1;
    action.title = "Security update";
    action.shortDescription = "Installs the update.";
    action.preview = SharedUString<UTF8>("apt-get upgrade");
    action.preActionMessage = SharedUString<UTF8>("Save your work first.");
    const EntryNumber entry = AppendAction(action);
    ActionRequestDialog::Show(false, TimeInterval(300000000), true);
    ActionDetailsDialog::Show(1, entry);
    ConfirmationDialog::Show(1, entry);
    MessageDialog::Show(MessageRequest{SharedUString<UTF8>("Note"), SharedUString<UTF8>("Text"), false, {}, 2}, kNow);
    QuietModeDialog::Show(kNow, kNow + TimeInterval(3600000000LL));
    XSync(display, False);
    while (XtAppPending(app_context) & XtIMXEvent) XtAppProcessEvent(app_context, XtIMXEvent);

    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    int shells = 0;
    for (unsigned i = 0; i < count; ++i) {
        if (const Widget shell = XtWindowToWidget(display, children[i])) {
            ++shells;
            CheckSizes(shell, scale);
        }
    }
    XFree(children);
    EXPECT_EQ(shells, 5);
    return ::testing::Test::HasFailure() ? 1 : 0;
}

TEST(DialogSizes, LabelsFitTheirTextsAndTextBoxesTheirLines) {
    const struct {
        const char* name;
        std::vector<const char*> arguments;
        double scale;
    } cases[] = {
        {"scale 1, the shipped file", {}, 1},
        {"scale 2, the -hidpi file", {"-xrm", "*customization: -hidpi", "-xrm", "*scale: 2"}, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(RunInForkedChild([&] { return ShowAndCheck(c.arguments, c.scale); }, std::chrono::seconds(30)), 0);
    }
}

}  // namespace
