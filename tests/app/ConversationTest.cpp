// Random conversations between the client, the user and the tick, checked
// after every step against what the user and the client were promised
// (tests/support/Conversation.h says which promises).

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/support/Conversation.h"

namespace {

// ZAM_CONVERSATIONS sets how many (the sanitizer builds play fewer).
int Count() {
    const char* count = std::getenv("ZAM_CONVERSATIONS");
    return count != nullptr ? std::atoi(count) : 10000;
}

TEST(Conversation, EveryPromiseHoldsInRandomConversations) {
    const int count = Count();
    ASSERT_GT(count, 0);
    for (int seed = 1; seed <= count; ++seed) {
        SeededChoices choices(static_cast<std::uint32_t>(seed));
        const std::string broken = PlayConversation(choices, 80);
        ASSERT_EQ(broken, "") << "seed " << seed;
    }
}

}  // namespace
