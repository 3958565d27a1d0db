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
    UiMsgStr owned(31, "x");
    bus().notifyNow(&owned);
    bus().notifyNow(13);
    EXPECT_EQ(log, (Log{"first:31", "second:31", "first:13", "second:13"}));
    EXPECT_EQ(bus().getPendingCount(), 3u);
    log.clear();
    EXPECT_EQ(bus().dispatch(), 3u);
    EXPECT_EQ(log, (Log{"first:7", "second:7", "first:31", "second:31", "first:12", "second:12"}));
}

// Nodes a, b, c attached in that order receive the posted messages 7 and 8;
// while a handles 7 it changes the bus.
TEST_F(MsgMngrTest, ChangesMadeDuringADeliveryTakeEffectInDeliveryOrder)
{
    struct Nodes {
        Log log;
        RecordingNode a{"a", log}, c{"c", log};
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

} // namespace
