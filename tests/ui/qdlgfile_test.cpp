// The file dialog: save/open rule, filters, browsing, typed paths, the
// overwrite question, cancelling, and what it remembers.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "base/qinfo.h"
#include "base/qstring.h"
#include "tests/ui/dialog_fixture.h"
#include "ui/qbutton.h"
#include "ui/qdlgfile.h"
#include "ui/qentryfield.h"
#include "ui/qfiledialog.h"
#include "ui/qfilelist.h"
#include "ui/qlabel.h"
#include "ui/qtextdialog.h"

namespace fs = std::filesystem;

namespace {

class FileDialog : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    root = fs::weakly_canonical(fs::temp_directory_path() / ("tyro_dlgfile_" + std::to_string(getpid())));
    fs::remove_all(root);
    fs::create_directories(root / "tyres" / "sub");
    fs::create_directories(root / "other");
    for (const char *f : {"a.tir", "B.TIR", "notes.txt"}) std::ofstream(root / "tyres" / f) << "x\n";
    ini = (root / "settings.ini").string();
    std::ofstream(ini) << "qfiledlg\n{\n  tir\n  {\n    dir=" << (root / "other").string()
                       << "\n    file=old.tir\n  }\n}\n";
    settings = new QInfo(ini.c_str());
    char buf[1024];
    cwd = getcwd(buf, sizeof(buf)) ? buf : "";
    path[0] = 0;
    name[0] = 0;
  }
  void TearDown() override {
    delete settings;
    fs::remove_all(root);
    DialogTest::TearDown();
  }
  std::string Get(const char *key) {
    qstring s;
    settings->GetString(key, s, "");
    return s.c_str();
  }
  std::string Slurp() {
    std::ifstream f(ini);
    std::stringstream ss;
    ss << f.rdbuf();
    return ss.str();
  }
  static std::vector<std::string> Names(const QFileList *l) {
    std::vector<std::string> out;
    for (const QBrowseEntry &e : l->GetEntries()) out.push_back(e.name);
    return out;
  }
  static int Row(const QFileList *l, const std::string &n) {
    for (int i = 0; i < l->GetCount(); i++)
      if (l->GetEntries()[static_cast<size_t>(i)].name == n) return i;
    return -1;
  }
  // A click on a row of the list (it must be visible).
  static void ClickRow(const QFileList *l, int row) {
    QRect r = l->GetAbsRect();
    int y = r.y + 2 + (row - l->GetTop()) * l->GetRowHeight() + l->GetRowHeight() / 2;
    qpsClick(r.x + 20, y);
  }
  fs::path root;
  std::string ini, cwd;
  QInfo *settings = nullptr;
  char path[QDLGFILE_PATH_MAX];
  char name[QDLGFILE_NAME_MAX];
};

TEST_F(FileDialog, OpenDialogListsFoldersAndMatchingFiles) {
  static std::string dir;
  dir = (root / "tyres").string();
  OnIdle([] {
    QFileDialog *d = ModalAs<QFileDialog>();
    ASSERT_NE(d, nullptr);
    EXPECT_FALSE(d->IsSave());
    EXPECT_STREQ(d->GetTitle(), "Open car");
    ASSERT_EQ(d->GetFilters().size(), 2u);
    EXPECT_EQ(d->GetFilters()[0].label.rfind("TIR", 0), 0u) << d->GetFilters()[0].label;
    EXPECT_EQ(d->GetFolder(), dir);
    EXPECT_STREQ(d->GetFolderLabel()->GetText(), dir.c_str());
    EXPECT_EQ(Names(d->GetList()), (std::vector<std::string>{"..", "sub", "a.tir", "B.TIR"}));
    // The remembered file name is proposed, and the entry has the focus.
    EXPECT_EQ(d->GetEntry()->GetText(), "old.tir");
    EXPECT_EQ(QGetWindowManager()->GetFocus(), d->GetEntry());
    // The filter button switches to all files.
    ClickOn(d->GetFilterButton());
  });
  OnIdle([] {
    QFileDialog *d = ModalAs<QFileDialog>();
    EXPECT_EQ(d->GetFilterIndex(), 1);
    EXPECT_STREQ(d->GetFilterButton()->GetText(), "All files (*.*)");
    EXPECT_EQ(Names(d->GetList()), (std::vector<std::string>{"..", "sub", "a.tir", "B.TIR", "notes.txt"}));
    qpsKeyTap(QK_ESC);
  });
  EXPECT_FALSE(QDlgFile(settings, "tir", dir.c_str(), path, "Open car", "*.tir", nullptr, name));
}

