#include "ui/WidgetHelpers.h"

#include <algorithm>
#include <memory>

#include "ui/DialogScale.h"

#include <X11/IntrinsicP.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/Form.h>
#include <X11/Xaw/Label.h>
#include <X11/Xaw/List.h>
#include <X11/Xaw/Scrollbar.h>
#include <X11/Xaw/TextP.h>

namespace {

// XawListShowCurrent hands over a structure the caller frees.
struct XtFreeDeleter {
    void operator()(XawListReturnStruct* current) const noexcept { XtFree(reinterpret_cast<char*>(current)); }
};

// Room for the frame a window manager puts around a window, on both sides.
constexpr int kWindowFrame = 16;

}  // namespace

void OverrideScrollbarTranslations(Widget scrollbar) {
    if (scrollbar == nullptr) return;
    // Parsed once: the toolkit never frees a parsed table.
    static const XtTranslations translations = XtParseTranslationTable(kScrollbarTranslations);
    XtOverrideTranslations(scrollbar, translations);
}

Widget TextScrollbar(Widget text) {
    if (text == nullptr || !XtIsSubclass(text, textWidgetClass)) return nullptr;
    return reinterpret_cast<TextWidget>(text)->text.vbar;
}

void MakeTextScrollable(Widget text) {
    if (text == nullptr) return;
    OverrideScrollbarTranslations(TextScrollbar(text));
    static const XtTranslations wheel = XtParseTranslationTable(kTextWheelTranslations);
    XtOverrideTranslations(text, wheel);
}

void FitLabelToScreen(Widget label) {
    if (label == nullptr) return;
    int distance = 0;
    if (const Widget form = XtParent(label); form != nullptr && XtIsSubclass(form, formWidgetClass)) {
        XtVaGetValues(form, XtNdefaultDistance, &distance, nullptr);
    }
    Dimension width = 0;
    Dimension border = 0;
    int left = 0;
    XtVaGetValues(label, XtNwidth, &width, XtNborderWidth, &border, XtNhorizDistance, &left, nullptr);
    const int frame = Scaled(kWindowFrame);
    const int widest = WidthOfScreen(XtScreen(label)) - frame - std::max(left, 0) - distance - 2 * border;
    if (width <= widest) return;
    XtVaSetValues(label, XtNwidth, static_cast<Dimension>(std::max(widest, 1)), XtNjustify, XtJustifyLeft, nullptr);
}

void ScrollSelectedItemIntoView(Widget viewport, Widget list) {
    if (viewport == nullptr || list == nullptr) return;
    const std::unique_ptr<XawListReturnStruct, XtFreeDeleter> current(XawListShowCurrent(list));
    if (!current || current->list_index == XAW_LIST_NONE) return;
    int count = 0;
    XtVaGetValues(list, XtNnumberStrings, &count, nullptr);
    const Widget vertical = XtNameToWidget(viewport, "vertical");
    if (vertical == nullptr || count <= 0) return;
    float fraction = static_cast<float>(current->list_index) / static_cast<float>(count);
    XtCallCallbacks(vertical, XtNjumpProc, &fraction);
}
