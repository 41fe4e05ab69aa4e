#include "ui/WindowIdentity.h"

#include <unistd.h>

#include <string>

#include "base/unicode/Local8Bit.h"
#include "ui/ActionRequestDialog.h"
#include "ui/ForgivenXErrors.h"
#include "ui/WindowManagerAtoms.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>

namespace {

// The shell's title came in the locale's encoding; the conventions want UTF-8.
// A title that does not convert back keeps only its WM_NAME.
bool TitleInUTF8(Widget shell, std::string& utf8) {
    char* title = nullptr;
    XtVaGetValues(shell, XtNtitle, &title, nullptr);
    if (title == nullptr) return false;
    try {
        utf8 = UnixPlatform::Local8BitToUTF8(title).Str();
    } catch (...) {
        return false;
    }
    return true;
}

void WriteTitles(Widget shell, const WindowManagerAtoms& atoms) {
    std::string title;
    if (atoms.utf8String == None || !TitleInUTF8(shell, title)) return;
    const auto* bytes = reinterpret_cast<const unsigned char*>(title.data());
    for (const Atom property : {atoms.name, atoms.iconName}) {
        if (property == None) continue;
        XChangeProperty(XtDisplay(shell), XtWindow(shell), property, atoms.utf8String, 8, PropModeReplace, bytes,
                        static_cast<int>(title.size()));
    }
}

void WriteAtom(Widget shell, Atom property, Atom value) {
    if (property == None || value == None) return;
    XChangeProperty(XtDisplay(shell), XtWindow(shell), property, XA_ATOM, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&value), 1);
}

void WritePid(Widget shell, Atom property) {
    if (property == None) return;
    // Format 32 is handed over as longs, whatever their size.
    const long pid = static_cast<long>(getpid());
    XChangeProperty(XtDisplay(shell), XtWindow(shell), property, XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&pid), 1);
}

void WriteClass(Widget shell) {
    // The instance stays the shell's name, the program's, as the toolkit wrote it.
    XClassHint hint{XtName(shell), const_cast<char*>(kDialogWindowClass)};
    XSetClassHint(XtDisplay(shell), XtWindow(shell), &hint);
}

}  // namespace

void IdentifyWindow(Widget shell, WindowRole role) {
    if (shell == nullptr || !XtIsRealized(shell)) return;
    const WindowManagerAtoms& atoms = WindowManagerAtomsOf(XtDisplay(shell));
    ForgivingXErrors forgiving(XtDisplay(shell));
    WriteClass(shell);
    WriteTitles(shell, atoms);
    WriteAtom(shell, atoms.windowType, role == WindowRole::ActionDialog ? atoms.typeNormal : atoms.typeDialog);
    WritePid(shell, atoms.pid);
    if (const Widget owner = ActionRequestDialog::Shell(); role == WindowRole::Subordinate && owner != nullptr) {
        XSetTransientForHint(XtDisplay(shell), XtWindow(shell), XtWindow(owner));
    }
}

void RetitleWindow(Widget shell) {
    if (shell == nullptr || !XtIsRealized(shell)) return;
    const WindowManagerAtoms& atoms = WindowManagerAtomsOf(XtDisplay(shell));
    ForgivingXErrors forgiving(XtDisplay(shell));
    WriteTitles(shell, atoms);
}
