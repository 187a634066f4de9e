// KPacejka: one tyre of the simulator library.
//
// The object holds one coefficient set for one of four model variants
// (0 Pacejka89/96, 1 Magic Formula 5.2, 2 Pacejka2006, 3 Magic Formula 6.1)
// as its KTyreParams (tyre/ktyre.h, the stateless core), the operating point
// at which it is evaluated and the results of the last Calculate. All
// numbers are single precision. Code that only evaluates a tyre takes its
// KTyreParams and the core's free functions, and changes nothing.
//
// Units: the setters take SI (radians, newtons, slip ratio as a fraction);
// the object stores degrees, kilonewtons and percent; forces come out in N
// and the moment in N·m.
//
// Every data member is public: the application, the editor and the exports
// read and write coefficients directly (they live in the KTyreParams base). kpacejkaMembers below describes each
// of them (name, offset, model family, group, TIR key, fit bounds) for
// loading, dumping, editing, writing and fitting; the runs that code walks by
// position (a0 ... c17, lfz0 ... lres, pcx1 ... pty2, qbz1 ... ssz4,
// zeta0 ... zeta8) are checked at compile time in kpacejka_names.cpp.
//
// The implementation is split by concept:
//   kpacejka.cpp         construction, reset, setters, accessors, CreateSystem
//   kpacejka_load.cpp    Load, LoadFromInfo and the camber plausibility check
//   ktyre.h, ktyre.cpp   the value type and the stateless evaluation
//   kpacejka_eval.h      the formula core: dispatch, limits
//   kpacejka_point.h     the setters' conversions of the operating point
//   kpacejka_pac96.h     model 0
//   kpacejka_mf52.h      models 1 and 3 (and every unknown model number)
//   kpacejka_pac2006.h   model 2
//   kpacejka_limits.cpp  Calculate: the core at the stored point, NaN reports
//   kpacejka_batch.h     many operating points at once: one at a time, or
//                        8 (kvec8.h) or 16 (kvec16.h) lanes through the
//                        loop of kpacejka_batch_lanes.h
//   kpacejka_tir.cpp     LoadFromTirFile
//   kpacejka_tirwrite.cpp the TIR writer (kpacejka_tirwrite.h)
//   kpacejka_names.cpp   the member table
#pragma once

#include <cstdint>

#include "tyre/kpacejka_point.h"
#include "tyre/ktyre.h"

class QInfo;
class PSystem;

class KPacejka : public KTyreParams {
 public:
  KPacejka();
  ~KPacejka();
  KPacejka(const KPacejka &) = delete;
  KPacejka &operator=(const KPacejka &) = delete;

  // ---- Loading ---------------------------------------------------------------
  // model = 0; Pac96 coefficients and all Magic Formula coefficients 0;
  // scaling factors, zeta0..zeta8, lmp, lkyc, lt 1.0. Ranges, operating point,
  // tyre data and flags are left alone.
  void ResetCoefficients();
  // One tyre from the section `path` of a configuration tree ("wheel0.pacejka"),
  // through an import_file TIR file when the section names one; ends with the
  // camber plausibility check (two evaluations, warnings only).
  void Load(QInfo *info, const char *path);
  // The keys of the section; Pac96 coefficients default to 0, everything else
  // to its current value. Always true.
  bool LoadFromInfo(QInfo *info, const char *path);
  // The Magic Formula properties of a TIR file; selects model 1 or 3. Always true.
  bool LoadFromTirFile(const char *fileName);

  // ---- Operating point (SI in, stored in degrees / percent / kN) --------------
  void SetCamber(float radians);
  void SetNormalLoad(float newtons);
  void SetPeakLoad(float newtons);
  void SetSlipAngle(float radians);
  void SetSlipRatio(float ratio);
  // Inflation pressure in Pa; 0 (the start) runs the tyre at its nominal
  // pressure. Kept as given: the pressure terms take it relative to nompres
  // at each evaluation.
  void SetPressure(float pascals) { pressure = pascals; }
  float GetCamber() const;
  // The stored operating point, as the core takes it (tyre/ktyre.h): code
  // that evaluates at the tyre's point without changing it passes this.
  kpacejka::Point<float> GetStoredPoint() const {
    return {camber, sideSlip, slipPercentage, Fz, FzPeak, kpacejka::StoredDpi(*this, pressure)};
  }

