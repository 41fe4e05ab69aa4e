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

// The origin that centres a widget of the given size on a screen of the given
// size; negative when the widget is the larger (halved toward zero).
struct CenteredOrigin {
    int x;
    int y;
};
CenteredOrigin CenterOn(int screenWidth, int screenHeight, int width, int height);

// Moves the widget so that it sits in the middle of its display's default
// screen, by its current "width" and "height".
void CenterDialogOnDisplay(Widget widget);

// Gives the scroll bar kScrollbarTranslations.
void OverrideScrollbarTranslations(Widget scrollbar);

// Scrolls the viewport so that the list's current item shows, through the
// viewport's vertical scroll bar ("vertical"). Does nothing without a current
// item or without that scroll bar.
void ScrollSelectedItemIntoView(Widget viewport, Widget list);
