// Drawing the fit report's pages, and writing them into a PDF file.
#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "fitreport/fitreport.h"
#include "fitreport/fitreport_layout.h"
#include "platform/cairo/qcairo.h"
#include "render/qrenderer.h"

namespace {

const QColor INK(0, 0, 0, 255), BAND(232, 238, 248, 255), RULE(120, 120, 120, 255), STRIPE(244, 244, 244, 255),
    FOOT(90, 90, 90, 255);
constexpr int CELL_PAD = 12;  // between table columns
constexpr int GROUP_GAP = 30; // between side-by-side parts of a table

// Figures are set flush right, words flush left.
bool Numeric(const std::string &s) {
  size_t i = s[0] == '-' || s[0] == '+' ? 1 : 0;
  return i < s.size() && (std::isdigit(static_cast<unsigned char>(s[i])) || s[i] == '.');
}

void PaintLines(QRenderer *r, const std::vector<std::string> &lines, int x, int *y) {
  for (const std::string &l : lines) {
    if (r->HasFont()) r->DrawText(l.c_str(), x, *y, INK);
    *y += FITREPORT_LINE;
  }
}

// A table at (x, y): the header, a rule, the rows (every other one shaded),
// in table.columns side-by-side parts.
void PaintTable(QRenderer *r, const FitReportTable &t, int x, int y) {
  const size_t ncol = t.header.size();
  std::vector<int> width(ncol, 0);
  std::vector<bool> right(ncol, false);
  for (size_t c = 0; c < ncol; c++) {
    width[c] = r->MeasureText(t.header[c].c_str());
    for (const auto &row : t.rows)
      if (c < row.size()) {
        width[c] = std::max(width[c], r->MeasureText(row[c].c_str()));
        right[c] = right[c] || (!row[c].empty() && Numeric(row[c]));
      }
  }
  int total = 0;
  for (int w : width) total += w + CELL_PAD;
  const int parts = std::max(1, t.columns);
  const size_t perPart = (t.rows.size() + size_t(parts) - 1) / size_t(parts);
  auto cells = [&](const std::vector<std::string> &row, int px, int py) {
    if (!r->HasFont()) return;
    int cx = px;
    for (size_t c = 0; c < ncol && c < row.size(); c++) {
      const int tx = right[c] ? cx + width[c] - r->MeasureText(row[c].c_str()) : cx;
      r->DrawText(row[c].c_str(), tx, py, INK);
      cx += width[c] + CELL_PAD;
    }
  };
  for (int p = 0; p < parts; p++) {
    const size_t first = size_t(p) * perPart;
    if (p > 0 && first >= t.rows.size()) break;
    const int px = x + p * (total + GROUP_GAP);
    cells(t.header, px, y);
    const int ruleY = y + FITREPORT_LINE + 1;
    QSegment rule{px, ruleY, px + total - CELL_PAD, ruleY};
    r->Segments(&rule, 1, RULE);
    int py = y + FITREPORT_LINE + FITREPORT_RULE;
    for (size_t i = first; i < t.rows.size() && i < first + perPart; i++) {
      if ((i - first) % 2 == 1) r->FillRect(QRect(px - 3, py - 1, total - CELL_PAD + 6, FITREPORT_LINE), STRIPE);
      cells(t.rows[i], px, py);
      py += FITREPORT_LINE;
    }
  }
}

void PaintBlock(QRenderer *r, const FitReportBlock &b, const QRect &area) {
  if (b.kind == FitReportBlock::CHART) {
    ChartPaint(r, b.chart, area);
    return;
  }
  int y = area.y;
  PaintLines(r, b.lines, area.x, &y);
  if (b.kind == FitReportBlock::TABLE) PaintTable(r, b.table, area.x, y);
}

}  // namespace

void FitReportPaintPage(QRenderer *r, const FitReport &report, int page) {
  if (page < 0 || size_t(page) >= report.pages.size()) return;
  const FitReportPage &p = report.pages[size_t(page)];
  // 1. the title band and the foot
  r->FillRect(QRect(0, 0, FITREPORT_PAGE_WIDTH, FITREPORT_TITLE_HEIGHT), BAND);
  const int footY = FITREPORT_PAGE_HEIGHT - FITREPORT_FOOT_HEIGHT + 8;
  QSegment foot{FITREPORT_MARGIN, footY - 4, FITREPORT_PAGE_WIDTH - FITREPORT_MARGIN, footY - 4};
  r->Segments(&foot, 1, RULE);
  if (r->HasFont()) {
    r->DrawText(p.title.c_str(), FITREPORT_MARGIN, (FITREPORT_TITLE_HEIGHT - r->TextHeight()) / 2, INK);
    r->DrawText(report.footer.c_str(), FITREPORT_MARGIN, footY, FOOT);
    const std::string number = "page " + std::to_string(page + 1) + " of " + std::to_string(report.pages.size());
    r->DrawText(number.c_str(), FITREPORT_PAGE_WIDTH - FITREPORT_MARGIN - r->MeasureText(number.c_str()), footY, FOOT);
  }
  // 2. the blocks: in a 2 x 2 grid, or one under the other
  if (p.grid) {
    const int w = FITREPORT_PAGE_WIDTH / 2, h = FITREPORT_BODY_HEIGHT / 2;
    for (size_t i = 0; i < p.blocks.size() && i < 4; i++) {
      const QRect cell(int(i % 2) * w, FITREPORT_BODY_TOP - 6 + int(i / 2) * h, w, h);
      if (p.blocks[i].kind == FitReportBlock::CHART)
        PaintBlock(r, p.blocks[i], cell);
      else
        PaintBlock(r, p.blocks[i], QRect(cell.x + 40, cell.y + 40, cell.wid - 60, cell.hgt - 40));
    }
    return;
  }
  int y = FITREPORT_BODY_TOP;
  for (const FitReportBlock &b : p.blocks) {
    const int h = FitReportBlockHeight(b);
    PaintBlock(r, b, QRect(FITREPORT_MARGIN, y, FITREPORT_PAGE_WIDTH - 2 * FITREPORT_MARGIN, h));
    y += h;
  }
}

bool FitReportWritePdf(const std::string &path, const FitReport &report, std::string *error) {
  if (report.pages.empty()) {
    if (error) *error = path + ": the report has no pages";
    return false;
  }
  return QCairoWritePdfPages(path, FITREPORT_PAGE_WIDTH, FITREPORT_PAGE_HEIGHT, int(report.pages.size()), report.title,
                             [&](QRenderer *r, int page) { FitReportPaintPage(r, report, page); }, error);
}
