// The fit and convert driver.
//
//   [1] checks   [2] the run   [3] the JSON report
#include "chart/fitrun.h"

#include <cctype>
#include <cstdio>

#include "base/qfile.h"
#include "chart/carload.h"
#include "chart/carsave.h"
#include "diag/qcollect.h"
#include "diag/qdebug.h"
#include "tyre/kpacejka_tirwrite.h"

// ---- [1] checks ----------------------------------------------------------------------

namespace {

QProblem Problem(const std::string &file, const std::string &message) {
  QProblem p;
  p.file = file;
  p.message = message;
  return p;
}

}  // namespace

bool FitOutIsTir(const std::string &name) {
  if (name.size() < 4) return false;
  std::string ext = name.substr(name.size() - 4);
  for (char &c : ext) c = char(tolower(static_cast<unsigned char>(c)));
  return ext == ".tir";
}

bool FitJobCheck(const FitJob &job, QProblem *problem) {
  if (job.input.empty()) *problem = Problem("", job.convert ? "no source tyre given" : "no data file given");
  else if (job.model < 0) *problem = Problem("", "--model pac96|mf52|mf61 is required");
  else if (job.out.empty() && !job.outOptional) *problem = Problem("", "-o OUT is required");
  else if (!job.out.empty() && FitOutIsTir(job.out) && job.model == KPacejka::PAC96)
    *problem = Problem(job.out, "a TIR file holds a Magic Formula tyre; use mf52 or mf61, or a car.ini");
  else return true;
  return false;
}

bool FitOutputsFree(const FitJob &job, QProblem *problem) {
  for (const std::string *f : {&job.out, &job.report, &job.reportPdf})
    if (!f->empty() && !job.force && QFileExists(f->c_str(), false)) {
      *problem = Problem("", *f + " exists; add --force to overwrite it");
      return false;
    }
  return true;
}

// ---- [2] the run -----------------------------------------------------------------------

namespace {

// Writes the tyre to job.out. False with the problem in `problems`.
bool WriteTyre(const FitJob &job, const KPacejka &tyre, std::vector<QProblem> *problems) {
  if (job.out.empty()) return true;  // kept in memory
  if (FitOutIsTir(job.out)) {
    // the writer reports what went wrong itself
    if (KPacejkaWriteTirFile(job.out.c_str(), tyre)) return true;
    problems->push_back(Problem(job.out, "not written"));
    return false;
  }
  std::string error;
  if (CarWriteTyre(job.out.c_str(), tyre, &error)) return true;
  problems->push_back(QProblemFromText(error));
  return false;
}

bool WriteReport(const FitJob &job, const KFitResult &r, std::vector<QProblem> *problems) {
  if (job.report.empty()) return true;
  const std::string j = FitReportJson(job, r);
  FILE *f = fopen(job.report.c_str(), "wb");
  bool ok = f && fwrite(j.data(), 1, j.size(), f) == j.size();
  if (f && fclose(f) != 0) ok = false;
  if (!ok) problems->push_back(Problem(job.report, "can't be written"));
  return ok;
}

// The work inside the collector: read, fit, write.
bool Work(const FitJob &job, FitOutcome *o, std::vector<QProblem> *own) {
  KFitOptions fo = FitJobOptions(job);
  KPacejka input;
  std::string error;
  o->tyre = std::make_unique<KPacejka>();
  bool fitted;
  if (job.convert) {
    // 1. the source, as eval reads it
    if (!CarLoadTyreSource(job.input.c_str(), job.wheel, &input, &error)) {
      own->push_back(QProblemFromText(error));
      return false;
    }
    // a source of the target's family starts the fit from its own
    // coefficients: a tyre converted to its own model comes back exact
    if ((input.model == KPacejka::PAC96) == (job.model == KPacejka::PAC96)) fo.start = &input;
    fitted = KFitConvert(input, fo, o->tyre.get(), &o->result);
  } else {
    // 1. the data (the readers name file, line and column of a problem): a
    // tidy CSV file as it stands, a rig run conditioned; then the checks
    std::shared_ptr<const KDataLoad> load = job.data;
    if (!load) {
      auto read = std::make_shared<KDataLoad>();
      if (!KDataLoadFile(job.input.c_str(), job.run, job.condition, job.raw, read.get())) {
        o->result.error = read->error;  // said when the reader did not report it
        return false;
      }
      load = std::move(read);
    }
    o->data = load;
    if (!load->problems.empty()) {
      for (const std::string &p : load->problems) own->push_back(Problem("", p));
      return false;
    }
    const KMeasuredData &data = load->data;
    // 2. the start
    if (!job.start.empty()) {
      if (!CarLoadTyreSource(job.start.c_str(), job.wheel, &input, &error)) {
        own->push_back(Problem("", "--start: " + error));
        return false;
      }
      fo.start = &input;
    }
    fitted = KFitTyre(data, fo, o->tyre.get(), &o->result);
  }
  // then the tyre (only with `force` when a channel fits poorly) and the report
  if (!fitted) return false;
  o->poorFit = !FitPoorChannels(job, o->result).empty();
  return ((o->poorFit && !job.force) || WriteTyre(job, *o->tyre, own)) && WriteReport(job, o->result, own);
}

}  // namespace