TEST_F(FileDialog, TypedAbsolutePathIsChosenAndRemembered) {
  std::string want = (root / "tyres" / "B.TIR").string();
  // Starts in the remembered folder; the typed path replaces the proposal.
  OnIdle([this, want] {
    QFileDialog *d = ModalAs<QFileDialog>();
    EXPECT_EQ(d->GetFolder(), (root / "other").string());
    // The proposed name is selected: the typed path replaces it.
    EXPECT_TRUE(d->GetEntry()->IsAllSelected());
    qpsType(want.c_str());
    qpsKeyTap(QK_ENTER);
  });
  ASSERT_TRUE(QDlgFile(settings, "tir", nullptr, path, "Import TIR", "*.tir", nullptr, name));
  EXPECT_EQ(std::string(path), want);
  EXPECT_STREQ(name, "B.TIR");
  EXPECT_EQ(Get("qfiledlg.tir.dir"), (root / "tyres").string());
  EXPECT_EQ(Get("qfiledlg.tir.file"), "B.TIR");
  EXPECT_NE(Slurp().find("file=B.TIR"), std::string::npos) << Slurp();
  // The stored filter is never written back.
  EXPECT_EQ(Slurp().find("filter"), std::string::npos);
  char buf[1024];
  EXPECT_EQ(std::string(getcwd(buf, sizeof(buf))), cwd);
}

TEST_F(FileDialog, CancelChangesNothing) {
  std::string before = Slurp();
  qpsType("x");
  qpsKeyTap(QK_ESC);
  EXPECT_FALSE(QDlgFile(settings, "tir", nullptr, path, "Open car", "*.tir", nullptr, name));
  OnIdle([] { ClickOn(ModalAs<QFileDialog>()->GetCancel()); });
  EXPECT_FALSE(QDlgFile(settings, "tir", nullptr, path, "Open car", "*.tir", nullptr, name));
  a->SetState(QApp::STATE_EXIT_RETURNS);
  qpsClose();
  EXPECT_FALSE(QDlgFile(settings, "tir", nullptr, path, "Open car", "*.tir", nullptr, name));
  EXPECT_STREQ(path, "");
  EXPECT_STREQ(name, "");
  EXPECT_EQ(Get("qfiledlg.tir.dir"), (root / "other").string());
  EXPECT_EQ(Get("qfiledlg.tir.file"), "old.tir");
  EXPECT_EQ(Slurp(), before);
  EXPECT_FALSE(settings->GetFlags() & QINFO_MODIFIED);
}

TEST_F(FileDialog, BrowsingWithTheMouse) {
  static std::string tyres;
  tyres = (root / "tyres").string();
  OnIdle([] {
    QFileList *l = ModalAs<QFileDialog>()->GetList();
    int sub = Row(l, "sub");
    ASSERT_GE(sub, 0);
    // Double-click enters the folder.
    ClickRow(l, sub);
    ClickRow(l, sub);
  });
  OnIdle([] {
    QFileDialog *d = ModalAs<QFileDialog>();
    EXPECT_EQ(d->GetFolder(), tyres + "/sub");
    EXPECT_EQ(Names(d->GetList()), (std::vector<std::string>{".."}));
    ClickRow(d->GetList(), 0);
    ClickRow(d->GetList(), 0);
  });
  OnIdle([] {
    QFileDialog *d = ModalAs<QFileDialog>();
    EXPECT_EQ(d->GetFolder(), tyres);
    // One click selects a file and puts its name into the entry.
    ClickRow(d->GetList(), Row(d->GetList(), "a.tir"));
  });
  OnIdle([] {
    QFileDialog *d = ModalAs<QFileDialog>();
    EXPECT_EQ(d->GetEntry()->GetText(), "a.tir");
    EXPECT_TRUE(d->GetList()->IsSelected(Row(d->GetList(), "a.tir")));
    // A double-click on a file chooses it.
    int b = Row(d->GetList(), "B.TIR");
    ClickRow(d->GetList(), b);
    ClickRow(d->GetList(), b);
  });
  ASSERT_TRUE(QDlgFile(settings, "tir", tyres.c_str(), path, "Open car", "*.tir", nullptr, name));
  EXPECT_EQ(std::string(path), tyres + "/B.TIR");
}