  // ---- Evaluation --------------------------------------------------------------
  // Fx, Fy, Mz (and the curve statistics) at the stored operating point:
  // KTyreEvaluateStored, whose results land in the members below, and its
  // reports. Allocation-free; single precision.
  void Calculate();
  // The results of the last Calculate as the core gives them (issues 0).
  KTyreResult GetLastResult() const;

  // ---- Accessors -----------------------------------------------------------------
  float GetLateralFriction() const;
  float GetLongitudinalFriction() const;
  const char *GetModelName() const;
  static const char *GetModelName(int model);
  // The Pacejka89/96 coefficient at position i (0 = a0 ... 45 = c17), through
  // the member table.
  float &Pac96(int i);
  // Registers the live parameters and signals under `parent` (once).
  void CreateSystem(PSystem *parent);
  PSystem *GetSystem() const { return system; }

  // The NaN reports of Calculate fire once per process and quantity. Tests
  // that need to see a report again re-arm them here; nothing else does.
  static void RearmNaNReports();

  // ==== Data beyond the coefficients, in declaration order ======================
  // Operating point (inputs of Calculate).
  float camber;          // degrees, already negated for a negate_camber tyre
  float sideSlip;        // slip angle, degrees
  float slipPercentage;  // slip ratio x 100
  float Fz;              // load, kN
  float FzPeak;          // load that scales the peak D, kN

  // Results (outputs of Calculate).
  float Bx, Cx, Dx;
  float By, Cy, Dy;
  float Fx, Fy, Mz;  // N, N, N·m
  float resultSpare;
  float longStiffness;       // B·C·D of Fx
  float corneringStiffness;  // B·C·D of Fy, per radian
  float peakFx;              // Dx + Svx
  float peakFy;              // Dy + Svy
  float resultSpares[4];

  PSystem *system;  // owned; made by CreateSystem

  float pressure;  // inflation pressure, Pa (SetPressure); 0: nominal

  // The NaN report of Calculate for one quantity (0 Fx, 1 Fy, 2 Mz) at a
  // point: once per process and quantity.
  static void ReportNaN(int quantity, const kpacejka::Point<float> &p);
  // SetCamber's report of a camber that is no finite number.
  static void ReportBadCamber();

 private:
  void CheckCamber();
};

// ---- The member table ------------------------------------------------------------
// One entry per named member, in declaration order: flags, a0 ... c17, the
// scaling factors, the Magic Formula coefficients, zeta0 ... zeta8, r0, fz0,
// longv, mbelt, fyShiftScale, lmp, lkyc, lt, model, and the range ends
// slipangle_min ... fz_max, then inflpres, nompres and the pressure
// coefficients ppx1 ... qpz2. Each entry says which models read the member,
// what it shapes, where a TIR file keeps it, how far a fitter may move it,
// how it turns under mirroring, and what the coefficient panel shows of it.
// Loading (configuration and TIR), the TIR writer, the CLI, the editor and the
// exports all take their names and lists from it.
struct KPacejkaMember {
  enum Kind : uint8_t { FLOAT, INT, FLAGS };
  // The models that read the member.
  enum Family : uint8_t {
    ANY,           // every model (flags, model, the ranges)
    PAC96_FAMILY,  // model 0
    MAGIC_FAMILY,  // models 1, 2, 3
    PAC2006_ONLY,  // model 2
    MF_ONLY,       // models 1 and 3 (Pacejka2006 leaves it out)
  };
  // What the member shapes; the fitter fits one group per stage.
  enum Group : uint8_t {
    OTHER,        // flags, model
    PURE_FX,      // longitudinal force, pure slip
    PURE_FY,      // lateral force, pure slip (camber included)
    PURE_MZ,      // aligning moment, pure slip
    COMBINED_FX,  // longitudinal force under side slip
    COMBINED_FY,  // lateral force under longitudinal slip (fyShiftScale too)
    COMBINED_MZ,  // aligning moment under combined slip
    RELAXATION,   // transient (relaxation length) terms
    TURN_SLIP,    // zeta0 ... zeta8
    SCALING,      // lfz0 ... lres, lmp, lkyc, lt
    DIMENSIONS,   // r0, fz0, longv, mbelt
    RANGES,       // slipangle_min ... fz_max
    PRESSURE,     // inflpres, nompres and the pressure coefficients ppx1 ... qpz2
    GROUP_COUNT
  };
  // Sign under mirroring: bits of the channels that negate the member.
  enum Mirror : uint8_t { MIRROR_NONE = 0, MIRROR_FY = 1, MIRROR_MZ = 2 };
  // Role in the shape pair (C, E) of a pure-slip curve.
  enum Shape : uint8_t { NO_SHAPE, SHAPE_C, SHAPE_E };
  const char *name;
  Kind kind;
  uint32_t offset;  // byte offset in KTyreParams
  Family family = ANY;
  Group group = OTHER;
  const char *tirSection = nullptr;  // TIR section and key it is read from and
  const char *tirKey = nullptr;      // written to (lower case); null when no TIR key has it
  float fitMin = 0, fitMax = 0;      // bounds when fitted; equal: never fitted
  // Place among the Magic Formula scaling keys of a car.ini section (lfz0 ...
  // lgyr, then lmp, lkyc, lt), the order they are read, shown on the panel and
  // exported in; -1 for every other member.
  int8_t iniOrder = -1;
  // The channels whose mirroring negates the member (KFitMirror): Fy, Mz, or
  // both (it turns over when exactly one of them is mirrored); none for most.
  uint8_t mirror = MIRROR_NONE;
  // Shape factor C or curvature E of its group's pure-slip curve: the pair a
  // fitter first tries on a grid (local minima lie along it).
  Shape shape = NO_SHAPE;
  // The coefficient panel: the radio's label (null: the name), the
  // description (null: the panel never shows the member), the unit ("" for
  // a non-dimensional value) and the value slider's range.
  const char *label = nullptr;
  const char *desc = nullptr;
  const char *unit = nullptr;
  float sliderMin = 0, sliderMax = 0;
};

