#include "ui/WidgetHelpers.h"

#include <memory>

#include <X11/StringDefs.h>
#include <X11/Xaw/List.h>
#include <X11/Xaw/Scrollbar.h>

namespace {

// XawListShowCurrent hands over a structure the caller frees.
struct XtFreeDeleter {
    void operator()(XawListReturnStruct* current) const noexcept { XtFree(reinterpret_cast<char*>(current)); }
};

}  // namespace

CenteredOrigin CenterOn(int screenWidth, int screenHeight, int width, int height) {
    return CenteredOrigin{(screenWidth - width) / 2, (screenHeight - height) / 2};
}

void CenterDialogOnDisplay(Widget widget) {
    if (widget == nullptr) return;
    Dimension width = 0;
    Dimension height = 0;
    XtVaGetValues(widget, XtNwidth, &width, XtNheight, &height, nullptr);
    const Screen* screen = DefaultScreenOfDisplay(XtDisplay(widget));
    const CenteredOrigin origin = CenterOn(WidthOfScreen(screen), HeightOfScreen(screen), width, height);
    XtVaSetValues(widget, XtNx, static_cast<Position>(origin.x), XtNy, static_cast<Position>(origin.y), nullptr);
}

void OverrideScrollbarTranslations(Widget scrollbar) {
    if (scrollbar == nullptr) return;
    // Parsed once: the toolkit never frees a parsed table.
    static const XtTranslations translations = XtParseTranslationTable(kScrollbarTranslations);
    XtOverrideTranslations(scrollbar, translations);
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
