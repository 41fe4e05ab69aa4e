// Any bytes as the choices of a conversation between the client, the user and
// the tick (tests/support/Conversation.h): a broken promise aborts.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/support/Conversation.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteChoices choices(data, size);
    const std::string broken = PlayConversation(choices, 400);
    if (!broken.empty()) {
        std::fprintf(stderr, "%s\n", broken.c_str());
        std::abort();
    }
    return 0;
}
