// The file dialog: listing, filters, browsing, typed paths, the overwrite question,
// cancelling, and what it remembers.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "base/qinfo.h"
#include "tests/ui/dialog_fixture.h"
#include "ui/qbutton.h"
#include "ui/qdlgfile.h"
#include "ui/qentryfield.h"
#include "ui/qfiledialog.h"
#include "ui/qfilelist.h"
#include "ui/qlabel.h"
#include "ui/qtextdialog.h"

namespace {

using Names = std::vector<std::string>;

class FileDialog : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    root = FreshDir("tyro_dlgfile");
    tyres = (root / "tyres").string();
    for (const char *d : {"tyres/sub", "other"}) std::filesystem::create_directories(root / d);
    for (const char *f : {"a.tir", "B.TIR", "notes.txt"}) std::ofstream(root / "tyres" / f) << "x\n";
    ini = (root / "settings.ini").string();
    std::ofstream(ini) << "qfiledlg\n{\n  tir\n  {\n    dir=" << (root / "other").string()
                       << "\n    file=old.tir\n  }\n}\n";
    settings = new QInfo(ini.c_str());
  }
  void TearDown() override {
    delete settings;
    std::filesystem::remove_all(root);
    DialogTest::TearDown();
  }
  bool Run(const char *key, const char *dir, const char *title, const char *filter) {
    return QDlgFile(settings, key, dir, path, title, filter, nullptr, name);
  }
  static QFileDialog *D() { return ModalAs<QFileDialog>(); }
  static Names Listed() {
    Names out;
    for (const QBrowseEntry &e : D()->GetList()->GetEntries()) out.push_back(e.name);
    return out;
  }
  static int Row(const std::string &n) {
    Names l = Listed();
    return static_cast<int>(std::find(l.begin(), l.end(), n) - l.begin());
  }
  static void ClickRow(const std::string &n, int clicks = 1) {
    const QFileList *l = D()->GetList();
    QRect r = l->GetAbsRect();
    int y = r.y + 2 + (Row(n) - l->GetTop()) * l->GetRowHeight() + l->GetRowHeight() / 2;
    for (int i = 0; i < clicks; i++) qpsClick(r.x + 20, y);
  }
  static inline std::string tyres;
  std::filesystem::path root;
  std::string ini;
  QInfo *settings = nullptr;
  char path[QDLGFILE_PATH_MAX] = "";
  char name[QDLGFILE_NAME_MAX] = "";
};

TEST_F(FileDialog, ListsFoldersAndMatchingFiles) {
  OnIdle([] {
    ASSERT_NE(D(), nullptr);
    EXPECT_STREQ(D()->GetFolderLabel()->GetText(), tyres.c_str());
    EXPECT_EQ(Listed(), (Names{"..", "sub", "a.tir", "B.TIR"}));
    EXPECT_EQ(D()->GetEntry()->GetText(), "old.tir");  // the remembered name
    EXPECT_EQ(QGetWindowManager()->GetFocus(), D()->GetEntry());
    ClickOn(D()->GetFilterButton());
  });
  OnIdle([] {
    EXPECT_STREQ(D()->GetFilterButton()->GetText(), "All files (*.*)");
    EXPECT_EQ(Listed(), (Names{"..", "sub", "a.tir", "B.TIR", "notes.txt"}));
    Keys("\x1b");
  });
  EXPECT_FALSE(Run("tir", tyres.c_str(), "Open car", "*.tir"));
}