TEST_F(FileDialog, TypedFolderOpensAndMissingFileIsRefused) {
  static std::string tyres;
  tyres = (root / "tyres").string();
  OnIdle([] {
    QFileDialog *d = ModalAs<QFileDialog>();
    d->GetEntry()->SetText("");
    qpsType("sub");
    qpsKeyTap(QK_ENTER);
    qpsType("missing.tir");
    qpsKeyTap(QK_ENTER);
  });
  OnIdle([] {
    QFileDialog *d = ModalAs<QFileDialog>();
    EXPECT_EQ(d->GetFolder(), tyres + "/sub");
    EXPECT_EQ(d->GetResult(), 0);
    EXPECT_STREQ(d->GetStatus(), "'missing.tir' not found");
    d->GetEntry()->SetText("");
    qpsType("../a.tir");
    qpsKeyTap(QK_ENTER);
  });
  ASSERT_TRUE(QDlgFile(settings, "tir", tyres.c_str(), path, "Open car", "*.tir", nullptr, name));
  EXPECT_EQ(std::string(path), tyres + "/a.tir");
}

TEST_F(FileDialog, SaveAsksBeforeOverwriting) {
  static std::string tyres;
  tyres = (root / "tyres").string();
  OnIdle([] {
    QFileDialog *d = ModalAs<QFileDialog>();
    EXPECT_TRUE(d->IsSave());
    // Only "All Files" without a star-point filter.
    ASSERT_EQ(d->GetFilters().size(), 1u);
    EXPECT_EQ(d->GetFilters()[0].label, "All Files (*.*)");
    d->GetEntry()->SetText("");
    qpsType("notes.txt");
    qpsKeyTap(QK_ENTER);
  });
  // The question is a message box inside the file dialog; Cancel keeps the
  // file dialog open.
  OnIdle([] {
    QTextDialog *q = ModalAs<QTextDialog>();
    ASSERT_NE(q, nullptr);
    EXPECT_NE(std::string(q->GetLabel()->GetText()).find("notes.txt already exists"), std::string::npos);
    ASSERT_NE(q->GetCancel(), nullptr);
    ClickOn(q->GetCancel());
  });
  OnIdle([] {
    QFileDialog *d = ModalAs<QFileDialog>();
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->GetResult(), 0);
    EXPECT_EQ(QGetWindowManager()->GetFocus(), d->GetEntry());
    d->GetEntry()->SetText("");
    qpsType("fresh.csv");
    qpsKeyTap(QK_ENTER);
  });
  ASSERT_TRUE(QDlgFile(settings, "table", tyres.c_str(), path, "Export table", "csv", nullptr, name));
  EXPECT_EQ(std::string(path), tyres + "/fresh.csv");
  EXPECT_EQ(Get("qfiledlg.table.file"), "fresh.csv");

  // Answered OK, the existing file is chosen.
  OnIdle([] {
    ModalAs<QFileDialog>()->GetEntry()->SetText("");
    qpsType("notes.txt");
    qpsKeyTap(QK_ENTER);
  });
  OnIdle([] { qpsKeyTap(QK_ENTER); });
  ASSERT_TRUE(QDlgFile(settings, "table", tyres.c_str(), path, "Save car", "*.*", nullptr, name));
  EXPECT_EQ(std::string(path), tyres + "/notes.txt");
}

TEST_F(FileDialog, SeveralFilesIntoTheList) {
  static std::string tyres;
  tyres = (root / "tyres").string();
  std::vector<std::string> list;
  OnIdle([] {
    QFileList *l = ModalAs<QFileDialog>()->GetList();
    ClickRow(l, Row(l, "a.tir"));
    qpsKeyPress(QK_CTRL);
    ClickRow(l, Row(l, "B.TIR"));
    qpsKeyRelease(QK_CTRL);
  });
  OnIdle([] {
    QFileDialog *d = ModalAs<QFileDialog>();
    EXPECT_EQ(d->GetList()->GetSelection().size(), 2u);
    EXPECT_EQ(d->GetEntry()->GetText(), "\"a.tir\" \"B.TIR\"");
    qpsKeyTap(QK_ENTER);
  });
  ASSERT_TRUE(QDlgFile(settings, "tir", tyres.c_str(), path, "Open tyres", "*.tir", &list, name));
  EXPECT_EQ(std::string(path), tyres + "|a.tir|B.TIR");
  EXPECT_EQ(list, (std::vector<std::string>{"a.tir", "B.TIR"}));
  // One file: the list holds its path.
  list.clear();
  qpsType((tyres + "/a.tir").c_str());
  qpsKeyTap(QK_ENTER);
  ASSERT_TRUE(QDlgFile(settings, "one", tyres.c_str(), path, "Open tyres", "*.tir", &list, name));
  EXPECT_EQ(list, (std::vector<std::string>{tyres + "/a.tir"}));
}

TEST_F(FileDialog, ModifiersAreForgotten) {
  qpsKeyPress(QK_SHIFT);
  qpsKeyTap(QK_ESC);
  EXPECT_FALSE(QDlgFile(settings, "tir", nullptr, path, "Open car", "*.tir", nullptr, name));
  EXPECT_FALSE(a->IsShift());
}

}  // namespace
