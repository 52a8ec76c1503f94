#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kit/chameleon_button.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using Keys = std::vector<std::string>;

const Picture kPicture{Raster{1, 1, {0xFF112233}}, false};

// Each property gets a value that is not its default.
void ChangeAll(chameleonButton& button) {
  button.ButtonType = 3;
  button.Caption = "&Browse";
  button.Enabled = false;
  button.Font = Font{.family = {}, .size_pt = 12};
  button.ColorScheme = 2;
  button.ShowFocusRect = false;
  button.BackColor = 0x010101;
  button.BackOver = 0x020202;
  button.ForeColor = 0x030303;
  button.ForeOver = 0x040404;
  button.MaskColor = 0x050505;
  button.MousePointer = 11;
  button.MouseIcon = kPicture;
  button.PictureNormal = kPicture;
  button.PictureOver = kPicture;
  button.UseMaskColor = false;
  button.SoftBevel = true;
  button.PicturePosition = 3;
  button.UseGreyscale = true;
  button.SpecialEffect = 2;
  button.CheckBoxBehaviour = true;
  button.Value = true;
}

TEST(ChameleonButtonProperties, ReportTheirKeysWhenTheyChange) {
  chameleonButton button;
  Keys keys;
  button.PropertyChanged.Listen([&](const std::string& key) { keys.push_back(key); });
  ChangeAll(button);
  EXPECT_EQ(keys, (Keys{"BTYPE", "TX",     "ENAB",  "FONT", "COLTYPE", "FOCUSR", "BCOL", "BCOLO",
                        "FCOL",  "FCOLO",  "MCOL",  "MPTR", "MICON",   "PICN",   "PICO", "UMCOL",
                        "SOFT",  "PICPOS", "NGREY", "FX",   "CHECK",   "VALUE"}));
}

TEST(ChameleonButtonProperties, ReportTheirKeysAndDrawAnewWhenTheyGetTheValuesThatTheyHave) {
  chameleonButton button;
  button.OnResize({100, 26});
  ChangeAll(button);
  button.HandPointer = false;
  Keys keys;
  int drawings = 0;
  button.PropertyChanged.Listen([&](const std::string& key) { keys.push_back(key); });
  button.LookChanged.Listen([&] { ++drawings; });
  ChangeAll(button);
  button.HandPointer = false;
  EXPECT_EQ(keys, (Keys{"BTYPE", "TX",     "ENAB",  "FONT", "COLTYPE", "FOCUSR", "BCOL", "BCOLO",
                        "FCOL",  "FCOLO",  "MCOL",  "MPTR", "MICON",   "PICN",   "PICO", "UMCOL",
                        "SOFT",  "PICPOS", "NGREY", "FX",   "CHECK",   "VALUE",  "HAND"}));
  EXPECT_EQ(drawings, 23);
}

TEST(ChameleonButtonProperties, CopyTheGroundAnewWhenTheTransparentTypeIsSetAgain) {
  chameleonButton button;
  button.OnResize({1, 1});
  button.ButtonType = 11;
  button.CopyOfContainer = [] { return Raster{1, 1, {0xFF112233}}; };
  button.ButtonType = 11;
  EXPECT_EQ(button.Drawn()->ground, (Raster{1, 1, {0xFF112233}}));
}

TEST(ChameleonButtonProperties, ReportTheHandPointer) {
  chameleonButton button;
  Keys keys;
  button.PropertyChanged.Listen([&](const std::string& key) { keys.push_back(key); });
  button.HandPointer = true;
  EXPECT_EQ(keys, (Keys{"MPTR", "HAND"}));
}

TEST(ChameleonButtonProperties, StoreTheHoverPictureUnderAnotherKeyThanTheyReport) {
  chameleonButton button;
  std::string changed;
  button.PropertyChanged.Listen([&](const std::string& key) { changed = key; });
  button.PictureOver = kPicture;
  EXPECT_EQ(changed, "PICO");
  PropertyBag bag;
  button.WriteProperties(bag);
  EXPECT_TRUE(bag.Holds("PICH"));
  EXPECT_FALSE(bag.Holds("PICO"));
}

TEST(ChameleonButtonProperties, ComeBackFromABag) {
  chameleonButton written;
  ChangeAll(written);
  PropertyBag bag;
  written.WriteProperties(bag);
  chameleonButton read;
  read.ReadProperties(bag);
  EXPECT_EQ(read.ButtonType, 3);
  EXPECT_EQ(read.Caption.Get(), "&Browse");
  EXPECT_FALSE(read.Enabled);
  EXPECT_EQ(read.Font.Get().size_pt, 12);
  EXPECT_EQ(read.ColorScheme, 2);
  EXPECT_FALSE(read.ShowFocusRect);
  EXPECT_EQ(read.BackColor, 0x010101U);
  EXPECT_EQ(read.BackOver, 0x020202U);
  EXPECT_EQ(read.ForeColor, 0x030303U);
  EXPECT_EQ(read.ForeOver, 0x040404U);
  EXPECT_EQ(read.MaskColor, 0x050505U);
  EXPECT_EQ(read.MousePointer, 11);
  EXPECT_EQ(read.MouseIcon.Get(), kPicture);
  EXPECT_EQ(read.PictureNormal.Get(), kPicture);
  EXPECT_EQ(read.PictureOver.Get(), kPicture);
  EXPECT_FALSE(read.UseMaskColor);
  EXPECT_TRUE(read.SoftBevel);
  EXPECT_EQ(read.PicturePosition, 3);
  EXPECT_TRUE(read.UseGreyscale);
  EXPECT_EQ(read.SpecialEffect, 2);
  EXPECT_TRUE(read.CheckBoxBehaviour);
  EXPECT_TRUE(read.Value);
}

