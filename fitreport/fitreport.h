// The fit report: what a fit was given, how well the fitted tyre meets the
// data and where it misses, as pages for an engineer to read: a summary
// (data, set points, model, figures per channel and per set point), the
// fitted coefficients, then per set point the measured points with the
// fitted curves, the residuals over slip, and the combined-slip sweeps when
// the data has them.
//
// The pages are built as data (titles, text, tables, charts of
// chart/chart.h) and drawn through a QRenderer, so the PDF writer, the
// window and the tests (render/qrecorder.h) draw the same thing. Nothing
// here prints; problems come back as values.
#pragma once

#include <string>
#include <vector>

#include "chart/chart.h"
#include "tyre/kcondition.h"
#include "tyre/kfit.h"

class QRenderer;
struct KDataLoad;

// A4 landscape in PDF points; one point is one canvas pixel of the renderer.
constexpr int FITREPORT_PAGE_WIDTH = 842, FITREPORT_PAGE_HEIGHT = 595;

struct FitReportTable {
  std::vector<std::string> header;
  std::vector<std::vector<std::string>> rows;
  int columns = 1;  // the rows run down this many side-by-side columns
};

// A part of a page: lines of text, a table or a chart.
struct FitReportBlock {
  enum Kind { TEXT, TABLE, CHART };
  Kind kind = TEXT;
  std::vector<std::string> lines;
  FitReportTable table;
  Chart chart;
};

struct FitReportPage {
  std::string title;
  bool grid = false;  // blocks in a 2 x 2 grid (charts); else one under the other
  std::vector<FitReportBlock> blocks;
};

struct FitReport {
  std::string title;   // the document's title
  std::string footer;  // left of "page i of n" at the foot of every page
  std::vector<FitReportPage> pages;
};

// A remark on one coefficient for the coefficient table ("held: ...").
struct FitReportRemark {
  std::string name;  // member name
  std::string text;
};

// What the report is made of. The pointers must stay valid while building.
struct FitReportInput {
  std::string dataFile;   // as the user named it
  std::string dataKind;   // "tidy CSV", "rig run (text)", ...
  const KMeasuredData *data = nullptr;
  std::vector<KSetPoint> setPoints;
  std::vector<int> setPoint;  // per point of `data`
  int model = KPacejka::MF61;
  std::string output;  // where the fitted tyre went ("" for nowhere)
  const KPacejka *tyre = nullptr;
  const KFitResult *result = nullptr;
  std::vector<FitReportRemark> remarks;  // per coefficient (held, not identified)
  std::vector<std::string> notes;        // for the summary
};

// The data side of the input from a loaded data file: a rig run's points
// with the set points its conditioning found; a tidy file's points grouped
// into set points by load and camber the same way.
void FitReportDataFrom(const std::string &dataFile, const KDataLoad &load, FitReportInput *in);

// The pages for a fit.
FitReport FitReportBuild(const FitReportInput &in);

// Draws page `page` (0-based): title band, blocks, footer.
void FitReportPaintPage(QRenderer *r, const FitReport &report, int page);

// Writes the report as a multi-page PDF file. False with the reason
// ("PATH: can't open output file for writing") in `error`.
bool FitReportWritePdf(const std::string &path, const FitReport &report, std::string *error);
