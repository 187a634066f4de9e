// Where things go on a fit report page, shared by the pages' builder (how
// many table rows fit) and the painter.
#pragma once

#include "fitreport/fitreport.h"

constexpr int FITREPORT_MARGIN = 36;       // left and right
constexpr int FITREPORT_TITLE_HEIGHT = 40;  // the title band
constexpr int FITREPORT_BODY_TOP = 50;
constexpr int FITREPORT_FOOT_HEIGHT = 30;
constexpr int FITREPORT_BODY_HEIGHT = FITREPORT_PAGE_HEIGHT - FITREPORT_BODY_TOP - FITREPORT_FOOT_HEIGHT;
constexpr int FITREPORT_LINE = 15;       // a line of text or a table row
constexpr int FITREPORT_BLOCK_GAP = 12;  // between blocks one under the other
constexpr int FITREPORT_RULE = 4;        // under a table's header

// Height of a block on a page whose blocks stand one under the other.
inline int FitReportBlockHeight(const FitReportBlock &b) {
  const int lines = int(b.lines.size()) * FITREPORT_LINE;
  if (b.kind != FitReportBlock::TABLE) return lines + FITREPORT_BLOCK_GAP;
  const int cols = b.table.columns > 1 ? b.table.columns : 1;
  const int rows = (int(b.table.rows.size()) + cols - 1) / cols;
  return lines + (rows + 1) * FITREPORT_LINE + FITREPORT_RULE + FITREPORT_BLOCK_GAP;
}

// Table rows (besides the header) that fit in `height`.
inline int FitReportRows(int height) {
  return (height - FITREPORT_RULE - FITREPORT_BLOCK_GAP) / FITREPORT_LINE - 1;
}
