// The value widgets of the property panels: each shows its getter's value
// on refresh and writes a committed edit through its setter at once.
#include "UIBool.h"
#include "UIEnum.h"
#include "UIEnumRef.h"
#include "UIIntBase.h"
#include "UIString.h"
#include "jLog.h"

#include <QTest>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

template <typename T>
struct Bound {
    explicit Bound(T initial) : value(std::move(initial)) {}
    T value;
    std::vector<T> written;
    auto getter() { return [this] { return value; }; }
    auto setter()
    {
        return [this](const T& v) {
            value = v;
            written.push_back(v);
        };
    }
};

void typeAndCommit(QLineEdit& field, const char* text)
{
    field.clear();
    QTest::keyClicks(&field, text);
    QTest::keyClick(&field, Qt::Key_Return);
}

TEST(UIIntBase, WritesNumbersAndRefusesAnythingElse)
{
    Bound<int> bound{5};
    UIIntBase<int> field(nullptr, bound.getter(), bound.setter());
    EXPECT_EQ(field.text(), "5");

    typeAndCommit(field, " -12 ");
    EXPECT_EQ(bound.written, std::vector<int>{-12});
    EXPECT_EQ(field.text(), "-12");

    jLog::Capture log;
    typeAndCommit(field, "12x");
    typeAndCommit(field, "99999999999");
    typeAndCommit(field, "");
    EXPECT_EQ(bound.written, std::vector<int>{-12});
    EXPECT_EQ(field.text(), "-12");
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "warning: UIIntBase::commit: \"12x\" is not a whole number from -2147483648 to 2147483647, the value stays -12",
                               "warning: UIIntBase::commit: \"99999999999\" is not a whole number from -2147483648 to 2147483647, the value stays -12",
                               "warning: UIIntBase::commit: \"\" is not a whole number from -2147483648 to 2147483647, the value stays -12",
                           }));

    // Committing the value it already has writes nothing; read-only fields
    // write nothing at all.
    typeAndCommit(field, "-12");
    field.setReadOnly(true);
    typeAndCommit(field, "7");
    EXPECT_EQ(bound.written, std::vector<int>{-12});

    bound.value = 40;
    field.refresh();
    EXPECT_EQ(field.text(), "40");
}

TEST(UIStringAndUIBool, WriteWhatIsCommittedAndShowWhatRefreshReads)
{
    Bound<jString> bound{"0.5"};
    UIString field(nullptr, bound.getter(), bound.setter());
    EXPECT_EQ(field.text(), "0.5");
    typeAndCommit(field, "1.25");
    EXPECT_EQ(bound.written, std::vector<jString>{"1.25"});
    bound.value = "2";
    field.refresh();
    EXPECT_EQ(field.text(), "2");
    EXPECT_EQ(bound.written.size(), 1u);

    Bound<bool> flag{false};
    UIBool box(nullptr, flag.getter(), flag.setter());
    EXPECT_FALSE(box.isChecked());
    box.click();
    EXPECT_EQ(flag.written, std::vector<bool>{true});
    flag.value = false;
    box.refresh();
    EXPECT_FALSE(box.isChecked());
    EXPECT_EQ(flag.written.size(), 1u);
}

TEST(UIEnum, SelectsByValueAndWritesTheChosenValue)
{
    Bound<jString> keyword{"DEPTH_ALWAYS"};
    UIEnumRef<jString> depth(nullptr, [&]() -> const jString& { return keyword.value; }, keyword.setter());
    depth.addEntry("LessEqaul", "DEPTH_LEQUAL");
    depth.addEntry("Always", "DEPTH_ALWAYS");
    depth.refresh();
    EXPECT_EQ(depth.currentIndex(), 1);
    EXPECT_EQ(depth.currentText(), "Always");
    depth.setCurrentIndex(0);
    EXPECT_EQ(keyword.written, std::vector<jString>{"DEPTH_LEQUAL"});
    // A value no entry has selects none (and writes nothing).
    keyword.value = "DEPTH_SOMETIMES";
    depth.refresh();
    EXPECT_EQ(depth.currentIndex(), -1);

    Bound<int> choice{2};
    UIEnum<int> state(nullptr, choice.getter(), choice.setter());
    for (int i = 0; i < 3; ++i)
        state.addEntry("item" + std::to_string(i), i);
    EXPECT_TRUE(choice.written.empty());
    state.refresh();
    EXPECT_EQ(state.currentIndex(), 2);
    QTest::keyClick(&state, Qt::Key_Up);
    EXPECT_EQ(choice.written, std::vector<int>{1});
    EXPECT_EQ(keyword.written.size(), 1u);
}

} // namespace