FitOutcome FitRun(const FitJob &job) {
  FitOutcome o;
  QProblem p;
  if (!FitJobCheck(job, &p) || !FitOutputsFree(job, &p)) {
    o.problems.push_back(p);
    return o;
  }
  o.started = true;
  std::vector<QProblem> own;
  bool ok;
  {
    // Nothing printed, no log written: the reports come back with the rest.
    const unsigned mask = qGetLogMask();
    qSetLogMask(0);
    QReportCollector reports;
    ok = Work(job, &o, &own);
    qSetLogMask(mask);
    o.problems = std::move(reports.problems);
  }
  o.problems.insert(o.problems.end(), own.begin(), own.end());
  for (QProblem &q : o.problems) QProblemPlace(&q, job.input);
  if (!ok && !QProblemsHaveError(o.problems))
    o.problems.push_back(Problem("", o.result.error.empty() ? "failed" : o.result.error));
  o.ok = ok;
  return o;
}

// ---- [3] the JSON report -------------------------------------------------------------------

namespace {

std::string JsonString(const std::string &s) {
  std::string out = "\"";
  for (unsigned char c : s) {
    if (c == '"' || c == '\\') out += '\\', out += char(c);
    else if (c < 0x20) {
      char buf[8];
      snprintf(buf, sizeof buf, "\\u%04x", c);
      out += buf;
    } else out += char(c);
  }
  return out + "\"";
}

std::string Number(double v) {
  char buf[32];
  snprintf(buf, sizeof buf, "%.17g", v);
  return buf;
}

}  // namespace

std::vector<int> FitPoorChannels(const FitJob &job, const KFitResult &result) {
  std::vector<int> poor;
  for (int ch = 0; ch < KCH_COUNT; ch++)
    if (result.channel[ch].points && job.weight[ch] > 0 && !(result.channel[ch].r2 >= FIT_MIN_R2)) poor.push_back(ch);
  return poor;
}

KFitOptions FitJobOptions(const FitJob &job) {
  KFitOptions fo;
  fo.model = job.model;
  fo.progress = job.progress;
  fo.user = job.progressUser;
  fo.loss = job.loss >= 0 ? KFitLoss(job.loss) : job.convert ? KFIT_LOSS_NONE : KFIT_LOSS_HUBER;
  for (int ch = 0; ch < KCH_COUNT; ch++) fo.weight[ch] = job.weight[ch];
  return fo;
}

std::string FitReportJson(const FitJob &job, const KFitResult &r) {
  std::string j = "{\n";
  j += "  \"input\": " + JsonString(job.input) + ",\n";
  j += "  \"model\": " + JsonString(KFitModelKey(job.model)) + ",\n";
  j += "  \"output\": " + JsonString(job.out) + ",\n";
  j += "  \"channels\": {";
  const char *sep = "\n";
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    const KFitChannelStats &s = r.channel[ch];
    if (!s.points) continue;
    j += sep;
    j += "    " + JsonString(KChannelName(ch)) + ": {\"points\": " + std::to_string(s.points) +
         ", \"rms\": " + Number(s.rms) + ", \"rms_percent\": " + Number(s.rmsPercent) +
         ", \"peak\": " + Number(s.peak) + ", \"r2\": " + Number(s.r2) +
         ", \"mirrored\": " + (r.mirrored[ch] ? "true" : "false") + "}";
    sep = ",\n";
  }
  j += "\n  },\n";
  j += std::string("  \"pure_only\": ") + (r.pureOnly ? "true" : "false") + ",\n";
  j += "  \"combined_slip\": " +
       JsonString(!KFitHasCombined(job.model) ? "none in the model"
                  : r.combinedNotIdentified   ? KFIT_COMBINED_NOT_IDENTIFIED
                                              : "fitted") +
       ",\n";
  if (!r.pressures.empty()) {
    j += "  \"pressure\": {\"set_points\": [";
    for (size_t i = 0; i < r.pressures.size(); i++)
      j += std::string(i ? ", " : "") + "{\"pressure\": " + Number(r.pressures[i].pressure) +
           ", \"points\": " + std::to_string(r.pressures[i].points) + "}";
    j += "], \"stages\": " + std::to_string(r.pressureStages);
    if (r.pressureStages > 0)
      j += ", \"nompres\": " + Number(r.nominalPressure) + ", \"nompres_from\": " +
           JsonString(r.nominalFromStart ? "start" : "most points") + ", \"pure_stages_at\": " + Number(r.stagePressure);
    else
      j += ", \"why_not\": " + JsonString(r.pressures.size() < 2 ? "one pressure only" : "no pressure terms in the model");
    j += "},\n";
  }
  const KFitOptions fo = FitJobOptions(job);
  j += "  \"loss\": " + JsonString(KFitLossKey(fo.loss)) + ",\n";
  j += "  \"weights\": {\"Fx\": " + Number(job.weight[KCH_FX]) + ", \"Fy\": " + Number(job.weight[KCH_FY]) +
       ", \"Mz\": " + Number(job.weight[KCH_MZ]) + "},\n";
  j += "  \"held\": [";
  for (size_t i = 0; i < r.held.size(); i++)
    j += std::string(i ? ", " : "") + "{\"name\": " + JsonString(r.held[i].name) + ", \"why\": " +
         JsonString(r.held[i].why) + "}";
  j += "],\n  \"at_bound\": [";
  for (size_t i = 0; i < r.atBound.size(); i++)
    j += std::string(i ? ", " : "") + "{\"name\": " + JsonString(r.atBound[i].name) +
         ", \"value\": " + Number(r.atBound[i].value) + ", \"bound\": " +
         JsonString(r.atBound[i].upper ? "upper" : "lower") + "}";
  j += "],\n";
  j += "  \"iterations\": " + std::to_string(r.iterations) + ",\n";
  j += "  \"seconds\": " + Number(r.seconds) + "\n}\n";
  return j;
}
