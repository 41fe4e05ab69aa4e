#include "protocol/Documents.h"

#include "protocol/ActionRequest.h"
#include "protocol/ClientRequests.h"
#include "protocol/InitializationInfo.h"
#include "protocol/UIReports.h"

template <> UStringRef<UTF8> XMLTag(const ActionRequest&) { return "ActionRequest"; }
template <> UStringRef<UTF8> XMLTag(const InitializationInfo&) { return "InitializationInfo"; }
template <> UStringRef<UTF8> XMLTag(const RemoveRequest&) { return "RemoveRequest"; }
template <> UStringRef<UTF8> XMLTag(const MessageRequest&) { return "MessageRequest"; }
template <> UStringRef<UTF8> XMLTag(const QuietModeStart&) { return "QuietModeStart"; }
template <> UStringRef<UTF8> XMLTag(const QuietModeEnd&) { return "QuietModeEnd"; }
template <> UStringRef<UTF8> XMLTag(const ReadyForData&) { return "ReadyForData"; }
template <> UStringRef<UTF8> XMLTag(const ActionTaken&) { return "ActionTaken"; }
template <> UStringRef<UTF8> XMLTag(const RemindTime&) { return "RemindTime"; }
template <> UStringRef<UTF8> XMLTag(const RemindInterval&) { return "RemindInterval"; }
template <> UStringRef<UTF8> XMLTag(const ClientUIErrorMessage&) { return "ClientUIErrorMessage"; }
