#pragma once

// Small widget utilities every dialog uses.

#include <X11/Intrinsic.h>

// The scroll bar translations: the first and the third button both drag the
// thumb directly, continuously.
constexpr char kScrollbarTranslations[] =
    "#override\n"
    "\t\t<Btn1Down>: StartScroll(Continuous) MoveThumb() NotifyThumb()\n"
    "\t\t<Btn3Down>: StartScroll(Continuous) MoveThumb() NotifyThumb()\n"
    "\t\t<Btn1Motion>: MoveThumb() NotifyThumb()\n"
    "\t\t<Btn3Motion>: MoveThumb() NotifyThumb()\n";

// The wheel on a text area: button 5 (down) shows later lines, button 4 (up)
// earlier ones, three lines a notch. The Text widget binds neither.
constexpr char kTextWheelTranslations[] =
    "#override\n"
    "<Btn4Down>: scroll-one-line-down() scroll-one-line-down() scroll-one-line-down()\n"
    "<Btn5Down>: scroll-one-line-up() scroll-one-line-up() scroll-one-line-up()\n";

// The shell resource that says whether the dialog's text areas open an input
// method. Every text area is read-only, so there is nothing to compose, and
// an input method costs each dialog the locale's compose table (tens of KiB).
// Keys still arrive as plain key events.
constexpr char kOpenInputMethod[] = "openIm";

// Gives the scroll bar kScrollbarTranslations.
void OverrideScrollbarTranslations(Widget scrollbar);

// The vertical scroll bar a Text widget made for itself, or null. The Text
// keeps it in its own (private) part: it is no child that the toolkit's
// lookup by name finds.
Widget TextScrollbar(Widget text);

// A read-only text area the user scrolls by hand: its scroll bar gets
// kScrollbarTranslations and the text the wheel (kTextWheelTranslations).
void MakeTextScrollable(Widget text);

// Cuts a Label (or a Command), a child of a Form, that would reach past the
// screen's right edge (its place, its width and borders, the Form's distance
// on the right and room for a window frame) to the width that fits, its text
// then starting at the left: the rest of a long text is clipped, and the
// window stays within the screen.
void FitLabelToScreen(Widget label);

// Scrolls the viewport so that the list's current item shows, through the
// viewport's vertical scroll bar ("vertical"). Does nothing without a current
// item or without that scroll bar.
void ScrollSelectedItemIntoView(Widget viewport, Widget list);