TEST_F(FileDialog, TypedAbsolutePathIsChosenAndRemembered) {
  std::string want = tyres + "/B.TIR", cwd = std::filesystem::current_path().string();
  OnIdle([this, want] {
    EXPECT_EQ(D()->GetFolder(), (root / "other").string());  // the remembered folder
    EXPECT_TRUE(D()->GetEntry()->IsAllSelected());
    Keys((want + "\n").c_str());
  });
  ASSERT_TRUE(Run("tir", nullptr, "Import TIR", "*.tir"));
  EXPECT_EQ(std::string(path), want);
  EXPECT_STREQ(name, "B.TIR");
  EXPECT_NE(ReadAll(ini).find("dir=" + tyres + "\n    file=B.TIR"), std::string::npos) << ReadAll(ini);
  EXPECT_EQ(ReadAll(ini).find("filter"), std::string::npos);  // never written back
  EXPECT_EQ(std::filesystem::current_path().string(), cwd);
}

TEST_F(FileDialog, CancelChangesNothing) {
  std::string before = ReadAll(ini);
  qpsKeyPress(QK_SHIFT);  // a modifier held when the dialog ends is forgotten
  Keys("x\x1b");
  EXPECT_FALSE(Run("tir", nullptr, "Open car", "*.tir"));
  OnIdle([] { ClickOn(D()->GetCancel()); });
  EXPECT_FALSE(Run("tir", nullptr, "Open car", "*.tir"));
  CloseRequest();
  EXPECT_FALSE(Run("tir", nullptr, "Open car", "*.tir"));
  EXPECT_EQ(std::string(path) + name, "");
  EXPECT_EQ(ReadAll(ini), before);
  EXPECT_FALSE(settings->GetFlags() & QINFO_MODIFIED);
  EXPECT_FALSE(a->IsShift());
}

TEST_F(FileDialog, BrowsingByKeysAndMouse) {
  OnIdle([] { Keys("sub\nmissing.tir\n"); });  // a typed folder opens
  OnIdle([] {
    EXPECT_EQ(D()->GetFolder(), tyres + "/sub");
    EXPECT_EQ(Listed(), (Names{".."}));
    EXPECT_EQ(D()->GetResult(), 0);
    EXPECT_STREQ(D()->GetStatus(), "'missing.tir' not found");
    // The status stands between OK and Cancel and shortens a long name there.
    const QRect st = D()->GetStatusLabel()->GetAbsRect(), cancel = D()->GetCancel()->GetAbsRect();
    EXPECT_TRUE(D()->GetStatusLabel()->GetElide());
    EXPECT_LT(st.x + st.wid, cancel.x);
    ClickRow("..", 2);  // a double-click enters a folder
  });
  OnIdle([] {
    EXPECT_EQ(D()->GetFolder(), tyres);
    ClickRow("B.TIR", 2);  // a double-click on a file chooses it
  });
  ASSERT_TRUE(Run("tir", tyres.c_str(), "Open car", "*.tir"));
  EXPECT_EQ(std::string(path), tyres + "/B.TIR");
}

TEST_F(FileDialog, SaveAsksBeforeOverwriting) {
  Keys("notes.txt\n");
  OnIdle([] {
    QTextDialog *q = ModalAs<QTextDialog>();
    ASSERT_NE(q, nullptr);  // over the file dialog; Cancel keeps that open
    EXPECT_NE(std::string(q->GetLabel()->GetText()).find("notes.txt already exists"), std::string::npos);
    ClickOn(q->GetCancel());
  });
  OnIdle([] {
    ASSERT_NE(D(), nullptr);
    EXPECT_EQ(QGetWindowManager()->GetFocus(), D()->GetEntry());
    D()->GetEntry()->SetText("");
    Keys("fresh.csv\n");
  });
  ASSERT_TRUE(Run("table", tyres.c_str(), "Export table", "csv"));
  EXPECT_EQ(std::string(path), tyres + "/fresh.csv");
  EXPECT_NE(ReadAll(ini).find("file=fresh.csv"), std::string::npos);
  Keys("notes.txt\n");  // answered OK, the existing file is chosen
  OnIdle([] { Keys("\n"); });
  ASSERT_TRUE(Run("table", tyres.c_str(), "Save car", "*.*"));
  EXPECT_EQ(std::string(path), tyres + "/notes.txt");
}

}  // namespace
