#include <ProcessMessage.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace vadelclip {

// The contract: any library with these classes can replace our layer, and the tool compiles with either.

namespace {

/// Makes protected members accessible.
struct OtherMessage : Message {};

template <typename MessageClass>
constexpr bool isTextMessage =
    std::is_base_of_v<Message, MessageClass>&& std::is_destructible_v<MessageClass>&&
        std::is_constructible_v<MessageClass, int, const std::string&> &&
    !std::is_default_constructible_v<MessageClass> && !std::is_copy_constructible_v<MessageClass> &&
    !std::is_constructible_v<MessageClass, int, const std::string&, bool>;

} // namespace

TEST(ProcessMessageContract, baseHasAVirtualProtectedDestructor) {
    EXPECT_TRUE(std::has_virtual_destructor_v<Message>);
    EXPECT_FALSE(std::is_destructible_v<Message>);
    EXPECT_TRUE(std::is_destructible_v<OtherMessage>);
    EXPECT_FALSE(std::is_default_constructible_v<Message>);
}

TEST(ProcessMessageContract, textMessagesTakeALevelAndAText) {
    EXPECT_TRUE(isTextMessage<ErrorMessage>);
    EXPECT_TRUE(isTextMessage<FailedMessage>);
    EXPECT_TRUE(isTextMessage<FinishMessage>);
}

TEST(ProcessMessageContract, stateMessageAlsoTakesAFlag) {
    EXPECT_TRUE((std::is_base_of_v<Message, StateMessage>));
    EXPECT_TRUE((std::is_destructible_v<StateMessage>));
    EXPECT_TRUE((std::is_constructible_v<StateMessage, int, const std::string&, bool>));
    EXPECT_FALSE((std::is_constructible_v<StateMessage, int, const std::string&>));
}

TEST(ProcessMessageContract, progressMessageTakesARangeAndSteps) {
    EXPECT_TRUE((std::is_base_of_v<Message, ProgressMessage>));
    EXPECT_TRUE((std::is_destructible_v<ProgressMessage>));
    EXPECT_TRUE((std::is_constructible_v<ProgressMessage, double, double, int>));
    EXPECT_FALSE((std::is_constructible_v<ProgressMessage, double, double>));
    EXPECT_TRUE((std::is_same_v<decltype(&ProgressMessage::OnProgress), void (ProgressMessage::*)(int, bool)>));
}

TEST(ProcessMessageContract, onlyInstanceCreatesTheSender) {
    EXPECT_TRUE((std::is_same_v<decltype(&MessageSender::Instance), MessageSender& (*)(bool)>));
    EXPECT_FALSE((std::is_constructible_v<MessageSender, bool>));
    EXPECT_FALSE(std::is_default_constructible_v<MessageSender>);
    EXPECT_FALSE(std::is_copy_constructible_v<MessageSender>);
    EXPECT_TRUE(std::is_destructible_v<MessageSender>);
    EXPECT_FALSE((std::is_base_of_v<Message, MessageSender>));
}

} // namespace vadelclip