extern const KPacejkaMember kpacejkaMembers[];
extern const int kpacejkaMemberCount;
// Scaling factors with a place in the car.ini order (iniOrder 0 ... 30); the
// first 28 are the panel's and the export block's, lmp, lkyc, lt follow.
constexpr int KPACEJKA_INI_SCALING_COUNT = 31;

// The entry named `name` (exact, case-sensitive), or null.
const KPacejkaMember *KPacejkaFindMember(const char *name);
// Index of the entry named `name`, or -1.
int KPacejkaMemberIndex(const char *name);
// The member's value as a double (model and flags converted exactly).
double KPacejkaGetMember(const KTyreParams &tyre, const KPacejkaMember &m);
// Writes the member (model and flags truncated to integers).
void KPacejkaSetMember(KTyreParams &tyre, const KPacejkaMember &m, double value);
// The float behind a FLOAT entry; null for model and flags.
float *KPacejkaFloat(KTyreParams &tyre, const KPacejkaMember &m);

// ---- Queries over the table (for the fitter, the TIR reader and writer) -----------
// Whether model number `model` reads the member (unknown numbers run as model 1).
bool KPacejkaModelReads(const KPacejkaMember &m, int model);
// Whether a fitter may move the member (fitMin < fitMax).
inline bool KPacejkaIsFitted(const KPacejkaMember &m) { return m.fitMin < m.fitMax; }
// The members of `group` that model `model` reads and a fitter moves, in table
// order: up to `capacity` of them into `out` (which may be null with capacity
// 0); returns how many there are in all.
int KPacejkaFittedMembers(int model, KPacejkaMember::Group group, const KPacejkaMember **out,
                          int capacity);
// Whether the tyre carries inflation pressure: any member of the pressure
// group (the pressures or a coefficient) other than 0. The TIR and car.ini writers leave the
// pressure keys out of a tyre that does not.
bool KPacejkaHasPressure(const KTyreParams &tyre);
// Why `tyre` cannot run at inflation pressure `pascals` (Pa), or null when
// it can: the pressure is no number above 0, the model has no pressure
// terms, or the tyre has no nominal pressure to take it relative to.
const char *KPacejkaPressureProblem(const KTyreParams &tyre, float pascals);
// Short text of a group for reports: "pure Fx", "combined Fy", "scaling", ...
const char *KPacejkaGroupName(KPacejkaMember::Group group);
// The entry the TIR key `section`.`key` (lower case) is read into, or null.
const KPacejkaMember *KPacejkaFindTirMember(const char *section, const char *key);
// The entry of Pacejka89/96 coefficient i (0 = a0 ... 45 = c17), or null.
const KPacejkaMember *KPacejkaPac96Member(int i);
// The entry with car.ini scaling place `order` (0 ... KPACEJKA_INI_SCALING_COUNT-1), or null.
const KPacejkaMember *KPacejkaIniScalingMember(int order);
