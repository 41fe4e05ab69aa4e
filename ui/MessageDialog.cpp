#include "ui/MessageDialog.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "protocol/ClientRequests.h"
#include "text/UFormat.h"
#include "ui/DialogScale.h"
#include "ui/DialogWindow.h"
#include "ui/KeyboardFocus.h"
#include "ui/XGlobals.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/AsciiText.h>
#include <X11/Xaw/Command.h>
#include <X11/Xaw/Form.h>

namespace {

constexpr char kMessageText[] = "actionmessage";
// What the 100 pixels of the text hold in the shipped 14-pixel Helvetica.
constexpr int kMessageLines = 5;

struct OpenMessage {
    unsigned long long id = 0;
    bool isCompletionMessage = false;
    std::optional<Instant> expiry;  // none: never
    DialogWindow window;
};

// In creation order. Each record stays where it is (its window's destroy
// callback points at it).
std::vector<std::unique_ptr<OpenMessage>> openMessages;

struct MessageTexts {
    ControlString title;
    ControlString text;
};

MessageTexts TextsOf(const MessageRequest& request) {
    if (!request.isCompletionMessage) return {ClientText(request.title.Ref()), ClientText(request.message.Ref())};
    const UStringRef<UTF8> completed("Action \"{actionTitle}\" has completed.");
    return {ControlLiteral("Vorkan notification:"),
            ControlLiteral(MakeLocalString(FormatPlusArguments(UFormat(completed, completed), request.title.Ref())))};
}

void Expire(OpenMessage& message, const MessageRequest& request, Instant now) {
    message.isCompletionMessage = request.isCompletionMessage;
    message.expiry.reset();
    if (request.timeout) message.expiry = now + *request.timeout;
}

// Drops the records whose shell the toolkit destroyed on its own (the
// application context closing).
void ForgetDestroyed() {
    openMessages.erase(std::remove_if(openMessages.begin(), openMessages.end(),
                                      [](const auto& message) { return !message->window.Exists(); }),
                       openMessages.end());
}

OpenMessage* Find(unsigned long long id) {
    for (const auto& message : openMessages) {
        if (message->id == id) return message.get();
    }
    return nullptr;
}

void Dismissed(Widget button, XtPointer, XtPointer) {
    const Widget shell = ShellOf(button);
    for (auto it = openMessages.begin(); it != openMessages.end(); ++it) {
        if ((*it)->window.Shell() == shell) {
            openMessages.erase(it);  // its window destroys the shell
            return;
        }
    }
}

void Replace(OpenMessage& message, MessageTexts texts) {
    const Widget shell = message.window.Shell();
    message.window.SetText(XtNameToWidget(message.window.Form(), kMessageText), XtNstring, std::move(texts.text));
    message.window.SetText(shell, XtNtitle, LabelText(std::move(texts.title)));
    RetitleWindow(shell);
}

void Build(OpenMessage& message, MessageTexts texts) {
    ControlString dismiss = LabelText(ControlLiteral("OK"));
    message.window.Create(std::move(texts.title));
    const Widget text = message.window.AddTextArea(kMessageText, std::move(texts.text),
                                                   {{XtNwidth, Scaled(500)}, {XtNheight, Scaled(100)}});
    FitTextToLines(text, kMessageLines);
    const Widget button =
        message.window.Add("dismiss", commandWidgetClass, {{XtNlabel, message.window.Keep(std::move(dismiss))},
                                                           {XtNfromVert, WidgetValue(text)}});
    CentreUnder(button, text);
    XtAddCallback(button, XtNcallback, Dismissed, nullptr);
    KeyboardFocus::Attach(message.window.Shell(), {{button}}, 0, {button, button});
    message.window.Present(text, WindowRole::Message);
}

}  // namespace

namespace MessageDialog {

void Show(const MessageRequest& request, Instant now) {
    if (display == nullptr) return;
    ForgetDestroyed();
    try {
        // The texts first, also for a reused dialog: a text the locale cannot
        // show ends the program before anything on the screen changes.
        MessageTexts texts = TextsOf(request);
        if (OpenMessage* open = Find(request.id)) {
            Expire(*open, request, now);
            Replace(*open, std::move(texts));
            return;
        }
        auto message = std::make_unique<OpenMessage>();
        message->id = request.id;
        Expire(*message, request, now);
        Build(*message, std::move(texts));
        openMessages.push_back(std::move(message));
    } catch (...) {
        EndForUnbuildableDialog("MessageDialog");
    }
}

void Remove(unsigned long long id) {
    ForgetDestroyed();
    for (auto it = openMessages.begin(); it != openMessages.end(); ++it) {
        if ((*it)->id == id) {
            openMessages.erase(it);
            return;
        }
    }
}

void RemoveTimedOut(Instant now) {
    ForgetDestroyed();
    auto expired = [now](const auto& message) { return message->expiry && *message->expiry <= now; };
    openMessages.erase(std::remove_if(openMessages.begin(), openMessages.end(), expired), openMessages.end());
}

std::size_t Count() {
    ForgetDestroyed();
    return openMessages.size();
}

Widget Shell(unsigned long long id) {
    ForgetDestroyed();
    const OpenMessage* message = Find(id);
    return message != nullptr ? message->window.Shell() : nullptr;
}

}  // namespace MessageDialog
