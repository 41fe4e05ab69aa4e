#include "base/Exceptions.h"

#include <string>

#include <gtest/gtest.h>

namespace {

class NoSuchThing : public DebuggableException {};

TEST(Exceptions, TextlessErrorsAreCaughtAsTheBase) {
    try {
        throw NoSuchThing();
    } catch (const DebuggableException& e) {
        EXPECT_STREQ(e.what(), "DebuggableException");
        return;
    }
    FAIL() << "not caught as DebuggableException";
}

TEST(Exceptions, MessageTravelsWithExceptionPL) {
    try {
        throw ExceptionPL("Could not convert XMLDuration to TimeInterval");
    } catch (const DebuggableException& e) {
        const auto* withText = dynamic_cast<const ExceptionPL*>(&e);
        ASSERT_NE(withText, nullptr);
        EXPECT_EQ(withText->Message(), "Could not convert XMLDuration to TimeInterval");
        EXPECT_STREQ(e.what(), "Could not convert XMLDuration to TimeInterval");
    }
}

}  // namespace
