#pragma once

// Shared by the dispatch, command and tick tests: resets every global the
// dispatch touches, pins the clock, and reads what reached the client.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "actions/PendingActions.h"
#include "app/ClientLink.h"
#include "app/Dispatch.h"
#include "app/Exit.h"
#include "app/Settings.h"
#include "base/time/Clock.h"
#include "pipe/FiFoQueue.h"
#include "tests/support/RecordingDialogs.h"

// 2023-11-14 22:13:20 UTC.
constexpr std::int64_t kNowSeconds = 1700000000;
inline Instant At(std::int64_t secondsFromNow) {
    return Instant((kNowSeconds + secondsFromNow) * kMicrosecondsPerSecond);
}

struct ObservedExit {
    int count = 0;
    int status = 0;
    std::string reason;
};
inline ObservedExit observedExit;

class DispatchFixture : public ::testing::Test {
protected:
    void SetUp() override {
        SetExitFunctionForTesting([](int status, const char* reason) {
            ++observedExit.count;
            observedExit.status = status;
            observedExit.reason = reason;
        });
        // Whatever an earlier test left queued or held back is handled and
        // thrown away before the globals are reset.
        clientPipe = nullptr;
        initialized = true;
        ProcessMessagesFromClient();
        ProcessMessagesFromClient();
        ProcessMessagesFromUI();
        Sent();
        actions.clear();
        initialized = inQuietMode = takeAllPending = false;
        takeAllCursor = 0;
        m_postponedTo = Instant();
        m_remindInterval = TimeInterval(300 * kMicrosecondsPerSecond);
        m_snoozable = true;
        observedExit = ObservedExit();
        RecordingDialogs::Reset();
    }
    void TearDown() override { SetExitFunctionForTesting(nullptr); }

    static void Receive(const std::string& text) {
        UIMessage message;
        message.text = AutoUString<UTF8>(text);
        readQ.WriteMessage(std::move(message));
    }
    static std::string Doc(const std::string& children) { return "<ClientToUI>" + children + "</ClientToUI>"; }
    static std::string Action(unsigned long long id, const std::string& more = "") {
        return "<ActionRequest><ID>" + std::to_string(id) + "</ID><Title>Action " + std::to_string(id) +
               "</Title>" + more + "</ActionRequest>";
    }
    // A forced action with this deadline (an XML date-time).
    static std::string ForcedAction(unsigned long long id, const char* deadline) {
        return Action(id, std::string("<ForceRun>true</ForceRun><Deadline>") + deadline + "</Deadline>");
    }

    // Every document queued for the client since the last call, oldest first.
    static std::vector<std::string> Sent() {
        FiFoQueue<UIMessage> queued;
        writeQ.ReadMessages(queued);
        std::vector<std::string> texts;
        while (!queued.IsEmpty()) texts.push_back(queued.TakeFront().text.Str());
        return texts;
    }
    static std::string Taken(unsigned long long id, bool cancel = false) {
        return std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<UIToClient>\n\t<ActionTaken>\n\t\t<IsCancel>") +
               (cancel ? "true" : "false") + "</IsCancel>\n\t\t<IsOffer>false</IsOffer>\n\t\t<ID>" +
               std::to_string(id) + "</ID>\n\t</ActionTaken>\n</UIToClient>";
    }
    static std::vector<unsigned long long> Ids() {
        std::vector<unsigned long long> ids;
        for (const ActionRequest& action : actions) ids.push_back(action.id);
        return ids;
    }
    static std::vector<std::string> Calls() { return RecordingDialogs::Take(); }

    ScopedClockOverride clock_{At(0)};
};
