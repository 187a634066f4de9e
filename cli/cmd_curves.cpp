// tyrograph-cli curves: the three graphs' samples and peaks, as the window
// computes them at one operating point.
#include <cmath>
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/tyreopts.h"

namespace {

const char *const kGraphNames[CURVE_COUNT] = {"Fx", "Fy", "Mz"};

std::string Num(float v) {
  char buf[48];
  snprintf(buf, sizeof buf, "%.9g", static_cast<double>(v));
  return buf;
}

// JSON has no NaN or infinity; a model that produces one shows null.
std::string JsonNum(float v) { return std::isfinite(v) ? Num(v) : "null"; }

std::string Csv(const CurveRange *ranges, const Curve *curves) {
  std::string out = "graph,i,x,y\n";
  for (int g = 0; g < CURVE_COUNT; g++) {
    for (int i = 0; i < CURVE_SAMPLES; i++)
      out += std::string(kGraphNames[g]) + "," + std::to_string(i) + "," + Num(CurveSampleX(ranges[g], i)) + "," +
             Num(curves[g].samples[i]) + "\n";
    out += std::string(kGraphNames[g]) + ",peak," + Num(curves[g].peakX) + "," + Num(curves[g].peakValue) + "\n";
  }
  return out;
}

std::string Table(const CliTyreState &st, const CurveRange *ranges, const Curve *curves) {
  char line[256];
  std::string out;
  snprintf(line, sizeof line, "%s, wheel %d: %s; load %g N, slip ratio %g, slip angle %g deg, camber %g deg, zoom %s\n",
           st.source.c_str(), st.wheel, st.tyre.GetModelName(), static_cast<double>(st.point.load),
           static_cast<double>(st.point.slipRatio), static_cast<double>(st.point.slipAngle),
           static_cast<double>(st.point.camber), st.zoom ? "on" : "off");
  out += line;
  for (int g = 0; g < CURVE_COUNT; g++) {
    CurveKind kind = CurveKind(g);
    snprintf(line, sizeof line, "\n%s\n%5s %14s %14s\n", CurveTitle(kind), "i",
             kind == CURVE_FX ? "slip ratio" : "slip angle", kind == CURVE_MZ ? "Mz (Nm)" : kind == CURVE_FX ? "Fx/Fz" : "Fy/Fz");
    out += line;
    for (int i = 0; i < CURVE_SAMPLES; i++) {
      snprintf(line, sizeof line, "%5d %14.6f %14.6f\n", i, static_cast<double>(CurveSampleX(ranges[g], i)),
               static_cast<double>(curves[g].samples[i]));
      out += line;
    }
    snprintf(line, sizeof line, "%5s %14.6f %14.6f\n", "peak", static_cast<double>(curves[g].peakX),
             static_cast<double>(curves[g].peakValue));
    out += line;
  }
  return out;
}

std::string Json(const CliTyreState &st, const CurveRange *ranges, const Curve *curves) {
  static const char *const xUnits[CURVE_COUNT] = {"slip ratio", "deg", "deg"};
  static const char *const yUnits[CURVE_COUNT] = {"N/N", "N/N", "Nm"};
  std::string out = "{\n  \"model\": " + std::to_string(st.tyre.model) + ",\n";
  out += "  \"wheel\": " + std::to_string(st.wheel) + ",\n";
  out += "  \"load\": " + JsonNum(st.point.load) + ",\n  \"slip_ratio\": " + JsonNum(st.point.slipRatio) +
         ",\n  \"slip_angle\": " + JsonNum(st.point.slipAngle) + ",\n  \"camber\": " + JsonNum(st.point.camber) +
         ",\n  \"zoom\": " + (st.zoom ? "true" : "false") + ",\n  \"graphs\": [\n";
  for (int g = 0; g < CURVE_COUNT; g++) {
    out += std::string("    {\"graph\": \"") + kGraphNames[g] + "\", \"x_unit\": \"" + xUnits[g] +
           "\", \"y_unit\": \"" + yUnits[g] + "\",\n     \"x\": [";
    for (int i = 0; i < CURVE_SAMPLES; i++) out += (i ? ", " : "") + JsonNum(CurveSampleX(ranges[g], i));
    out += "],\n     \"y\": [";
    for (int i = 0; i < CURVE_SAMPLES; i++) out += (i ? ", " : "") + JsonNum(curves[g].samples[i]);
    out += "],\n     \"peak\": {\"x\": " + JsonNum(curves[g].peakX) + ", \"y\": " + JsonNum(curves[g].peakValue) +
           "}}" + (g + 1 < CURVE_COUNT ? ",\n" : "\n");
  }
  out += "  ]\n}\n";
  return out;
}

int RunCurves(const std::vector<std::string> &args) {
  auto *st = new CliTyreState;
  std::vector<std::string> rest;
  std::string format = "table";
  if (CliWantsHelp("curves", args, "[--format table|csv|json]")) {
    delete st;
    return 0;
  }
  bool ok = CliParseTyreArgs("curves", args, {"--format"}, st, &rest);
  for (size_t i = 0; ok && i < rest.size(); i++) {
    if (rest[i] == "--format" && (rest[i + 1] == "table" || rest[i + 1] == "csv" || rest[i + 1] == "json")) {
      format = rest[++i];
    } else {
      fprintf(stderr, "tyrograph-cli curves: %s: unknown option or format (table, csv, json)\n",
              (rest[i] == "--format" ? rest[i + 1] : rest[i]).c_str());
      ok = false;
    }
  }
  if (!ok || !CliLoadTyres("curves", st)) {
    delete st;
    return 2;
  }
  CurveRange ranges[CURVE_COUNT];
  Curve curves[CURVE_COUNT];
  CliSampleCurves(*st, ranges, curves);
  std::string text = format == "csv" ? Csv(ranges, curves) : format == "json" ? Json(*st, ranges, curves)
                                                                              : Table(*st, ranges, curves);
  delete st;
  return CliEmit("curves", "", text);
}

CliCommand reg{"curves", "TYRE [POINT] [--format table|csv|json]", "the graphs' 290 samples and peaks",
               40, RunCurves};

}  // namespace
