#include "MsgMngr.h"
#include "MsgNode.h"
#include "UiMsg.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

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

// notifyNow delivers at once and leaves the queue alone.
TEST_F(MsgMngrTest, PostedMessagesWaitForTheDrainThenArriveInPostOrderAtEveryNodeInAttachOrder)
{
    RecordingNode first("first", log), second("second", log);
    first.attach();
    second.attach();
    bus().post(7);
    bus().postStr(31, "hello");
    bus().post(std::make_unique<UiMsg>(12));
    EXPECT_TRUE(log.empty());
    UiMsgStr owned(31, "x");
    bus().notifyNow(&owned);
    bus().notifyNow(13);
    EXPECT_EQ(log, (Log{"first:31", "second:31", "first:13", "second:13"}));
    EXPECT_EQ(bus().getPendingCount(), 3u);
    log.clear();
    EXPECT_EQ(bus().dispatch(), 3u);
    EXPECT_EQ(log, (Log{"first:7", "second:7", "first:31", "second:31", "first:12", "second:12"}));
    EXPECT_EQ(bus().getPendingCount(), 0u);
    EXPECT_EQ(bus().dispatch(), 0u);
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

// Nodes a, b, c attached in that order receive the posted messages 7 and 8;
// while a handles 7 it changes the bus.
TEST_F(MsgMngrTest, ChangesMadeDuringADeliveryTakeEffectInDeliveryOrder)
{
    struct Nodes {
        Log log;
        RecordingNode a{"a", log}, c{"c", log}, late{"late", log};
        std::unique_ptr<RecordingNode> b = std::make_unique<RecordingNode>("b", log);
    };
    const struct {
        const char* name;
        std::function<void(Nodes&)> onSeven;
        Log expected;
    } cases[] = {
        {"notifyNow is delivered before the outer message moves on", [](Nodes&) { MsgMngr::instance().notifyNow(13); },
            {"a:7", "a:13", "b:13", "c:13", "b:7", "c:7", "a:8", "b:8", "c:8"}},
        {"a detached node gets nothing more", [](Nodes& n) { n.b->detach(); }, {"a:7", "c:7", "a:8", "c:8"}},
        {"a node may detach itself or destroy another", [](Nodes& n) { n.a.detach(); n.b.reset(); },
            {"a:7", "c:7", "c:8"}},
        {"an attached node starts with the next message", [](Nodes& n) { n.late.attach(); },
            {"a:7", "b:7", "c:7", "a:8", "b:8", "c:8", "late:8"}},
        {"detach and reattach moves to the end", [](Nodes& n) { n.b->detach(); n.b->attach(); },
            {"a:7", "c:7", "a:8", "c:8", "b:8"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Nodes nodes;
        nodes.a.attach();
        nodes.b->attach();
        nodes.c.attach();
        nodes.a.onMessage = [&](UiMsg* msg) {
            if (msg->getCode() == 7)
                c.onSeven(nodes);
        };
        bus().post(7);
        bus().post(8);
        EXPECT_EQ(bus().dispatch(), 2u);
        EXPECT_EQ(nodes.log, c.expected);
    }
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
