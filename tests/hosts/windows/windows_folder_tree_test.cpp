// The tree of folders and its record, over folders in memory on drives by script.

#include "tests/hosts/windows/windows_fixture.h"

#include <commctrl.h>

namespace tarnvale::testing {
namespace {

class WindowsFolderTreeTest : public WindowsWindowTest {
 protected:
  WindowsFolderTreeTest() {
    for (const char* folder :
         {"C:\\Data", "C:\\Data\\Deep", "C:\\Data\\Deep\\Deeper", "C:\\Empty"}) {
      files.MakeFolder(folder);
    }
    Place(tree);
  }

  HWND Tree() { return NativeOf(tree); }
  std::wstring TextOf(HTREEITEM item) {
    wchar_t text[256] = L"";
    TVITEMW asked{};
    asked.mask = TVIF_TEXT;
    asked.hItem = item;
    asked.pszText = text;
    asked.cchTextMax = 256;
    Send(Tree(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&asked));
    return text;
  }
  HTREEITEM Next(UINT which, HTREEITEM item) {
    return reinterpret_cast<HTREEITEM>(
        Send(Tree(), TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(item)));
  }
  HTREEITEM Root() { return Next(TVGN_ROOT, nullptr); }
  HTREEITEM Child(HTREEITEM parent, const std::wstring& name) {
    HTREEITEM item = Next(TVGN_CHILD, parent);
    while (item != nullptr && TextOf(item) != name) item = Next(TVGN_NEXT, item);
    return item;
  }
  void Expand(HTREEITEM item) {
    Send(Tree(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
  }
  void Select(HTREEITEM item) {
    Send(Tree(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
  }
  std::wstring SelectedName() { return TextOf(Next(TVGN_CARET, nullptr)); }
  bool MayOpen(HTREEITEM item) {
    TVITEMW asked{};
    asked.mask = TVIF_CHILDREN;
    asked.hItem = item;
    Send(Tree(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&asked));
    return asked.cChildren != 0;
  }

  FolderTree tree;
};

TEST_F(WindowsFolderTreeTest, StartsOpenedDownToItsFolder) {
  tree.Start("C:\\Data\\Deep");
  Show();
  EXPECT_EQ(SelectedName(), L"Deep");
  EXPECT_EQ(TextOf(Next(TVGN_PARENT, Next(TVGN_CARET, nullptr))), L"Data");
  EXPECT_EQ(tree.SelectedPath.Get(), "C:\\Data\\Deep");
}

TEST_F(WindowsFolderTreeTest, FoldersAreReadWhenTheyAreOpened) {
  Show();
  EXPECT_EQ(Next(TVGN_CHILD, Root()), nullptr);
  EXPECT_TRUE(MayOpen(Root()));
  Expand(Root());
  ASSERT_NE(Child(Root(), L"Data"), nullptr);
  EXPECT_EQ(Next(TVGN_CHILD, Child(Root(), L"Data")), nullptr);
}

TEST_F(WindowsFolderTreeTest, AChoiceIsReportedAndFollowed) {
  Show();
  Expand(Root());
  Select(Child(Root(), L"Empty"));
  EXPECT_EQ(tree.SelectedPath.Get(), "C:\\Empty");
  Select(Root());
  EXPECT_EQ(tree.SelectedPath.Get(), "C:\\");
  tree.SelectedPath = "C:\\Data";
  EXPECT_TRUE(WaitFor([&] { return SelectedName() == L"Data"; }));
}

TEST_F(WindowsFolderTreeTest, AMissingFolderSelectsNothingAndStaysInTheRecord) {
  tree.Start("C:\\None");
  Show();
  EXPECT_EQ(Next(TVGN_CARET, nullptr), nullptr);
  EXPECT_EQ(tree.SelectedPath.Get(), "C:\\None");
}

TEST_F(WindowsFolderTreeTest, TheFocusAloneSelectsNothing) {
  Show();
  window.Focus(tree);
  EXPECT_EQ(::GetFocus(), Tree());
  EXPECT_EQ(tree.SelectedPath.Get(), "");
  EXPECT_EQ(Next(TVGN_CARET, nullptr), nullptr);
}

TEST_F(WindowsFolderTreeTest, WhatIsInSightShowsWhetherItCanBeOpened) {
  Show();
  Expand(Root());
  EXPECT_TRUE(WaitFor([&] { return !MayOpen(Child(Root(), L"Empty")); }));
  EXPECT_TRUE(MayOpen(Child(Root(), L"Data")));
}

TEST_F(WindowsFolderTreeTest, AFolderOpenedAgainIsReadAgain) {
  Show();
  Expand(Root());
  ASSERT_TRUE(WaitFor([&] { return !MayOpen(Child(Root(), L"Empty")); }));
  // Only what the user does is reported by the tree a second time.
  Select(Root());
  PressKey(Tree(), VK_LEFT);
  files.MakeFolder("C:\\Added");
  files.Remove("C:\\Empty");
  PressKey(Tree(), VK_RIGHT);
  EXPECT_TRUE(WaitFor(
      [&] { return Child(Root(), L"Added") != nullptr && Child(Root(), L"Empty") == nullptr; }));
}

TEST_F(WindowsFolderTreeTest, DrivesComeAndGo) {
  Show();
  EXPECT_EQ(Next(TVGN_NEXT, Root()), nullptr);
  files.AddDrive("E", DriveKind::kRemovable);
  ::PostMessageW(HWND_BROADCAST, WM_DEVICECHANGE, 7 /* DBT_DEVNODES_CHANGED */, 0);
  ASSERT_TRUE(WaitFor([&] { return Next(TVGN_NEXT, Root()) != nullptr; }));
  EXPECT_EQ(TextOf(Next(TVGN_NEXT, Root())), L"E:");
  files.RemoveDrive("E");
  ::PostMessageW(HWND_BROADCAST, WM_DEVICECHANGE, 7, 0);
  EXPECT_TRUE(WaitFor([&] { return Next(TVGN_NEXT, Root()) == nullptr; }));
}

TEST_F(WindowsFolderTreeTest, ADriveThatMayNotAnswerIsNotPeekedInto) {
  files.AddDrive("E", DriveKind::kNetwork);
  Show();
  Expand(Root());
  ASSERT_TRUE(WaitFor([&] { return !MayOpen(Child(Root(), L"Empty")); }));
  EXPECT_TRUE(MayOpen(Next(TVGN_NEXT, Root())));
}

}  // namespace
}  // namespace tarnvale::testing
