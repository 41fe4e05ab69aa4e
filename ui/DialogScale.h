#pragma once

// The factor every pixel size the dialogs set is multiplied by, read from the
// display's resources, and the heights of the boxes whose content is text:
// above scale 1 the fonts are the site's larger ones, whose size the program
// cannot know beforehand, so those boxes are measured in lines of the font in
// use rather than in pixels.

#include <X11/Intrinsic.h>

// Reads the factor for the open display (ChosenScale): the program's "scale"
// resource (class "Scale"), else "Xft.dpi", else the default screen's size
// in pixels and millimetres. Before any dialog is built.
void ReadDialogScale(Display* display);

// The factor in force; 1 until ReadDialogScale has run.
double DialogScale();

// A pixel size of the dialogs (a width, a height, a distance) at the factor
// in force (ScaledPixels).
int Scaled(int pixels);

// Above scale 1: makes a text area (a Text widget) as tall as `lines` lines
// of its font and its top and bottom margins, so a larger font is never cut
// off. At scale 1 or below the area keeps the pixel height it was given.
void FitTextToLines(Widget text, int lines);

// Above scale 1: makes a viewport as tall as `rows` rows of the List inside
// it and the list's margins. At scale 1 or below it keeps its pixel height.
void FitViewportToRows(Widget viewport, Widget list, int rows);
