// Forms and their slots, controls, fault rules and the edge.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "platform/controls.h"
#include "platform/edge.h"
#include "platform/fault.h"
#include "platform/form_slots.h"
#include "platform/list_box.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;

struct Context {
  // Forms that still stand at the end write into the log too.
  std::vector<std::string> log;
  FormSlots slots;
};

class Sample : public Form {
 public:
  explicit Sample(Context& within) : Form({.name = "Sample", .caption = ""}), context(within) {
    Text1.Change = [this] { context.log.push_back("change " + Text1.Text.get()); };
  }
  ~Sample() override { context.log.emplace_back("gone"); }

  Frame Frame1{*this, "Frame1", {0, 0, 1500, 600}, "Frame"};
  TextBox Text1{Frame1, "Text1", {0, 0, 900, 300}};
  CommandButton Command1{*this, "Command1", {0, 600, 900, 300}, "OK"};

  void Form_Load() override { context.log.emplace_back("load"); }
  void Form_Unload() override {
    context.log.emplace_back("unload");
    context.slots.unload(*this);  // again, from within: nothing
  }

  Context& context;
};

TEST(FormSlots, MadeAtTheFirstTouchWithDesignValuesEachTime) {
  Context context;
  EXPECT_EQ(context.slots.loaded<Sample>(), nullptr);
  Sample& first = context.slots.touch<Sample>(context);
  first.Text1.Text = "typed";
  first.Show();
  EXPECT_EQ(&context.slots.touch<Sample>(context), &first);
  context.slots.unload(first);
  EXPECT_FALSE(first.Visible);
  EXPECT_EQ(context.slots.loaded<Sample>(), nullptr);
  Sample& second = context.slots.touch<Sample>(context);
  EXPECT_EQ(second.Text1.Text.get(), "");
  context.slots.unload(first);  // long out of its slot: the new one stays
  EXPECT_EQ(context.slots.loaded<Sample>(), &second);
  context.slots.collect();
  EXPECT_THAT(context.log, ElementsAre("load", "change typed", "unload", "load", "gone"));
}

TEST(FormSlots, UnloadedFormStaysUntilTheOuterHandlerEnds) {
  Context context;
  Edge edge;
  edge.onIdle = [&] { context.slots.collect(); };
  Sample& form = context.slots.touch<Sample>(context);
  edge.run([&] {
    edge.run([&] { context.slots.unload(form); });
    form.Text1.Text = "still there";
  });
  EXPECT_THAT(context.log, ElementsAre("load", "unload", "change still there", "gone"));
}

TEST(Controls, StandInOrderOfConstructionAndTellTheirObserver) {
  Context context;
  Sample form(context);
  EXPECT_THAT(form.Controls(), ElementsAre(&form.Frame1, &form.Text1, &form.Command1));
  EXPECT_EQ(form.Text1.Name, "Text1");
  EXPECT_EQ(form.Text1.container.asControl(), &form.Frame1);

  int refreshes = 0;
  form.Command1.onRefresh = [&] { ++refreshes; };
  form.Command1.Caption = "OK";  // the same
  EXPECT_EQ(refreshes, 0);
  form.Command1.Caption = "Go";
  form.Command1.Move({1, 2, 3, 4});
  EXPECT_EQ(refreshes, 2);
}

// What a handler with three steps does when its second one fails with a given number.
TEST(FaultRule, StepsUnderEachRule) {
  struct Case {
    FaultRule rule;
    int number;
    std::vector<int> stepsDone;
    bool leaves, told;
  };
  for (const Case& each :
       {Case{FaultRule::none(), 5, {1}, true, false}, Case{FaultRule::stop(), 5, {1}, false, true},
        Case{FaultRule::stopExcept(9), 5, {1}, false, true},
        Case{FaultRule::stopExcept(9), 9, {1, 3}, false, false},
        Case{FaultRule::goOn(), 5, {1, 3}, false, false}}) {
    std::vector<int> done;
    bool left = false;
    std::optional<Fault> told;
    try {
      told = each.rule.handle([&] {
        each.rule.step([&] { done.push_back(1); });
        each.rule.step([&] { throw Fault(each.number, "failed"); });
        each.rule.step([&] { done.push_back(3); });
      });
    } catch (const Fault& fault) {
      left = fault.number() == each.number;
    }
    EXPECT_EQ(done, each.stepsDone);
    EXPECT_EQ(left, each.leaves);
    EXPECT_EQ(told.has_value(), each.told);
  }
}

