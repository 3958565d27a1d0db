#include "MsgMngr.h"
#include "MsgNode.h"
#include "UiMsg.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <tuple>

namespace {

using Log = std::vector<jString>;

// Records "<name>:<code>" for every message and then runs an optional hook.
class RecordingNode : public MsgNode {
public:
    RecordingNode(jString name, Log& log) : m_name(std::move(name)), m_log(log) {}

    void processMsg(UiMsg* msg) override
    {
        m_log.push_back(m_name + ":" + std::to_string(msg->getCode()));
        if (onMessage)
            onMessage(msg);
    }

    std::function<void(UiMsg*)> onMessage;

private:
    jString m_name;
    Log& m_log;
};

// Counts live instances, to prove the bus frees what it owns.
class CountedMsg : public UiMsg {
public:
    explicit CountedMsg(int code) : UiMsg(code) { ++alive; }
    ~CountedMsg() override { --alive; }
    static inline int alive = 0;
};

class MsgMngrTest : public ::testing::Test {
protected:
    void SetUp() override { bus().clearQueue(); }
    void TearDown() override { bus().clearQueue(); }
    static MsgMngr& bus() { return MsgMngr::instance(); }

    Log log;
};

TEST(UiMsg, CarriesCodeTextAndPointer)
{
    int target = 0;
    const UiMsg plain(6);
    const UiMsgStr text(31, "saved rock.mat");
    const UiMsgPTR pointer(13, &target);
    const UiMsg both(2, "data/materials", &target);

    using Fields = std::tuple<int, jString, const void*>;
    const auto fields = [](const UiMsg& msg) { return Fields{msg.getCode(), msg.getText(), msg.getPtr()}; };
    EXPECT_EQ(fields(plain), (Fields{6, "", nullptr}));
    EXPECT_EQ(fields(text), (Fields{31, "saved rock.mat", nullptr}));
    EXPECT_EQ(fields(pointer), (Fields{13, "", &target}));
    EXPECT_EQ(pointer.getPtrAs<int>(), &target);
    EXPECT_EQ(fields(both), (Fields{2, "data/materials", &target}));
}

TEST_F(MsgMngrTest, PostedMessagesWaitForTheDrainThenArriveInPostOrderAtEveryNodeInAttachOrder)
{
    RecordingNode first("first", log), second("second", log);
    first.attach();
    second.attach();
    bus().post(7);
    bus().postStr(31, "hello");
    bus().post(std::make_unique<UiMsg>(12));
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(bus().getPendingCount(), 3u);

    EXPECT_EQ(bus().dispatch(), 3u);
    const Log expected = {"first:7", "second:7", "first:31", "second:31", "first:12", "second:12"};
    EXPECT_EQ(log, expected);
    EXPECT_EQ(bus().getPendingCount(), 0u);
    EXPECT_EQ(bus().dispatch(), 0u);
}

TEST_F(MsgMngrTest, NotifyNowDeliversAtOnceAndLeavesTheQueueAlone)
{
    RecordingNode node("n", log);
    node.attach();
    bus().post(7);
    bus().notifyNow(13);
    UiMsgStr owned(31, "x");
    bus().notifyNow(&owned);
    EXPECT_EQ(log, (Log{"n:13", "n:31"}));
    EXPECT_EQ(bus().getPendingCount(), 1u);
    bus().dispatch();
    EXPECT_EQ(log, (Log{"n:13", "n:31", "n:7"}));
}

TEST_F(MsgMngrTest, NotifyNowInsideADeliveryIsDeliveredBeforeTheOuterMessageMovesOn)
{
    RecordingNode first("first", log), second("second", log);
    first.attach();
    second.attach();
    first.onMessage = [&](UiMsg* msg) {
        if (msg->getCode() == 7)
            bus().notifyNow(13);
    };
    bus().post(7);
    bus().dispatch();
    EXPECT_EQ(log, (Log{"first:7", "first:13", "second:13", "second:7"}));
}

TEST_F(MsgMngrTest, OnlyAttachedNodesReceiveAttachingTwiceDeliversOnceAndDestructionDetaches)
{
    const size_t before = bus().getNodeCount();
    RecordingNode attached("a", log), never("never", log);
    auto destroyed = std::make_unique<RecordingNode>("destroyed", log);
    attached.attach();
    attached.attach();
    destroyed->attach();
    EXPECT_EQ(bus().getNodeCount(), before + 2);
    EXPECT_FALSE(never.isAttached());
    bus().notifyNow(5);
    attached.detach();
    destroyed.reset();
    EXPECT_FALSE(attached.isAttached());
    EXPECT_EQ(bus().getNodeCount(), before);
    bus().notifyNow(6);
    EXPECT_EQ(log, (Log{"a:5", "destroyed:5"}));
}

TEST_F(MsgMngrTest, ANodeDetachedDuringADeliveryGetsNothingMore)
{
    RecordingNode first("first", log), second("second", log);
    first.attach();
    second.attach();
    first.onMessage = [&](UiMsg*) { second.detach(); };
    bus().post(7);
    bus().post(8);
    bus().dispatch();
    EXPECT_EQ(log, (Log{"first:7", "first:8"}));
    EXPECT_FALSE(second.isAttached());
}

TEST_F(MsgMngrTest, ANodeMayDetachItselfOrBeDestroyedDuringADelivery)
{
    RecordingNode self("self", log), last("last", log);
    auto doomed = std::make_unique<RecordingNode>("doomed", log);
    self.attach();
    doomed->attach();
    last.attach();
    self.onMessage = [&](UiMsg*) {
        self.detach();
        doomed.reset();
    };
    bus().post(7);
    bus().post(8);
    bus().dispatch();
    EXPECT_EQ(log, (Log{"self:7", "last:7", "last:8"}));
}

TEST_F(MsgMngrTest, ANodeAttachedDuringADeliveryStartsWithTheNextMessage)
{
    RecordingNode first("first", log), late("late", log);
    first.attach();
    first.onMessage = [&](UiMsg*) { late.attach(); };
    bus().post(7);
    bus().post(8);
    bus().dispatch();
    EXPECT_EQ(log, (Log{"first:7", "first:8", "late:8"}));
}

TEST_F(MsgMngrTest, ANodeDetachedAndReattachedDuringADeliveryMovesToTheEnd)
{
    RecordingNode first("first", log), second("second", log), third("third", log);
    first.attach();
    second.attach();
    third.attach();
    first.onMessage = [&](UiMsg* msg) {
        if (msg->getCode() == 7) {
            second.detach();
            second.attach();
        }
    };
    bus().post(7);
    bus().post(8);
    bus().dispatch();
    EXPECT_EQ(log, (Log{"first:7", "third:7", "first:8", "third:8", "second:8"}));
    EXPECT_EQ(bus().getNodeCount(), 3u);
}

TEST_F(MsgMngrTest, MessagesPostedDuringADrainArriveAtTheNextDrain)
{
    RecordingNode node("n", log);
    node.attach();
    node.onMessage = [&](UiMsg* msg) {
        if (msg->getCode() == 7)
            bus().post(99);
        // A drain requested from inside a delivery waits for the host's.
        EXPECT_EQ(bus().dispatch(), 0u);
    };
    bus().post(7);
    bus().post(8);
    EXPECT_EQ(bus().dispatch(), 2u);
    EXPECT_EQ(log, (Log{"n:7", "n:8"}));
    EXPECT_EQ(bus().getPendingCount(), 1u);
    EXPECT_EQ(bus().dispatch(), 1u);
    EXPECT_EQ(log, (Log{"n:7", "n:8", "n:99"}));
}

TEST_F(MsgMngrTest, TheBusFreesMessagesItOwns)
{
    CountedMsg::alive = 0;
    bus().post(std::make_unique<CountedMsg>(1));
    bus().post(std::make_unique<CountedMsg>(2));
    EXPECT_EQ(CountedMsg::alive, 2);
    bus().dispatch();
    EXPECT_EQ(CountedMsg::alive, 0);
    bus().post(std::make_unique<CountedMsg>(3));
    bus().clearQueue();
    EXPECT_EQ(CountedMsg::alive, 0);
}

} // namespace
