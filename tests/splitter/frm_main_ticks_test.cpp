#include <gmock/gmock.h>

#include "tests/splitter/frm_main_fixture.h"

namespace tarnvale::testing {
namespace {

using FrmMainTicksTest = FrmMainTest;

TEST_F(FrmMainTicksTest, EachMediumSetsItsSizeAndLocksTheField) {
  struct Row {
    const char* medium;
    const char* size;
  };
  for (const Row row :
       {Row{"Floppy Disk 1.44 MBs", "1.38"}, Row{"CD-ROM 800 MBs", "799"},
        Row{"CD-ROM 700 MBs", "699"}, Row{"CD-ROM 650 MBs", "649"}, Row{"DVD-ROM 3.8 GBs", "3891"},
        Row{"DVD-ROM DL 8.4 GBs", "8601"}, Row{"Zip Disk 100 MBs", "99"},
        Row{"Zip Disk 250 MBs", "249"}, Row{"Zip Disk 750 MBs", "749"}}) {
    form.txtSegSize.Enabled = true;
    form.txtSegSize.Text = "5";
    form.Combo1.Text = row.medium;
    Tick();
    EXPECT_EQ(form.txtSegSize.Text.Get(), row.size) << row.medium;
    EXPECT_FALSE(form.txtSegSize.Enabled) << row.medium;
  }
}

TEST_F(FrmMainTicksTest, TicksEvery200Milliseconds) {
  form.Combo1.Text = "Zip Disk 100 MBs";
  machine.Advance(199ms);
  EXPECT_EQ(form.txtSegSize.Text.Get(), "1.38");
  machine.Advance(1ms);
  EXPECT_EQ(form.txtSegSize.Text.Get(), "99");
}

TEST_F(FrmMainTicksTest, ManualSizeUnlocksTheField) {
  form.Combo1.Text = "CD-ROM 700 MBs";
  Tick();
  form.Combo1.Text = "Manual Size";
  Tick();
  EXPECT_TRUE(form.txtSegSize.Enabled);
  EXPECT_EQ(form.txtSegSize.Text.Get(), "699");
  form.txtSegSize.Text = "12";
  Tick();
  EXPECT_EQ(form.txtSegSize.Text.Get(), "12");
}

TEST_F(FrmMainTicksTest, TheTextThatTheBoxBeginsWithMatchesNoRule) {
  Tick();
  EXPECT_EQ(form.txtSegSize.Text.Get(), "1.38");
  EXPECT_TRUE(form.txtSegSize.Enabled);
}

TEST_F(FrmMainTicksTest, OnlyTheVeryWordsCount) {
  for (const char* text : {"cd-rom 700 mbs", "CD-ROM 700 MBs ", "manual size", "anything"}) {
    form.Combo1.Text = text;
    Tick();
    EXPECT_EQ(form.txtSegSize.Text.Get(), "1.38") << text;
    EXPECT_TRUE(form.txtSegSize.Enabled) << text;
  }
}

TEST_F(FrmMainTicksTest, TypedWordsWithoutAnASetTheSizeToZero) {
  form.Combo1.Text = "Select Disk Spanning";
  Tick();
  EXPECT_EQ(form.txtSegSize.Text.Get(), "0");
  EXPECT_TRUE(form.txtSegSize.Enabled);
}

TEST_F(FrmMainTicksTest, AnEmptyBoxLocksTheFieldAtZero) {
  form.Combo1.Text = "";
  Tick();
  EXPECT_EQ(form.txtSegSize.Text.Get(), "0");
  EXPECT_FALSE(form.txtSegSize.Enabled);
}

TEST_F(FrmMainTicksTest, TheFileNameAloneDecidesTheSplitButton) {
  form.Combo1.Text = "Manual Size";
  Tick();
  EXPECT_FALSE(form.chameleonButton2.Enabled);
  form.txtSFName.Text = "C:\\in\\a.tvz";
  form.txtSegSize.Text = "0";
  Tick();
  EXPECT_TRUE(form.chameleonButton2.Enabled) << "a size of 0 has no say";
}

TEST_F(FrmMainTicksTest, TheTestsOnTheSizeMerelyFlickerBeforeIt) {
  form.txtSFName.Text = "C:\\in\\a.tvz";
  Tick();
  std::vector<bool> states;
  form.chameleonButton2.Enabled.Changed.Listen(
      [&] { states.push_back(form.chameleonButton2.Enabled); });
  form.txtSegSize.Text = "0";
  Tick();
  EXPECT_EQ(states, (std::vector<bool>{false, true}));
  states.clear();
  // The medium comes first, so the 0 that it replaces is never seen.
  form.Combo1.Text = "CD-ROM 800 MBs";
  Tick();
  EXPECT_TRUE(states.empty());
  // The second group comes behind the test for 0, which sees the typed one.
  form.Combo1.Text = "Zip Disk 100 MBs";
  form.txtSegSize.Text = "0";
  Tick();
  EXPECT_EQ(states, (std::vector<bool>{false, true}));
}

TEST_F(FrmMainTicksTest, ThePartNameAloneDecidesTheJoinButton) {
  Tick();
  EXPECT_FALSE(form.chameleonButton1.Enabled);
  form.txtSegfname.Text = "x";
  Tick();
  EXPECT_TRUE(form.chameleonButton1.Enabled);
}

}  // namespace
}  // namespace tarnvale::testing
