#include "bench/ClientDocument.h"

namespace {

const char kOpening[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ClientToUI>\n";

// One ActionRequest as the client writes it: tab-indented, with escapes in
// text and the script in a CDATA section.
std::string ActionRequestElement(int id) {
    std::string n = std::to_string(id);
    return "\t<ActionRequest>\n"
           "\t\t<ID>" + n + "</ID>\n"
           "\t\t<Title>Install update " + n + " &amp; restart</Title>\n"
           "\t\t<ShortDescription>Fixes &lt;critical&gt; issues in the &quot;agent&quot; "
           "service; the computer restarts afterwards.</ShortDescription>\n"
           "\t\t<Preview><![CDATA[if {exists file \"/etc/agent.conf\"}\n"
           "\trun \"/usr/bin/update --id=" + n + " && reboot\" <now>\nendif]]></Preview>\n"
           "\t\t<PreActionMessage>Please save your work before continuing.</PreActionMessage>\n"
           "\t\t<Deadline>Sun, 22 Nov 2026 10:30:00 +0100</Deadline>\n"
           "\t\t<Cancellable>true</Cancellable>\n"
           "\t\t<Restart>true</Restart>\n"
           "\t\t<Shutdown>false</Shutdown>\n"
           "\t\t<ForceRun>false</ForceRun>\n"
           "\t\t<RequestSave>true</RequestSave>\n"
           "\t\t<UseCannedStrings>false</UseCannedStrings>\n"
           "\t</ActionRequest>\n";
}

}  // namespace

std::string ClientDocument(std::size_t atLeast) {
    std::string doc = kOpening;
    int id = 1;
    do {
        doc += ActionRequestElement(id++);
    } while (doc.size() < atLeast);
    return doc + "</ClientToUI>";
}

std::string ClientDocumentOf(int requests) {
    std::string doc = kOpening;
    for (int id = 1; id <= requests; ++id) doc += ActionRequestElement(id);
    return doc + "</ClientToUI>";
}