TEST(ChameleonButtonProperties, AreStoredUnderFixedKeys) {
  chameleonButton button;
  PropertyBag bag;
  button.WriteProperties(bag);
  for (const char* key : {"BTYPE", "TX",     "ENAB",  "FONT", "COLTYPE", "FOCUSR", "BCOL", "BCOLO",
                          "FCOL",  "FCOLO",  "MCOL",  "MPTR", "MICON",   "PICN",   "PICH", "UMCOL",
                          "SOFT",  "PICPOS", "NGREY", "FX",   "HAND",    "CHECK",  "VALUE"}) {
    EXPECT_TRUE(bag.Holds(key)) << key;
  }
}

TEST(ChameleonButtonProperties, HaveTheirDefaultsAtReadOfAnEmptyBag) {
  chameleonButton button;
  ChangeAll(button);
  button.Ambient =
      AmbientLook{.name = "x", .font = {.family = "Sans"}, .back = 0xA0B0C0, .fore = 0x102030};
  button.ReadProperties({});
  EXPECT_EQ(button.ButtonType, 2);
  EXPECT_EQ(button.Caption.Get(), "");
  EXPECT_TRUE(button.Enabled);
  EXPECT_EQ(button.Font.Get().family, "Sans");
  EXPECT_EQ(button.ColorScheme, 1);
  EXPECT_TRUE(button.ShowFocusRect);
  EXPECT_EQ(button.BackColor, 0xA0B0C0U);
  EXPECT_EQ(button.ForeColor, 0x102030U);
  EXPECT_EQ(button.MaskColor, 0xC0C0C0U);
  EXPECT_EQ(button.MousePointer, 0);
  EXPECT_TRUE(button.PictureOver.Get().Empty());
  EXPECT_TRUE(button.UseMaskColor);
  EXPECT_FALSE(button.SoftBevel);
  EXPECT_EQ(button.PicturePosition, 0);
  EXPECT_FALSE(button.UseGreyscale);
  EXPECT_EQ(button.SpecialEffect, 0);
  EXPECT_FALSE(button.HandPointer);
  EXPECT_FALSE(button.CheckBoxBehaviour);
  EXPECT_FALSE(button.Value);
}

TEST(ChameleonButtonProperties, TakeFaceAndTextForHoverColoursThatWereNotStored) {
  chameleonButton button;
  button.ReadProperties({});
  EXPECT_EQ(button.BackOver, SystemColor(15));
  EXPECT_EQ(button.ForeOver, SystemColor(18));
  PropertyBag custom;
  custom.Write("COLTYPE", 2);
  custom.Write("BCOL", Color{0x806040});
  custom.Write("FCOL", Color{0x102030});
  button.ReadProperties(custom);
  EXPECT_EQ(button.BackOver, 0x806040U);
  EXPECT_EQ(button.ForeOver, 0x102030U);
}

TEST(ChameleonButtonProperties, AreReadWithoutNotifyingAndWithOneDrawing) {
  chameleonButton button;
  button.OnResize({100, 26});
  Keys keys;
  int drawings = 0;
  button.PropertyChanged.Listen([&](const std::string& key) { keys.push_back(key); });
  button.LookChanged.Listen([&] { ++drawings; });
  PropertyBag bag;
  bag.Write("BTYPE", 3);
  bag.Write("TX", "Browse");
  button.ReadProperties(bag);
  EXPECT_TRUE(keys.empty());
  EXPECT_EQ(drawings, 1);
  EXPECT_EQ(button.Drawn()->type, 3);
}

TEST(ChameleonButtonProperties, NotifyAgainAfterAReadThatFailed) {
  chameleonButton button;
  PropertyBag bag;
  bag.Write("BTYPE", "three");
  EXPECT_EQ(RaisedBy([&] { button.ReadProperties(bag); }), kTypeMismatch);
  Keys keys;
  button.PropertyChanged.Listen([&](const std::string& key) { keys.push_back(key); });
  button.Caption = "Browse";
  EXPECT_EQ(keys, (Keys{"TX"}));
}

TEST(ChameleonButtonProperties, OfANewControlComeFromItsWindow) {
  chameleonButton button;
  ChangeAll(button);
  button.Ambient = AmbientLook{
      .name = "chameleonButton1", .font = {.family = "Sans"}, .back = 0xA0B0C0, .fore = 0x102030};
  button.InitProperties();
  EXPECT_EQ(button.Caption.Get(), "chameleonButton1");
  EXPECT_EQ(button.Font.Get().family, "Sans");
  EXPECT_EQ(button.ButtonType, 2);
  EXPECT_EQ(button.ColorScheme, 1);
  EXPECT_TRUE(button.Enabled);
  EXPECT_TRUE(button.ShowFocusRect);
  EXPECT_EQ(button.MaskColor, 0xC0C0C0U);
  EXPECT_EQ(button.BackOver, button.BackColor.Get());
  EXPECT_EQ(button.ForeOver, button.ForeColor.Get());
}

TEST(ChameleonButtonProperties, DrawAnewWhenTheyChange) {
  chameleonButton button;
  button.OnResize({100, 26});
  int drawings = 0;
  button.LookChanged.Listen([&] { ++drawings; });
  button.SpecialEffect = 1;
  EXPECT_EQ(drawings, 1);
  button.SoftBevel = true;
  EXPECT_EQ(drawings, 2);
}

}  // namespace
}  // namespace tarnvale::testing