TEST(Edge, TellsFaultsAndRunsNothingAfterTheEnd) {
  Edge edge;
  std::vector<std::string> log;
  edge.onFault = [&](const Fault& fault) { log.emplace_back(fault.what()); };
  edge.onEnd = [&] { log.emplace_back("end"); };
  edge.run([] { throw Fault(5, "no rule"); });
  edge.run([] { throw std::runtime_error("unforeseen"); });
  const FaultRule goOn = FaultRule::goOn();
  edge.run([&] {
    edge.run([&] { goOn.step([] { throw ProgramEnd{}; }); });
    EXPECT_TRUE(edge.ended());
    edge.throwIfEnded();
    log.emplace_back("never");
  });
  edge.run([&] { log.emplace_back("never"); });
  EXPECT_THAT(log, ElementsAre("no rule", "unforeseen", "end"));
}

class Lists : public Form {
 public:
  Lists() : Form({.name = "Lists", .caption = ""}) {}
  ListBox sorted{*this, "sorted", {}, true, ListBox::Selection::several};
  ListBox plain{*this, "plain", {}, false, ListBox::Selection::one};
};

TEST(ListBox, OrderSelectionAndRemoval) {
  Lists form;
  for (const char* entry : {"b", "A", "c", "a", "B"}) {
    form.sorted.AddItem(entry);
    form.plain.AddItem(entry);
  }
  EXPECT_THAT(form.sorted.entries(), ElementsAre("A", "a", "b", "B", "c"));
  EXPECT_THAT(form.plain.entries(), ElementsAre("b", "A", "c", "a", "B"));
  form.plain.setListIndex(1);
  EXPECT_EQ(form.plain.Text(), "A");
  form.plain.RemoveItem(0);
  EXPECT_EQ(form.plain.Text(), "A");
  form.plain.RemoveItem(0);
  EXPECT_EQ(form.plain.Text(), "");
  EXPECT_EQ(form.plain.ListIndex(), -1);
  for (const int index : {-1, 3, 99}) {
    EXPECT_THROW(form.plain.RemoveItem(index), Fault);
    EXPECT_THROW(form.plain.setSelected(index, true), Fault);
  }
  // An entry that comes in before the current one moves it, not the selection.
  form.sorted.setListIndex(2);
  form.sorted.setSelected(2, true);
  form.sorted.AddItem("aa");
  EXPECT_EQ(form.sorted.ListIndex(), 3);
  EXPECT_TRUE(form.sorted.Selected(3));
  EXPECT_FALSE(form.sorted.Selected(2));
  // One that was unselected is no target; what walks over the list still is there.
  EXPECT_EQ(form.sorted.Text(), form.sorted.List(3));
  form.sorted.setSelected(3, false);
  EXPECT_EQ(form.sorted.Text(), "");
  form.sorted.setSelected(0, true);
  EXPECT_EQ(form.sorted.Text(), "A") << "the only one that is selected";
  form.sorted.setSelected(1, true);
  EXPECT_EQ(form.sorted.Text(), "");
  EXPECT_EQ(form.sorted.ListIndex(), 3);
}

TEST(ListBox, OrderBehindALongBeginningThatManyShare) {
  Lists form;
  for (const char* entry :
       {"playeron\xC9_", "playerone2", "PLAYERONE10", "PlayerOne1", "playeron\xE9", "playerOne"}) {
    form.sorted.AddItem(entry);
  }
  EXPECT_THAT(form.sorted.entries(), ElementsAre("playerOne", "PlayerOne1", "PLAYERONE10",
                                                 "playerone2", "playeron\xE9", "playeron\xC9_"));
}

}  // namespace
}  // namespace kelvaron::testing
