#include "ui/DialogScale.h"

#include <optional>
#include <string>

#include "ui/ScaleRule.h"

#include <X11/IntrinsicP.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/ListP.h>
#include <X11/Xaw/Text.h>
#include <X11/Xaw/TextSink.h>
#include <X11/Xresource.h>

namespace {

double scale = 1;

// The resource's value as a number, if the database holds one.
std::optional<double> NumberResource(XrmDatabase database, const char* name, const char* resourceClass) {
    char* type = nullptr;
    XrmValue value{};
    if (database == nullptr || !XrmGetResource(database, name, resourceClass, &type, &value)) return std::nullopt;
    if (value.addr == nullptr) return std::nullopt;
    return PositiveNumber(value.addr);
}

bool TextSizedByLines() { return scale > 1; }

}  // namespace

void ReadDialogScale(Display* display) {
    const char* name = nullptr;
    const char* applicationClass = nullptr;
    XtGetApplicationNameAndClass(display, const_cast<String*>(&name), const_cast<String*>(&applicationClass));
    const XrmDatabase database = XtDatabase(display);
    const std::string scaleName = std::string(name) + ".scale";
    const std::string scaleClass = std::string(applicationClass) + ".Scale";
    const int screen = DefaultScreen(display);
    scale = ChosenScale(NumberResource(database, scaleName.c_str(), scaleClass.c_str()),
                        NumberResource(database, "Xft.dpi", "Xft.Dpi"),
                        DotsPerInchOfScreen(DisplayWidth(display, screen), DisplayWidthMM(display, screen)));
}

double DialogScale() { return scale; }

int Scaled(int pixels) { return ScaledPixels(pixels, scale); }

void FitTextToLines(Widget text, int lines) {
    if (text == nullptr || !TextSizedByLines()) return;
    Widget sink = nullptr;
    Position top = 0;
    Position bottom = 0;
    XtVaGetValues(text, XtNtextSink, &sink, XtNtopMargin, &top, XtNbottomMargin, &bottom, nullptr);
    if (sink == nullptr) return;
    const int height = XawTextSinkMaxHeight(sink, lines) + top + bottom;
    XtVaSetValues(text, XtNheight, static_cast<Dimension>(ScaledPixels(height, 1)), nullptr);
}

void FitViewportToRows(Widget viewport, Widget list, int rows) {
    if (viewport == nullptr || list == nullptr || !TextSizedByLines()) return;
    const ListPart& part = reinterpret_cast<ListWidget>(list)->list;
    const int height = rows * part.row_height + 2 * part.internal_height;
    XtVaSetValues(viewport, XtNheight, static_cast<Dimension>(ScaledPixels(height, 1)), nullptr);
}
